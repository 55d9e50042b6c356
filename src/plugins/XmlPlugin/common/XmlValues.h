// The vector expression "XmlValues": every value an XPath expression selects in a file.
#pragma once

#include "XmlExpression.h"
#include "host/PluginSDK.h"
#include "host/Types.h"

namespace XmlPlugin {

class XmlValues : public XmlExpression<PluginSDK::VectorExpression> {
 public:
  // o_Result is emptied first and filled only on success, one entry per selected value in
  // the engine's order (repeats kept). The codes of XmlQuery::run.
  TErrorCode getVectorResult(PluginSDK::StringVector& o_Result) override;
};

}  // namespace XmlPlugin
