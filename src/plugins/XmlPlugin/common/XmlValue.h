// The scalar expression "XmlValue": the one value an XPath expression selects in a file.
#pragma once

#include "XmlExpression.h"
#include "host/PluginSDK.h"
#include "host/Types.h"

namespace XmlPlugin {

class XmlValue : public XmlExpression<PluginSDK::ScalarExpression> {
 public:
  // o_Result is emptied first and set only on success: the single value, or empty when
  // nothing is selected. -15003 when more than one value is selected; the codes of
  // XmlQuery::run otherwise.
  TErrorCode getScalarResult(PluginSDK::String& o_Result) override;
};

}  // namespace XmlPlugin
