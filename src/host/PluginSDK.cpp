#include "host/PluginSDK.h"

#include <algorithm>

const wchar_t* const PLUGIN_RESULT_TRUE = L"true";
const wchar_t* const PLUGIN_RESULT_FALSE = L"false";

namespace PluginSDK {

String& String::operator=(const wchar_t* i_Value) {
  m_Value = i_Value == nullptr ? L"" : i_Value;
  return *this;
}

void StringVector::addString(const wchar_t* i_Value) {
  m_Values.emplace_back(i_Value == nullptr ? L"" : i_Value);
}

Expression::Expression() {}

Expression::~Expression() {}

bool Expression::isOperator() const {
  return false;
}

bool Expression::isReady() const {
  return true;
}

const wchar_t* Expression::getProperty(const wchar_t* i_Name) const {
  if (i_Name == nullptr) {
    return nullptr;
  }
  const auto found = m_Properties.find(i_Name);
  return found == m_Properties.end() ? nullptr : found->second.c_str();
}

void Expression::setProperty(const wchar_t* i_Name, const wchar_t* i_Value) {
  if (i_Name != nullptr && i_Value != nullptr) {
    m_Properties[i_Name] = i_Value;
  }
}

int ScalarExpression::getType() const {
  return 0;
}

int VectorExpression::getType() const {
  return 1;
}

Plugin::Plugin() {}

Plugin::~Plugin() {}

TErrorCode Plugin::addExpression(const wchar_t* i_TypeName) {
  if (i_TypeName == nullptr || std::find(m_ExpressionNames.begin(), m_ExpressionNames.end(),
                                         i_TypeName) != m_ExpressionNames.end()) {
    return HOST_ERROR_BAD_ARGUMENT;
  }
  m_ExpressionNames.emplace_back(i_TypeName);
  return 0;
}

}  // namespace PluginSDK
