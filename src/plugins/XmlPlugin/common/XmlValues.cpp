#include "XmlValues.h"

#include <vector>

#include "HostBoundary.h"

namespace XmlPlugin {

TErrorCode XmlValues::getVectorResult(PluginSDK::StringVector& o_Result) {
  o_Result.removeAll();
  const TErrorCode result = guardHostCall([&]() -> TErrorCode {
    std::vector<String> values;
    const TErrorCode runResult = query().run(values);
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

}  // namespace XmlPlugin
