#include "XmlPluginConstants.h"

extern "C" {
const wchar_t* const XML_PLUGIN_NAME = L"Xml";
const wchar_t* const XML_PLUGIN_EXPRESSION_XMLVALUE = L"XmlValue";
const wchar_t* const XML_PLUGIN_EXPRESSION_XMLVALUES = L"XmlValues";
const wchar_t* const XML_PLUGIN_PROPERTY_FILE = L"file";
const wchar_t* const XML_PLUGIN_PROPERTY_XPATH = L"xpath";
const wchar_t* const XML_PLUGIN_PROPERTY_MUSTEXIST = L"mustExist";

#define XML_PLUGIN_DEFINE_ERROR(i_Name, i_Value) const TErrorCode i_Name = i_Value;
XML_PLUGIN_ERROR_TABLE(XML_PLUGIN_DEFINE_ERROR)
#undef XML_PLUGIN_DEFINE_ERROR
}
