// The plug-in's error codes, exported as constants of these names. This table is the one list
// of them: the constants, their names in xmlquery and the tests are all made from it.
#pragma once

#include "host/Types.h"

// ROW(name, value) for every code.
#define XML_PLUGIN_ERROR_TABLE(ROW)                                \
  ROW(XML_PLUGIN_ERROR_UNSPECIFIED_FILE, -15000)                   \
  ROW(XML_PLUGIN_ERROR_UNSPECIFIED_XPATH, -15001)                  \
  ROW(XML_PLUGIN_ERROR_XPATH_DOES_NOT_EXIST, -15002)               \
  ROW(XML_PLUGIN_ERROR_XPATH_DOES_NOT_MATCH_ONE_VALUE, -15003)     \
  ROW(XML_PLUGIN_ERROR_XPATH_PARSER_ERROR, -15004)                 \
  ROW(XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR, -15005)       \
  ROW(XML_PLUGIN_ERROR_XPATH_ARGUMENTS_TYPE_ERROR, -15006)         \
  ROW(XML_PLUGIN_ERROR_XPATH_WRONG_ROOT, -15100)                   \
  ROW(XML_PLUGIN_ERROR_XPATH_WRONG_MID, -15101)                    \
  ROW(XML_PLUGIN_ERROR_XPATH_WRONG_LEAF, -15102)                   \
  ROW(XML_PLUGIN_ERROR_UNABLE_TO_PARSE_XML_FILE, -15103)           \
  ROW(XML_PLUGIN_ERROR_XPATH_NOT_FOUND, -15104)                    \
  ROW(XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION, -15105)             \
  ROW(XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION, -15106)       \
  /* exported for the host's sake only: no code path returns it */ \
  ROW(XML_PLUGIN_ERROR_XPATH_UNABLE_TO_EVAL_EXPRESSION, -15107)

#define XML_PLUGIN_DECLARE_ERROR(i_Name, i_Value) \
  __attribute__((visibility("default"))) extern const TErrorCode i_Name;
extern "C" {
XML_PLUGIN_ERROR_TABLE(XML_PLUGIN_DECLARE_ERROR)
}
#undef XML_PLUGIN_DECLARE_ERROR

// The name of the constant that holds i_Code; null when none does.
inline const char* xmlPluginErrorName(TErrorCode i_Code) {
  switch (i_Code) {
#define XML_PLUGIN_ERROR_NAME_CASE(i_Name, i_Value) \
  case i_Value:                                     \
    return #i_Name;
    XML_PLUGIN_ERROR_TABLE(XML_PLUGIN_ERROR_NAME_CASE)
#undef XML_PLUGIN_ERROR_NAME_CASE
  }
  return nullptr;
}
