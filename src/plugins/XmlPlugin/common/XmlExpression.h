// What XmlValue and XmlValues share over their different SDK bases: the property checks and
// the evaluation, both done by XmlQuery on the expression's own properties.
#pragma once

#include "XmlQuery.h"
#include "host/Types.h"

namespace XmlPlugin {

template <typename SdkExpression>
class XmlExpression : public SdkExpression {
 public:
  // Nothing to release: the expression keeps only its properties.
  void disposeExpression() override {}

  TErrorCode validateProperties() const { return query().validateProperties(); }
  const wchar_t* getOptionalProperty(const wchar_t* i_Name, const wchar_t* i_DefaultValue) const {
    return query().getOptionalProperty(i_Name, i_DefaultValue);
  }

 protected:
  XmlQuery query() const { return XmlQuery(*this); }
};

}  // namespace XmlPlugin
