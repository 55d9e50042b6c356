// The function base and the registry of operators and core functions.
//
// Each operator token and core function name has one row: the class to make and what the
// new object is equipped with. Adding a function means adding its class and its row.
#include "XPathFunction.h"

#include <cmath>
#include <initializer_list>
#include <limits>

#include "PluginTracer.h"
#include "XPathArgument.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

template <class TFunction>
XPathFunction* make() {
  return new TFunction();
}

struct FunctionRow {
  const wchar_t* m_Name;
  XPathFunction* (*m_Make)();
  int m_Priority;
  bool m_Infix;  // true for a function-style entry, false for a binary operator
  int m_ArgumentsCount;
  std::initializer_list<XPathDataType> m_ParametersType;
  XPathDataType m_ReturnType;
};

const bool kBinary = false;
const bool kFunction = true;

// Tested in this order before any function name. "(" is a function-style entry only after
// a function name (see XPathFunctionFactory::create).
const FunctionRow kOperatorRows[] = {
    {L"or", make<XPathFunction_logical>, 1, kBinary, 2, {}, BooleanType},
    {L"and", make<XPathFunction_logical>, 1, kBinary, 2, {}, BooleanType},
    {L")", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L">", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L"<", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L">=", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L"<=", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L"!=", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L"=", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L",", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L"(", make<XPathFunction_logical_eq>, 2, kBinary, 2, {}, BooleanType},
    {L"+",
     make<XPathFunction_aritmetical_plus>,
     3,
     kBinary,
     2,
     {NumberType, NumberType},
     NumberType},
    {L"-",
     make<XPathFunction_aritmetical_plus>,
     3,
     kBinary,
     2,
     {NumberType, NumberType},
     NumberType},
    {L"*",
     make<XPathFunction_aritmetical_multi>,
     4,
     kBinary,
     2,
     {NumberType, NumberType},
     NumberType},
    {L"div",
     make<XPathFunction_aritmetical_multi>,
     4,
     kBinary,
     2,
     {NumberType, NumberType},
     NumberType},
    {L"mod",
     make<XPathFunction_aritmetical_multi>,
     4,
     kBinary,
     2,
     {NumberType, NumberType},
     NumberType},
};

// The priorities are deliberately uneven ("position" 5, "starts-with", "contains",
// "substring-before" and "substring" 1), and "concat" declares one parameter type for all.
const FunctionRow kFunctionRows[] = {
    {L"position", make<XPathFunction_position>, 5, kFunction, 0, {}, NumberType},
    {L"count", make<XPathFunction_count>, 4, kFunction, 1, {}, NumberType},
    {L"last", make<XPathFunction_last>, 4, kFunction, 0, {}, NumberType},
    {L"local-name", make<XPathFunction_localname>, 4, kFunction, 0, {}, StringType},
    {L"name", make<XPathFunction_name>, 4, kFunction, 1, {}, StringType},
    {L"string", make<XPathFunction_string>, 4, kFunction, 0, {}, StringType},
    {L"concat", make<XPathFunction_concat>, 4, kFunction, 1, {StringType}, StringType},
    {L"starts-with",
     make<XPathFunction_startsWith>,
     1,
     kFunction,
     1,
     {StringType, StringType},
     BooleanType},
    {L"contains",
     make<XPathFunction_contains>,
     1,
     kFunction,
     1,
     {StringType, StringType},
     BooleanType},
    {L"substring-before",
     make<XPathFunction_substringBefore>,
     1,
     kFunction,
     1,
     {StringType, StringType},
     StringType},
    {L"substring-after",
     make<XPathFunction_substringAfter>,
     4,
     kFunction,
     1,
     {StringType, StringType},
     StringType},
    {L"substring",
     make<XPathFunction_substring>,
     1,
     kFunction,
     1,
     {StringType, NumberType, NumberType},
     StringType},
    {L"string-length", make<XPathFunction_stringlength>, 4, kFunction, 1, {StringType}, NumberType},
    {L"normalize-space",
     make<XPathFunction_normalizespace>,
     4,
     kFunction,
     1,
     {StringType},
     StringType},
    {L"translate", make<XPathFunction_translate>, 4, kFunction, 1, {}, StringType},
    {L"boolean", make<XPathFunction_boolean>, 4, kFunction, 1, {}, BooleanType},
    {L"true", make<XPathFunction_true>, 4, kFunction, 0, {}, BooleanType},
    {L"false", make<XPathFunction_false>, 4, kFunction, 0, {}, BooleanType},
    {L"not", make<XPathFunction_not>, 4, kFunction, 1, {}, BooleanType},
    {L"number", make<XPathFunction_number>, 4, kFunction, 0, {}, NumberType},
    {L"sum", make<XPathFunction_sum>, 4, kFunction, 1, {}, NumberType},
    {L"floor", make<XPathFunction_floor>, 4, kFunction, 1, {NumberType}, NumberType},
    {L"ceiling", make<XPathFunction_ceiling>, 4, kFunction, 1, {NumberType}, NumberType},
    {L"round", make<XPathFunction_round>, 4, kFunction, 1, {NumberType}, NumberType},
};

