// The item for every operator, function call and punctuation token: wraps one function,
// checks argument counts, converts parameters to the declared types and runs it.
#pragma once

#include <memory>
#include <vector>

#include "XPathExpression.h"

namespace XmlPlugin {

class XPathFunction;

class XPathOperator : public XPathExpression {
 public:
  // Takes ownership of the function. The previous element is not kept.
  XPathOperator(const String& i_Expression, XPathExpression* i_pPrevElement,
                XPathFunction* i_pXPathFunction);
  ~XPathOperator() override;

  bool isOperator() const override;
  int getPriority() const override;
  bool isInfix() const override;
  int getArgumentsCount() const override;
  TErrorCode evaluate(const std::vector<XPathExpression*>& i_ExpressionsVector,
                      XPathEvaluationContext& io_Context) override;
  XPathExpression* getOutputArgument() override;  // owned by the function
  // Also frees the values the function and the parameter conversions made.
  void clearValue() override;

  void setArgumentsCount(int i_ArgNo);
  bool convertTypeParameters(const std::vector<XPathExpression*>& i_ExpressionsVector);

  XPathFunction* getFunction() const { return m_pFunction.get(); }

 private:
  XPathExpression* m_pOutputArgument = nullptr;
  std::unique_ptr<XPathFunction> m_pFunction;
  // The values that parameter conversion made; they live as long as the operator.
  std::vector<std::unique_ptr<XPathExpression>> m_ConvertedValues;
};

}  // namespace XmlPlugin
