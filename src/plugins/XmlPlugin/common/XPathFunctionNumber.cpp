// The operators and the node-set, boolean and number functions. Parameters arrive in
// reverse call order: parameter 0 is the call's last argument, so for a binary operator
// parameter 0 is the right operand and parameter 1 the left one.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <list>

#include "PluginTracer.h"
#include "XPathArgument.h"
#include "XPathEvaluationContext.h"
#include "XPathFunction.h"
#include "XPathLogicalEvaluator.h"
#include "XPathNumericLimits.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

const NumberValue kNaN = {0.0, NaN, false};

// The number that a text stands for when it reads as a number operand; NaN otherwise.
NumberValue numberOfText(const String& i_Text) {
  double number = 0.0;
  return XPathArgument::numberOfOperand(i_Text, number) ? NumberValue{number, NumbType, false}
                                                        : kNaN;
}

}  // namespace

// ---- Operators ----

TErrorCode XPathFunction_logical_eq::evaluate() {
  const unsigned answer =
      XPathLogicalEvaluator::evaluate(getParameter(0), getParameter(1), getExpression());
  createBooleanOutput(answer != 0);
  return 0;
}

TErrorCode XPathFunction_arithmetic::evaluate() {
  const XPathExpression* pLeft = getParameter(1);
  const XPathExpression* pRight = getParameter(0);
  const String op = getExpression();
  const LimitType kind = XPathNumericLimits::evaluate(pLeft, pRight, op);
  const NumberValue result =
      kind != NumbType ? NumberValue{0.0, kind, false} : compute(*pLeft, *pRight, op);
  createOutputExpression(result.m_Value, result.m_Kind, result.m_NegativeZero);
  return 0;
}

NumberValue XPathFunction_aritmetical_plus::compute(const XPathExpression& i_Left,
                                                    const XPathExpression& i_Right,
                                                    const String& i_Op) const {
  const double left = i_Left.GetExpressionNumb();
  const double right = i_Right.GetExpressionNumb();
  if (i_Op.compareTo(L"+") == 0) {
    return {left + right, NumbType, false};  // deliberately drops negative zero: -0 + -0 is 0
  }
  if (i_Op.compareTo(L"-") == 0) {
    return {left - right, NumbType, left == 0.0 && right == 0.0 && i_Left.isNegativeZero()};
  }
  return {0.0, NumbType, false};
}

NumberValue XPathFunction_aritmetical_multi::compute(const XPathExpression& i_Left,
                                                     const XPathExpression& i_Right,
                                                     const String& i_Op) const {
  const double left = i_Left.GetExpressionNumb();
  const double right = i_Right.GetExpressionNumb();
  if (i_Op.compareTo(L"*") == 0) {
    return {left * right, NumbType, false};
  }
  if (i_Op.compareTo(L"div") == 0) {
    return {left / right, NumbType, false};
  }
  // Deliberately integral: both operands are truncated first, so 5.5 mod 2 is 1. Computed in
  // 64 bits so that -2147483648 mod -1 cannot overflow.
  const int64_t dividend = truncateToInt32(left);
  const int64_t divisor = truncateToInt32(right);
  if (divisor == 0) {
    return kNaN;
  }
  return {static_cast<double>(dividend % divisor), NumbType, false};
}

// ---- Node-set functions ----

TErrorCode XPathFunction_count::evaluate() {
  const XPathExpression* pNodes = getParameter(0);
  if (pNodes->getDataType() != NodeSetType) {
    return 0;
  }
  createOutputExpression(static_cast<double>(pNodes->getOutputNodesList().size()), NumbType, false);
  return 0;
}

TErrorCode XPathFunction_last::evaluate() {
  const Node* pNode = getStartNode();
  const bool inList = pNode != nullptr && pNode->getParent() != nullptr && getSiblings() != nullptr;
  createOutputExpression(inList ? static_cast<double>(getSiblings()->size()) : 1.0, NumbType,
                         false);
  return 0;
}

TErrorCode XPathFunction_position::evaluate() {
  const Node* pNode = getStartNode();
  if (pNode == nullptr || pNode->getParent() == nullptr || getSiblings() == nullptr) {
    createOutputExpression(1.0, NumbType, false);
    return 0;
  }
  const long position = getEvaluationContext()->positionAmong(*getSiblings(), pNode);
  if (position > 0) {
    createOutputExpression(static_cast<double>(position), NumbType, false);
  }
  return 0;
}

TErrorCode XPathFunction_localname::evaluate() {
  return HOST_ERROR_NOT_SUPPORTED;
}

