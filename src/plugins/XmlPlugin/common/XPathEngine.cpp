#include "XPathEngine.h"

#include "XmlPluginConstants.h"

namespace XmlPlugin {

TErrorCode XPathEngine::start(const String&, const String&, XPathOutputElements&) {
  return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
}

}  // namespace XmlPlugin
