// Why the tokenizer rejected an XPath text, in the words of a rule author: the column where
// recognition stopped and what was found there.
//
// Constructs that the grammar refuses on purpose (an unknown function, an axis or node type
// this engine does not support, a bracket without its partner, a limit) are looked for in the
// text first, the earliest one wins; otherwise the reason is the text found where the
// recognizer's furthest match ended.
#pragma once

#include <string>

namespace XmlPlugin {

class XPathRejection {
 public:
  // i_Reached: how many characters of i_XPath the grammar matched at most.
  XPathRejection(const std::wstring& i_XPath, int i_Reached);

  int column() const { return m_Column; }  // 1-based
  const std::wstring& reason() const { return m_Reason; }
  // "XPath text rejected at column C: reason"
  std::wstring describe() const;

 private:
  bool findLimit();
  bool findBracketOrQuote();
  bool findUnsupportedName();
  void describeStop(int i_Reached);
  void set(size_t i_Offset, const std::wstring& i_Reason);

  const std::wstring& m_XPath;
  int m_Column = 1;
  std::wstring m_Reason;
};

}  // namespace XmlPlugin
