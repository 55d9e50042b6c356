#include "XmlPlugin.h"

#include <cwchar>

#include "HostBoundary.h"
#include "XPathExpressionCache.h"
#include "XmlCache.h"
#include "XmlValue.h"
#include "XmlValues.h"

namespace PluginSDK {

void XmlPlugin::setProperty(const wchar_t*, const wchar_t*) {}

Version XmlPlugin::getVersion() const {
  return Version{1, 1, 1, 1};
}

const wchar_t* XmlPlugin::getName() const {
  return XML_PLUGIN_NAME;
}

TErrorCode XmlPlugin::getUnknownSoftware() {
  return 0;
}

TErrorCode XmlPlugin::initializePlugin() {
  return ::XmlPlugin::guardHostCall([this]() -> TErrorCode {
    // The first registration's result is deliberately not examined.
    addExpression(XML_PLUGIN_EXPRESSION_XMLVALUE);
    return addExpression(XML_PLUGIN_EXPRESSION_XMLVALUES);
  });
}

void XmlPlugin::cleanupPlugin() {
  // Compiled expressions first: nothing they hold may outlive the trees.
  ::XmlPlugin::XPathExpressionCache::cleanup();
  ::XmlPlugin::XmlCache::cleanup();
}

TErrorCode XmlPlugin::createExpression(const wchar_t* i_TypeName, Expression** o_pExpression) {
  if (i_TypeName == nullptr || o_pExpression == nullptr) {
    return HOST_ERROR_BAD_ARGUMENT;
  }
  *o_pExpression = nullptr;
  return ::XmlPlugin::guardHostCall([&]() -> TErrorCode {
    if (std::wcscmp(i_TypeName, XML_PLUGIN_EXPRESSION_XMLVALUE) == 0) {
      *o_pExpression = new ::XmlPlugin::XmlValue();
      return 0;
    }
    if (std::wcscmp(i_TypeName, XML_PLUGIN_EXPRESSION_XMLVALUES) == 0) {
      *o_pExpression = new ::XmlPlugin::XmlValues();
      return 0;
    }
    return HOST_ERROR_UNKNOWN_EXPRESSION;
  });
}

TErrorCode XmlPlugin::destroyExpression(Expression* i_pExpression) {
  delete i_pExpression;
  return 0;
}

}  // namespace PluginSDK

extern "C" {

PluginSDK::Plugin* createPlugin() {
  try {
    return new PluginSDK::XmlPlugin();
  } catch (...) {
    return nullptr;
  }
}

void destroyPlugin(PluginSDK::Plugin* i_pPlugin) {
  delete i_pPlugin;
}
}
