// Builds a document's Node tree from the events of an XML parser.
//
// Events come in document order with UTF-8 text. The builder keeps the open elements on
// an explicit stack, so nesting depth costs no native stack. Names are interned: every
// element of one name shares one string. A method returns false when it refuses the
// document; failure() then says why, and the builder takes no further events.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "DocumentTree.h"
#include "host/String.h"

struct TreeOptions {
  bool m_KeepBlankText;  // keep text made only of white space
  bool m_SkipComments;   // drop comments and processing instructions
  bool m_TrimText;       // trim white space around text
};

class TreeBuilder {
 public:
  explicit TreeBuilder(const TreeOptions& i_Options);

  // i_Attributes: name, value, name, value, ..., null.
  bool startElement(const char* i_Name, const char** i_Attributes);
  bool endElement();
  // Consecutive calls make one text (CDATA sections and references included).
  bool characters(const char* i_Text, int i_Length);
  bool comment(const char* i_Text);
  bool processingInstruction(const char* i_Target);
  // Refuses the document for a reason found by the caller.
  bool refuse(const String& i_Reason);

  // The finished tree, owning all its nodes; null when no root element was read or the
  // document was refused. Called once: a builder reads one document.
  std::unique_ptr<Node> finish();

  const String& failure() const { return m_Failure; }

 private:
  struct OpenElement {
    Node* m_pElement;
    size_t m_FirstChild;  // index of its first child in m_Children
  };

  bool internName(const char* i_Name, String& o_Name);
  bool decode(const char* i_Text, size_t i_Length, std::wstring& io_Text);
  StringMap* attributes(const char** i_Attributes, int32_t i_Count, int32_t i_FirstNumber);
  // Whether comments and processing instructions are dropped here.
  bool skips() const;
  // Appends a node to the innermost open element.
  void addChild(int i_Type, const String& i_Name);
  void flushText();

  TreeOptions m_Options;
  std::unique_ptr<TreeStorage> m_pStorage;
  std::unique_ptr<DocumentRoot> m_pRoot;
  std::vector<OpenElement> m_OpenElements;
  std::vector<Node*> m_Children;  // children of the open elements, innermost last
  std::unordered_map<std::string, String> m_Names;
  std::vector<String> m_AttributeStrings;  // names then values of the element being read
  std::wstring m_Text;
  std::wstring m_Decoded;
  int32_t m_NextIndex;
  String m_Failure;
};
