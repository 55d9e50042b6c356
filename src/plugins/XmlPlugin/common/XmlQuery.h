// The evaluation shared by XmlValue and XmlValues: reads the properties of an expression,
// runs the engine and collects the string the host receives for each result item.
#pragma once

#include <vector>

#include "host/PluginSDK.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XmlQuery {
 public:
  // Borrows the expression whose properties are read.
  explicit XmlQuery(const PluginSDK::Expression& i_Expression) : m_Expression(i_Expression) {}

  // -15000 without "file", else -15001 without "xpath", else 0. A set empty value counts.
  TErrorCode validateProperties() const;
  // The property's value, or i_DefaultValue itself when it is not set.
  const wchar_t* getOptionalProperty(const wchar_t* i_Name, const wchar_t* i_DefaultValue) const;

  // Validates, evaluates and fills the empty o_Values with one string per result item, in
  // the engine's order, without merging repeats. When nothing is selected: -15002 if
  // "mustExist" is exactly PLUGIN_RESULT_TRUE, else 0.
  TErrorCode run(std::vector<String>& o_Values) const;

 private:
  bool mustExist() const;

  const PluginSDK::Expression& m_Expression;
};

}  // namespace XmlPlugin
