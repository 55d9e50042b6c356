#include "XmlValue.h"

#include <vector>

#include "HostBoundary.h"
#include "XmlPluginConstants.h"

namespace XmlPlugin {

TErrorCode XmlValue::getScalarResult(PluginSDK::String& o_Result) {
  return guardHostCall([&]() -> TErrorCode {
    o_Result = L"";
    std::vector<String> values;
    const TErrorCode result = query().run(values);
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

}  // namespace XmlPlugin
