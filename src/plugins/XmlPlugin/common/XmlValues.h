// The vector expression "XmlValues": every value an XPath expression selects in a file.
#pragma once

#include "host/PluginSDK.h"
#include "host/Types.h"

namespace XmlPlugin {

class XmlValues : public PluginSDK::VectorExpression {
 public:
  void disposeExpression() override {}
  // o_Result is emptied first and filled only on success, one entry per selected value in
  // the engine's order (repeats kept). The codes of XmlQuery::run.
  TErrorCode getVectorResult(PluginSDK::StringVector& o_Result) override;

  TErrorCode validateProperties() const;
  const wchar_t* getOptionalProperty(const wchar_t* i_Name, const wchar_t* i_DefaultValue) const;
};

}  // namespace XmlPlugin
