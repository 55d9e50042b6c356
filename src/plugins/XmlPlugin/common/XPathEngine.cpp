#include "XPathEngine.h"

#include "PluginTracer.h"
#include "XPathEvaluationContext.h"
#include "XPathEvaluationObserver.h"
#include "XPathExpressionCache.h"
#include "XmlCache.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

TErrorCode XPathEngine::start(const String& i_XPath, const String& i_FileName,
                              XPathOutputElements& o_Output, XPathEvaluationObserver* i_pObserver) {
  Trace trace(pluginTracer(), "XPathEngine::start");
  HOST_TRACE(trace, 3) << "Parsing [" << i_XPath << "] for the XML file " << i_FileName;
  const Node* pTree = nullptr;
  TErrorCode result = XmlCache::get()->getXmlTree(i_FileName, pTree);
  if (result == 0) {
    HOST_TRACE(trace, 3) << "result ok " << result;
    if (pTree == nullptr) {
      HOST_TRACE(trace, 1) << "Start Node empty. Error in xml parsing";
    }
    const XPathExpressionCache::Lease parser = XPathExpressionCache::get()->acquire(i_XPath);
    XPathEvaluationContext context;
    context.setObserver(i_pObserver);
    // The engine never modifies a tree; the parser's interface just predates const nodes.
    result = parser->runParser(const_cast<Node*>(pTree), context);
    if (result == 0 && context.isRefused()) {
      // Operands drop the location-path engine's codes; a path refused past the request's
      // bounds must not pass for one that selects nothing.
      result = XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
    }
    if (result == 0) {
      HOST_TRACE(trace, 3) << " result OK, getValues to output";
      XPathOutputElements values;
      OutputElementsGuard guard(values);
      result = parser->getValues(values);
      if (result == 0) {
        if (i_pObserver != nullptr)
          i_pObserver->valueShaped(parser->getXPathOutputType(), values);
        o_Output.insert(o_Output.end(), values.begin(), values.end());
        values.clear();
      }
    }
  }
  HOST_TRACE(trace, 3) << " result = " << result;
  return result;
}

}  // namespace XmlPlugin
