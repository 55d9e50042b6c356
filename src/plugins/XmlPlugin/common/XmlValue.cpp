#include "XmlValue.h"

#include <vector>

#include "HostBoundary.h"
#include "XmlPluginConstants.h"
#include "XmlQuery.h"

namespace XmlPlugin {

TErrorCode XmlValue::getScalarResult(PluginSDK::String& o_Result) {
  return guardHostCall([&]() -> TErrorCode {
    o_Result = L"";
    std::vector<String> values;
    const TErrorCode result = XmlQuery(*this).run(values);
    if (result != 0) {
      return result;
    }
    if (values.size() > 1) {
      return XML_PLUGIN_ERROR_XPATH_DOES_NOT_MATCH_ONE_VALUE;
    }
    if (values.size() == 1) {
      o_Result = values.front().c_str();
    }
    return 0;
  });
}

TErrorCode XmlValue::validateProperties() const {
  return XmlQuery(*this).validateProperties();
}

const wchar_t* XmlValue::getOptionalProperty(const wchar_t* i_Name,
                                             const wchar_t* i_DefaultValue) const {
  return XmlQuery(*this).getOptionalProperty(i_Name, i_DefaultValue);
}

}  // namespace XmlPlugin