TErrorCode XPathFunction_name::evaluate() {
  const Node* pNode = getStartNode();
  if (getParametersCount() > 0) {
    const XPathExpression* pNodes = getParameter(0);
    const XPathOutputElements items =
        pNodes->getDataType() == NodeSetType ? pNodes->getOutputNodesList() : XPathOutputElements();
    pNode = items.empty() ? nullptr : items.front()->m_Node;
  }
  createOutputExpression(pNode != nullptr ? pNode->m_Name : String());
  return 0;
}

// ---- Boolean functions ----

TErrorCode XPathFunction_boolean::evaluate() {
  const XPathExpression* pValue = getParameter(0);
  double result = 0.0;
  switch (pValue->getDataType()) {
    case NumberType:
      result = pValue->GetExpressionBool() == 1 ? 1.0 : 0.0;
      break;
    case StringType:
      result = pValue->GetExpressionString().isEmpty() ? 0.0 : 1.0;
      break;
    case NodeSetType:
      result = pValue->getOutputNodesList().empty() ? 0.0 : 1.0;
      break;
    case BooleanType:
      result = pValue->GetExpressionNumb();
      break;
  }
  createOutputExpression(result, NumbType, false);
  return 0;
}

TErrorCode XPathFunction_true::evaluate() {
  createBooleanOutput(true);
  return 0;
}

TErrorCode XPathFunction_false::evaluate() {
  createBooleanOutput(false);
  return 0;
}

TErrorCode XPathFunction_not::evaluate() {
  createBooleanOutput(getParameter(0)->GetExpressionBool() != 1);
  return 0;
}

// ---- Number functions ----

NumberValue XPathFunction_number::toNumber(const XPathExpression* i_pValue) {
  Trace trace(pluginTracer(), "XPathFunction_number::toNumber");
  switch (i_pValue->getDataType()) {
    case NumberType:
      if (i_pValue->getNumbType() != NumbType) {
        return {0.0, i_pValue->getNumbType(), false};
      }
      return {i_pValue->GetExpressionNumb(), NumbType, i_pValue->isNegativeZero()};
    case BooleanType:
      return {i_pValue->GetExpressionNumb(), NumbType, false};
    case NodeSetType: {
      const String text = XPathFunction_string::getValueString(i_pValue);
      const NumberValue number = numberOfText(text);
      HOST_TRACE(trace, 3) << "XPathFunction_number string from node " << text << " Type "
                           << static_cast<int>(number.m_Kind);
      return number;
    }
    case StringType: {
      const String text = i_pValue->GetExpressionString();
      return XPathArgument::isNumber(text) != 0 ? numberOfText(text) : kNaN;
    }
  }
  return kNaN;
}

TErrorCode XPathFunction_number::evaluate() {
  const NumberValue number = getParametersCount() == 0 ? kNaN : toNumber(getParameter(0));
  createOutputExpression(number.m_Value, number.m_Kind, number.m_NegativeZero);
  return 0;
}

TErrorCode XPathFunction_sum::evaluate() {
  Trace trace(pluginTracer(), "XPathFunction_sum::evaluate");
  const XPathExpression* pValue = getParameter(0);
  if (pValue->getDataType() != NodeSetType) {
    const NumberValue number = XPathFunction_number::toNumber(pValue);
    createOutputExpression(number.m_Value, number.m_Kind, number.m_NegativeZero);
    return 0;
  }
  double total = 0.0;
  for (const XPathOutputElement* pItem : pValue->getOutputNodesList()) {
    const NumberValue number = numberOfText(XPathFunction_string::getItemString(pItem));
    if (number.m_Kind != NumbType) {
      // The sum is NaN; the type error is only noted, the evaluation goes on.
      HOST_TRACE(trace, 3) << "XML_PLUGIN_ERROR_XPATH_ARGUMENTS_TYPE_ERROR";
      createOutputExpression(0.0, NaN, false);
      return 0;
    }
    total += number.m_Value;
  }
  createOutputExpression(total, NumbType, false);
  return 0;
}

TErrorCode XPathFunction_rounding::evaluate() {
  const XPathExpression* pValue = getParameter(0);
  if (pValue->getNumbType() != NumbType) {
    createOutputExpression(0.0, pValue->getNumbType(), false);
  } else {
    createOutputExpression(roundValue(pValue->GetExpressionNumb()), NumbType, false);
  }
  return 0;
}

double XPathFunction_floor::roundValue(double i_Value) const {
  return std::floor(i_Value);
}

double XPathFunction_ceiling::roundValue(double i_Value) const {
  return std::ceil(i_Value);
}

double XPathFunction_round::roundNumber(double i_Value) {
  const double whole = truncateToInt32(i_Value);
  const double fraction = i_Value - whole;
  // Halves go up (-2.5 gives -2), and the result is never negative zero.
  if (fraction >= 0.5) {
    return whole + 1.0;
  }
  if (fraction < -0.5) {
    return whole - 1.0;
  }
  return whole;
}

}  // namespace XmlPlugin
