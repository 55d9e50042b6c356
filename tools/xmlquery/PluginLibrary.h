// The plug-in library loaded with dlopen: its entry points; the names of its error codes.
#pragma once

#include <string>

#include "XmlPlugin/XmlPluginExplain.h"
#include "host/PluginSDK.h"
#include "host/Types.h"

namespace XmlQuery {

class PluginLibrary {
 public:
  PluginLibrary() = default;
  ~PluginLibrary();
  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;

  // Loads the library and resolves createPlugin/destroyPlugin. On failure returns false
  // and o_Error says why.
  bool load(const std::string& i_Path, std::string& o_Error);

  CreatePluginFunction createPlugin() const { return m_CreatePlugin; }
  DestroyPluginFunction destroyPlugin() const { return m_DestroyPlugin; }
  // Null when the library has no explain entry.
  XmlPluginExplainFunction explain() const { return m_Explain; }

 private:
  void* m_pHandle = nullptr;
  CreatePluginFunction m_CreatePlugin = nullptr;
  DestroyPluginFunction m_DestroyPlugin = nullptr;
  XmlPluginExplainFunction m_Explain = nullptr;
};

// The name of the XML_PLUGIN_ERROR_* constant (or host code) that holds i_Code; empty when
// none does.
std::string errorName(TErrorCode i_Code);

// The library beside the running executable (<directory of /proc/self/exe>/libXmlPlugin.so),
// or else in the library directory of an installed tree.
std::string defaultPluginPath();

}  // namespace XmlQuery
