// Checks an XPath text against the accepted grammar and cuts it into expression items.
// (The tokenizer's own design note and productions are declared here by its author.)
#pragma once

#include <memory>
#include <vector>

#include "XPathExpression.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathTokenizer {
 public:
  explicit XPathTokenizer(const String& i_XPath);
  ~XPathTokenizer();
  XPathTokenizer(const XPathTokenizer&) = delete;
  XPathTokenizer& operator=(const XPathTokenizer&) = delete;

  // 0, or XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION when the text is not accepted.
  TErrorCode start();
  // The items in source order, without the wrapping parentheses (borrowed).
  std::vector<XPathExpression*> getExpressionVector();
  // Hands every item the tokenizer made (also those that merging replaced) to the caller.
  std::vector<std::unique_ptr<XPathExpression>> releaseItems();
};

}  // namespace XmlPlugin
