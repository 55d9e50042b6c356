// The scalar expression "XmlValue": the one value an XPath expression selects in a file.
#pragma once

#include "host/PluginSDK.h"
#include "host/Types.h"

namespace XmlPlugin {

class XmlValue : public PluginSDK::ScalarExpression {
 public:
  void disposeExpression() override {}
  // o_Result is emptied first and set only on success: the single value, or empty when
  // nothing is selected. -15003 when more than one value is selected; the codes of
  // XmlQuery::run otherwise.
  TErrorCode getScalarResult(PluginSDK::String& o_Result) override;

  TErrorCode validateProperties() const;
  const wchar_t* getOptionalProperty(const wchar_t* i_Name, const wchar_t* i_DefaultValue) const;
};

}  // namespace XmlPlugin
