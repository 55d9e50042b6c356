// The line no exception may cross: every operation the host calls runs through guardHostCall.
#pragma once

#include "XmlPluginConstants.h"
#include "host/Types.h"

namespace XmlPlugin {

// Runs i_Operation and returns its code. Any exception (in practice std::bad_alloc) is
// caught here and reported as XML_PLUGIN_ERROR_XPATH_PARSER_ERROR (-15004): the request
// could not be evaluated.
template <typename Operation>
TErrorCode guardHostCall(Operation i_Operation) noexcept {
  try {
    return i_Operation();
  } catch (...) {
    return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
  }
}

}  // namespace XmlPlugin
