// The plug-in object the host creates through createPlugin(): registers the expression
// types "XmlValue" and "XmlValues", creates and destroys them, and releases the document
// cache at clean-up.
#pragma once

#include "XmlPluginConstants.h"
#include "host/PluginSDK.h"
#include "host/Types.h"

namespace PluginSDK {

class XmlPlugin : public Plugin {
 public:
  // No plug-in-level properties: both arguments are ignored.
  void setProperty(const wchar_t* i_Name, const wchar_t* i_Value) override;
  Version getVersion() const override;       // 1.1.1.1
  const wchar_t* getName() const override;   // XML_PLUGIN_NAME
  TErrorCode getUnknownSoftware() override;  // 0
  // Registers "XmlValue" then "XmlValues"; the result of the second registration.
  TErrorCode initializePlugin() override;
  // Deletes the process-wide document cache with every tree in it.
  void cleanupPlugin() override;
  // 0 with a new expression in *o_pExpression for an exact type name; -101 (nothing
  // touched) for a null argument; -10008 with *o_pExpression null for an unknown name.
  TErrorCode createExpression(const wchar_t* i_TypeName, Expression** o_pExpression) override;
  // Deletes the expression; always 0, also for null.
  TErrorCode destroyExpression(Expression* i_pExpression) override;
};

}  // namespace PluginSDK

extern "C" {
// A new plug-in object, or null when it cannot be allocated.
XML_PLUGIN_EXPORT PluginSDK::Plugin* createPlugin();
// Deletes the plug-in object; null is ignored. The document cache is left to cleanupPlugin.
XML_PLUGIN_EXPORT void destroyPlugin(PluginSDK::Plugin* i_pPlugin);
}
