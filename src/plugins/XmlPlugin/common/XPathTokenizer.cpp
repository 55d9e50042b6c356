#include "XPathTokenizer.h"

#include "XmlPluginConstants.h"

namespace XmlPlugin {

XPathTokenizer::XPathTokenizer(const String&) {}

XPathTokenizer::~XPathTokenizer() = default;

TErrorCode XPathTokenizer::start() {
  return XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION;
}

std::vector<XPathExpression*> XPathTokenizer::getExpressionVector() {
  return {};
}

std::vector<std::unique_ptr<XPathExpression>> XPathTokenizer::releaseItems() {
  return {};
}

}  // namespace XmlPlugin
