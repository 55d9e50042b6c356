// One request through the evaluation driver, as the host would see its answer.
#pragma once

#include <string>

#include "XPathEngine.h"
#include "XPathOutputElement.h"

// "code:values" with the values the host would receive, comma-separated; i_pObserver, when
// given, watches the evaluation.
inline std::string engineAnswer(const std::string& i_XPath, const std::string& i_File,
                                XmlPlugin::XPathEvaluationObserver* i_pObserver = nullptr) {
  XmlPlugin::XPathOutputElements values;
  XmlPlugin::OutputElementsGuard guard(values);
  const TErrorCode result = XmlPlugin::XPathEngine().start(
      String(i_XPath.c_str()), String(i_File.c_str()), values, i_pObserver);
  std::string text = std::to_string(result) + ":";
  for (size_t i = 0; i < values.size(); ++i) {
    text += (i == 0 ? "" : ",") + values[i]->hostValue().toNarrow();
  }
  return text;
}