template <size_t N>
const FunctionRow* findRow(const FunctionRow (&i_Rows)[N], const String& i_Name) {
  for (const FunctionRow& row : i_Rows) {
    if (i_Name.compareTo(row.m_Name) == 0) {
      return &row;
    }
  }
  return nullptr;
}

XPathFunction* makeFunction(const FunctionRow& i_Row, const String& i_Token) {
  XPathFunction* pFunction = i_Row.m_Make();
  pFunction->setPriority(i_Row.m_Priority);
  pFunction->setInfix(i_Row.m_Infix);
  pFunction->setArgumentsCount(i_Row.m_ArgumentsCount);
  for (XPathDataType type : i_Row.m_ParametersType) {
    pFunction->addParameterType(type);
  }
  pFunction->setReturnType(i_Row.m_ReturnType);
  pFunction->setExpression(i_Token);
  return pFunction;
}

}  // namespace

int32_t truncateToInt32(double i_Value) {
  if (std::isnan(i_Value)) {
    return 0;
  }
  if (i_Value <= static_cast<double>(std::numeric_limits<int32_t>::min())) {
    return std::numeric_limits<int32_t>::min();
  }
  if (i_Value >= static_cast<double>(std::numeric_limits<int32_t>::max())) {
    return std::numeric_limits<int32_t>::max();
  }
  return static_cast<int32_t>(i_Value);
}

XPathFunction::XPathFunction(size_t i_ParametersRead) : m_ParametersRead(i_ParametersRead) {}

XPathFunction::~XPathFunction() = default;

int XPathFunction::getMaxArgumentsCount() const {
  return m_ArgumentsCount;
}

int XPathFunction::getMinArgumentsCount() const {
  return getMaxArgumentsCount();
}

std::unique_ptr<XPathExpression> XPathFunction::releaseOutputExpression() {
  for (auto it = m_CreatedValues.begin(); it != m_CreatedValues.end(); ++it) {
    if (it->get() == m_pOutputExpression) {
      std::unique_ptr<XPathExpression> pReleased = std::move(*it);
      m_CreatedValues.erase(it);
      m_pOutputExpression = nullptr;
      return pReleased;
    }
  }
  return nullptr;
}

void XPathFunction::clearValues() {
  m_pOutputExpression = nullptr;
  m_CreatedValues.clear();
  m_FunctionParameters.clear();
  m_pStartNode = nullptr;
  m_pSiblings = nullptr;
}

void XPathFunction::addFunctionParameter(XPathExpression* i_pParameter) {
  m_FunctionParameters.push_back(i_pParameter);
}

void XPathFunction::setFunctionParameters(const std::vector<XPathExpression*>& i_Parameters) {
  m_FunctionParameters = i_Parameters;
}

void XPathFunction::createOutputExpression(const String& i_Value) {
  Trace trace(pluginTracer(), "XPathFunction::createOutputExpression");
  std::unique_ptr<XPathExpression> pValue(new XPathArgument(i_Value));
  pValue->setDataType(m_ReturnType);
  m_pOutputExpression = pValue.get();
  m_CreatedValues.push_back(std::move(pValue));
  HOST_TRACE(trace, 3) << " created " << i_Value;
}

void XPathFunction::createOutputExpression(double i_Value, LimitType i_Kind, bool i_NegativeZero) {
  // Special numbers live in the kind, never in the double: a computation that overflowed
  // (huge literals multiplied) becomes the kind it stands for, with the value 0.0.
  if (i_Kind == NumbType && !std::isfinite(i_Value)) {
    i_Kind = std::isnan(i_Value) ? NaN : (i_Value > 0 ? Infinity : NInfinity);
    i_Value = 0.0;
    i_NegativeZero = false;
  }
  std::unique_ptr<XPathExpression> pValue(new XPathArgument(i_Value));
  pValue->setNumbType(i_Kind);
  pValue->setNegativeZero(i_NegativeZero);
  pValue->setDataType(m_ReturnType);
  m_pOutputExpression = pValue.get();
  m_CreatedValues.push_back(std::move(pValue));
}

void XPathFunction::createBooleanOutput(bool i_Value) {
  createOutputExpression(i_Value ? 1.0 : 0.0, NumbType, false);
}

XPathFunction* XPathFunctionFactory::create(const String& i_Token, const String& i_Next,
                                            XPathExpression* i_pPrevious) {
  const FunctionRow* pRow = findRow(kOperatorRows, i_Token);
  if (pRow == nullptr) {
    return getFunctionbyName(i_Token, i_Next);
  }
  XPathFunction* pFunction = makeFunction(*pRow, i_Token);
  if (i_Token.compareTo(L"(") == 0) {
    // The "(" that opens a function's argument list is a function-style entry.
    pFunction->setInfix(i_pPrevious != nullptr &&
                        findRow(kFunctionRows, i_pPrevious->GetExpression()) != nullptr);
  }
  return pFunction;
}

XPathFunction* XPathFunctionFactory::getFunctionbyName(const String& i_Name, const String& i_Next) {
  if (i_Next.compareTo(L"(") != 0) {
    return nullptr;
  }
  const FunctionRow* pRow = findRow(kFunctionRows, i_Name);
  return pRow != nullptr ? makeFunction(*pRow, i_Name) : nullptr;
}

}  // namespace XmlPlugin
