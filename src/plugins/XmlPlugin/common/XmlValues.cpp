#include "XmlValues.h"

#include <vector>

#include "HostBoundary.h"
#include "XmlQuery.h"

namespace XmlPlugin {

TErrorCode XmlValues::getVectorResult(PluginSDK::StringVector& o_Result) {
  o_Result.removeAll();
  const TErrorCode result = guardHostCall([&]() -> TErrorCode {
    std::vector<String> values;
    const TErrorCode runResult = XmlQuery(*this).run(values);
    if (runResult != 0) {
      return runResult;
    }
    for (const String& value : values) {
      o_Result.addString(value.c_str());
    }
    return 0;
  });
  if (result != 0) {
    o_Result.removeAll();  // an allocation failure may have left it half filled
  }
  return result;
}

TErrorCode XmlValues::validateProperties() const {
  return XmlQuery(*this).validateProperties();
}

const wchar_t* XmlValues::getOptionalProperty(const wchar_t* i_Name,
                                              const wchar_t* i_DefaultValue) const {
  return XmlQuery(*this).getOptionalProperty(i_Name, i_DefaultValue);
}

}  // namespace XmlPlugin
