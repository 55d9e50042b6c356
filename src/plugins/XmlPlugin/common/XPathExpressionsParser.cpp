#include "XPathExpressionsParser.h"

#include "XmlPluginConstants.h"

namespace XmlPlugin {

XPathExpressionsParser::XPathExpressionsParser(const String&)
    : m_Status(XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION) {}

XPathExpressionsParser::~XPathExpressionsParser() = default;

TErrorCode XPathExpressionsParser::runParser(Node* i_pStartNode) {
  m_pStartNode = i_pStartNode;
  return m_Status;
}

TErrorCode XPathExpressionsParser::getValues(XPathOutputElements&) {
  return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
}

TErrorCode XPathExpressionsParser::calculateBooleanOutput(XPathOutputElements&) {
  return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
}

void XPathExpressionsParser::stackExpression(XPathExpression*, std::vector<XPathExpression*>*) {}

void XPathExpressionsParser::gotOper(XPathExpression*, std::vector<XPathExpression*>*) {}

void XPathExpressionsParser::gotParen(XPathExpression*, std::vector<XPathExpression*>*) {}

std::vector<XPathExpression*> XPathExpressionsParser::doTrans() {
  return {};
}

TErrorCode XPathExpressionsParser::doParse() {
  return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
}

}  // namespace XmlPlugin
