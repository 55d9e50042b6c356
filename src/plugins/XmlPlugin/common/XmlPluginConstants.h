// Names and error codes (XmlPlugin/XmlPluginErrors.h) that the plug-in exports to the host as
// global data.
#pragma once

#include "XmlPlugin/XmlPluginErrors.h"
#include "host/Types.h"

#define XML_PLUGIN_EXPORT __attribute__((visibility("default")))

extern "C" {
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_NAME;                  // "Xml"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_EXPRESSION_XMLVALUE;   // "XmlValue"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_EXPRESSION_XMLVALUES;  // "XmlValues"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_PROPERTY_FILE;         // "file"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_PROPERTY_XPATH;        // "xpath"
XML_PLUGIN_EXPORT extern const wchar_t* const XML_PLUGIN_PROPERTY_MUSTEXIST;    // "mustExist"
}

namespace XmlPlugin {
// Trace component of every record the plug-in writes.
const int TRACE_COMPONENT = 5;
}  // namespace XmlPlugin
