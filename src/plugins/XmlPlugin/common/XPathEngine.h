// The road from (XPath text, file name) to output elements.
#pragma once

#include "XPathOutputElement.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathEvaluationObserver;

class XPathEngine {
 public:
  // Appends the result's output elements to o_Output, which owns them. On failure
  // o_Output is left as it was. i_pObserver, when given, watches the evaluation.
  TErrorCode start(const String& i_XPath, const String& i_FileName, XPathOutputElements& o_Output,
                   XPathEvaluationObserver* i_pObserver = nullptr);
};

}  // namespace XmlPlugin
