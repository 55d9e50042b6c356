// One request through the evaluation driver or a parser, as the host would see its answer.
#pragma once

#include <string>

#include "XPathEngine.h"
#include "XPathEvaluationContext.h"
#include "XPathExpressionsParser.h"
#include "XPathOutputElement.h"
#include "XmlPluginConstants.h"

// "code:values" with the values the host would receive, comma-separated (none on failure).
inline std::string answerText(TErrorCode i_Result, const XmlPlugin::XPathOutputElements& i_Values) {
  std::string text = std::to_string(i_Result) + ":";
  for (size_t i = 0; i_Result == 0 && i < i_Values.size(); ++i) {
    text += (i == 0 ? "" : ",") + i_Values[i]->hostValue().toNarrow();
  }
  return text;
}

// The answer to i_XPath over i_File; i_pObserver, when given, watches the evaluation.
inline std::string engineAnswer(const std::string& i_XPath, const std::string& i_File,
                                XmlPlugin::XPathEvaluationObserver* i_pObserver = nullptr) {
  XmlPlugin::XPathOutputElements values;
  XmlPlugin::OutputElementsGuard guard(values);
  const TErrorCode result = XmlPlugin::XPathEngine().start(
      String(i_XPath.c_str()), String(i_File.c_str()), values, i_pObserver);
  return answerText(result, values);
}

// The answer of io_Parser run from i_pStart within io_Context; a request refused on the way
// fails as a whole, as XPathEngine reports it.
inline std::string parserAnswer(XmlPlugin::XPathExpressionsParser& io_Parser, Node* i_pStart,
                                XmlPlugin::XPathEvaluationContext& io_Context) {
  XmlPlugin::XPathOutputElements values;
  XmlPlugin::OutputElementsGuard guard(values);
  TErrorCode result = io_Parser.runParser(i_pStart, io_Context);
  if (result == 0) {
    result = io_Parser.getValues(values);
  }
  if (result == 0 && io_Context.isRefused()) {
    result = XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  return answerText(result, values);
}
