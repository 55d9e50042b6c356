#include "PluginLibrary.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>

namespace XmlQuery {
namespace {

// The exported error constants; their values are read from the loaded library.
const char* const PLUGIN_ERROR_NAMES[] = {
    "XML_PLUGIN_ERROR_UNSPECIFIED_FILE",
    "XML_PLUGIN_ERROR_UNSPECIFIED_XPATH",
    "XML_PLUGIN_ERROR_XPATH_DOES_NOT_EXIST",
    "XML_PLUGIN_ERROR_XPATH_DOES_NOT_MATCH_ONE_VALUE",
    "XML_PLUGIN_ERROR_XPATH_PARSER_ERROR",
    "XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR",
    "XML_PLUGIN_ERROR_XPATH_ARGUMENTS_TYPE_ERROR",
    "XML_PLUGIN_ERROR_XPATH_WRONG_ROOT",
    "XML_PLUGIN_ERROR_XPATH_WRONG_MID",
    "XML_PLUGIN_ERROR_XPATH_WRONG_LEAF",
    "XML_PLUGIN_ERROR_UNABLE_TO_PARSE_XML_FILE",
    "XML_PLUGIN_ERROR_XPATH_NOT_FOUND",
    "XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION",
    "XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION",
    "XML_PLUGIN_ERROR_XPATH_UNABLE_TO_EVAL_EXPRESSION",
};

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
  if (m_CreatePlugin == nullptr || m_DestroyPlugin == nullptr) {
    o_Error = i_Path + " does not export createPlugin and destroyPlugin";
    return false;
  }
  return true;
}

std::string PluginLibrary::errorName(TErrorCode i_Code) const {
  for (const char* name : PLUGIN_ERROR_NAMES) {
    const void* pValue = m_pHandle != nullptr ? dlsym(m_pHandle, name) : nullptr;
    if (pValue != nullptr && *static_cast<const TErrorCode*>(pValue) == i_Code) {
      return name;
    }
  }
  return hostErrorName(i_Code);
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
