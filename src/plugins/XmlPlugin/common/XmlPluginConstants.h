// Names and error codes that the plug-in exports to the host as global data.
#pragma once

#include "host/Types.h"

#define XML_PLUGIN_EXPORT __attribute__((visibility("default")))

extern "C" {
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_NAME;                  // "Xml"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_EXPRESSION_XMLVALUE;   // "XmlValue"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_EXPRESSION_XMLVALUES;  // "XmlValues"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_PROPERTY_FILE;         // "file"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_PROPERTY_XPATH;        // "xpath"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_PROPERTY_MUSTEXIST;    // "mustExist"

XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_UNSPECIFIED_FILE;      // -15000
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_UNSPECIFIED_XPATH;     // -15001
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_DOES_NOT_EXIST;  // -15002
XML_PLUGIN_EXPORT extern const TErrorCode
    XML_PLUGIN_ERROR_XPATH_DOES_NOT_MATCH_ONE_VALUE;                                      // -15003
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;            // -15004
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR;  // -15005
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_ARGUMENTS_TYPE_ERROR;    // -15006
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_WRONG_ROOT;              // -15100
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_WRONG_MID;               // -15101
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_WRONG_LEAF;              // -15102
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_UNABLE_TO_PARSE_XML_FILE;      // -15103
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_NOT_FOUND;               // -15104
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION;        // -15105
XML_PLUGIN_EXPORT extern const TErrorCode XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;  // -15106
XML_PLUGIN_EXPORT extern const TErrorCode
    XML_PLUGIN_ERROR_XPATH_UNABLE_TO_EVAL_EXPRESSION;  // -15107
}

namespace XmlPlugin {
// Trace component of every record the plug-in writes.
const int TRACE_COMPONENT = 5;
}  // namespace XmlPlugin
