#include "XmlQuery.h"

#include <cwchar>

#include "XPathEngine.h"
#include "XPathOutputElement.h"
#include "XmlPluginConstants.h"

namespace XmlPlugin {

TErrorCode XmlQuery::validateProperties() const {
  if (m_Expression.getProperty(XML_PLUGIN_PROPERTY_FILE) == nullptr) {
    return XML_PLUGIN_ERROR_UNSPECIFIED_FILE;
  }
  if (m_Expression.getProperty(XML_PLUGIN_PROPERTY_XPATH) == nullptr) {
    return XML_PLUGIN_ERROR_UNSPECIFIED_XPATH;
  }
  return 0;
}

const wchar_t* XmlQuery::getOptionalProperty(const wchar_t* i_Name,
                                             const wchar_t* i_DefaultValue) const {
  const wchar_t* value = m_Expression.getProperty(i_Name);
  return value != nullptr ? value : i_DefaultValue;
}

bool XmlQuery::mustExist() const {
  const wchar_t* value = getOptionalProperty(XML_PLUGIN_PROPERTY_MUSTEXIST, PLUGIN_RESULT_FALSE);
  return value != nullptr && std::wcscmp(value, PLUGIN_RESULT_TRUE) == 0;
}

TErrorCode XmlQuery::run(std::vector<String>& o_Values) const {
  TErrorCode result = validateProperties();
  if (result != 0) {
    return result;
  }
  const String fileName(m_Expression.getProperty(XML_PLUGIN_PROPERTY_FILE));
  const String xpath(m_Expression.getProperty(XML_PLUGIN_PROPERTY_XPATH));
  const bool valueRequired = mustExist();

  XPathOutputElements output;
  OutputElementsGuard outputOwner(output);
  XPathEngine engine;
  result = engine.start(xpath, fileName, output);
  if (result != 0) {
    return result;
  }
  if (output.empty()) {
    return valueRequired ? XML_PLUGIN_ERROR_XPATH_DOES_NOT_EXIST : 0;
  }
  o_Values.reserve(output.size());
  for (const XPathOutputElement* element : output) {
    o_Values.push_back(element->hostValue());
  }
  return 0;
}

}  // namespace XmlPlugin
