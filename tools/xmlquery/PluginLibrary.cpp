#include "PluginLibrary.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>

#include "XmlPlugin/XmlPluginErrors.h"

namespace XmlQuery {
namespace {

std::string hostErrorName(TErrorCode i_Code) {
  switch (i_Code) {
    case HOST_ERROR_BAD_ARGUMENT:
      return "HOST_ERROR_BAD_ARGUMENT";
    case HOST_ERROR_NOT_SUPPORTED:
      return "HOST_ERROR_NOT_SUPPORTED";
    case HOST_ERROR_OUT_OF_RANGE:
      return "HOST_ERROR_OUT_OF_RANGE";
    case HOST_ERROR_KEY_NOT_FOUND:
      return "HOST_ERROR_KEY_NOT_FOUND";
    case HOST_ERROR_UNKNOWN_EXPRESSION:
      return "HOST_ERROR_UNKNOWN_EXPRESSION";
  }
  return "";
}

}  // namespace

PluginLibrary::~PluginLibrary() {
  if (m_pHandle != nullptr) {
    dlclose(m_pHandle);
  }
}

bool PluginLibrary::load(const std::string& i_Path, std::string& o_Error) {
  m_pHandle = dlopen(i_Path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (m_pHandle == nullptr) {
    o_Error = dlerror();
    return false;
  }
  m_CreatePlugin = reinterpret_cast<CreatePluginFunction>(dlsym(m_pHandle, "createPlugin"));
  m_DestroyPlugin = reinterpret_cast<DestroyPluginFunction>(dlsym(m_pHandle, "destroyPlugin"));
  m_Explain = reinterpret_cast<XmlPluginExplainFunction>(dlsym(m_pHandle, "xmlPluginExplain"));
  if (m_CreatePlugin == nullptr || m_DestroyPlugin == nullptr) {
    o_Error = i_Path + " does not export createPlugin and destroyPlugin";
    return false;
  }
  return true;
}

std::string errorName(TErrorCode i_Code) {
  const char* pName = xmlPluginErrorName(i_Code);
  return pName != nullptr ? pName : hostErrorName(i_Code);
}

std::string defaultPluginPath() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof(path) - 1);
  if (length <= 0) {
    return "libXmlPlugin.so";
  }
  const std::string executable(path, static_cast<size_t>(length));
  const std::string directory = executable.substr(0, executable.rfind('/') + 1);
  const std::string beside = directory + "libXmlPlugin.so";
  return access(beside.c_str(), F_OK) == 0
             ? beside
             : directory + XMLQUERY_PLUGIN_DIRECTORY "/libXmlPlugin.so";
}

}  // namespace XmlQuery
