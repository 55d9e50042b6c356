#include "XPathOperator.h"

#include <cstdint>

#include "PluginTracer.h"
#include "XPathFunction.h"
#include "XmlPlugin/XmlPluginReasons.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

// The core function that converts a value to the type; null for a type that has none.
const wchar_t* conversionFunctionName(XPathDataType i_Type) {
  switch (i_Type) {
    case BooleanType:
      return L"boolean";
    case StringType:
      return L"string";
    case NumberType:
      return L"number";
    case NodeSetType:
      break;
  }
  return nullptr;
}

}  // namespace

XPathOperator::XPathOperator(const String& i_Expression, XPathExpression*,
                             XPathFunction* i_pXPathFunction)
    : XPathExpression(i_Expression), m_pFunction(i_pXPathFunction) {
  Trace trace(pluginTracer(), "XPathOperator::XPathOperator");
  HOST_TRACE(trace, 3) << "XPathOperator Expression" << i_Expression;
}

XPathOperator::~XPathOperator() = default;

bool XPathOperator::isOperator() const {
  Trace trace(pluginTracer(), "XPathOperator::isOperator");
  HOST_TRACE(trace, 3) << "bool XPathOperator::isOperator() returns TRUE";
  return true;
}

int XPathOperator::getPriority() const {
  Trace trace(pluginTracer(), "XPathOperator::getPriority");
  const int priority = m_pFunction->getPriority();
  HOST_TRACE(trace, 3) << " Prioryty = " << priority;
  return priority;
}

bool XPathOperator::isInfix() const {
  Trace trace(pluginTracer(), "XPathOperator::isInfix");
  const bool infix = m_pFunction->isInfix();
  HOST_TRACE(trace, 3) << " isInfix = " << infix;
  return infix;
}

int XPathOperator::getArgumentsCount() const {
  Trace trace(pluginTracer(), "XPathOperator::getArgumentsCount");
  const int count = m_pFunction->getArgumentsCount();
  HOST_TRACE(trace, 3) << " getArgumentsCount " << count;
  return count;
}

void XPathOperator::setArgumentsCount(int i_ArgNo) {
  Trace trace(pluginTracer(), "XPathOperator::setArgumentsCount");
  HOST_TRACE(trace, 3) << " Input argNo " << i_ArgNo;
  m_pFunction->setArgumentsCount(i_ArgNo);
}

XPathExpression* XPathOperator::getOutputArgument() {
  return m_pOutputArgument;
}

void XPathOperator::clearValue() {
  XPathExpression::clearValue();
  m_pOutputArgument = nullptr;
  m_ConvertedValues.clear();
  m_pFunction->clearValues();
}

TErrorCode XPathOperator::evaluate(const std::vector<XPathExpression*>& i_ExpressionsVector,
                                   XPathEvaluationContext& io_Context) {
  Trace trace(pluginTracer(), "XPathOperator::evaluate");
  // Compared as unsigned: a maximum of -1 never limits.
  const uint32_t count = static_cast<uint32_t>(i_ExpressionsVector.size());
  const int minimum = m_pFunction->getMinArgumentsCount();
  if (count > static_cast<uint32_t>(m_pFunction->getMaxArgumentsCount()) ||
      (minimum != -1 && count < static_cast<uint32_t>(minimum)) ||
      count < m_pFunction->getParametersRead()) {
    HOST_TRACE(trace, 1) << "XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR";
    Trace reason(pluginTracer(), XML_PLUGIN_REASON_FUNCTION);
    HOST_TRACE(reason, 1) << "`" << GetExpressionString() << "` cannot take " << count
                          << (count == 1 ? " argument" : " arguments");
    return XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR;
  }
  HOST_TRACE(trace, 3) << "ExpressionsVector size before convert = " << count;
  convertTypeParameters(i_ExpressionsVector);
  HOST_TRACE(trace, 3) << "Evaluate";
  m_pFunction->SetSiblings(m_Siblings);
  m_pFunction->setStartNode(m_StartNode);
  m_pFunction->setEvaluationContext(&io_Context);
  const TErrorCode result = m_pFunction->evaluate();
  if (result == HOST_ERROR_NOT_SUPPORTED) {
    Trace reason(pluginTracer(), XML_PLUGIN_REASON_FUNCTION);
    HOST_TRACE(reason, 1) << "function `" << GetExpressionString() << "` is not supported";
  }
  if (result != 0) {
    return result;
  }
  m_pOutputArgument = m_pFunction->GetOutputExpression();
  return 0;
}

bool XPathOperator::convertTypeParameters(
    const std::vector<XPathExpression*>& i_ExpressionsVector) {
  Trace trace(pluginTracer(), "XPathOperator::convertTypeParameters");
  const std::vector<XPathDataType>& types = m_pFunction->getParametersType();
  if (types.empty()) {
    m_pFunction->setFunctionParameters(i_ExpressionsVector);
    return true;
  }
  // Visited in source order (the vector holds the last argument first); the last declared
  // type applies to every further argument.
  std::vector<XPathExpression*> converted;
  size_t typeIndex = 0;
  for (auto it = i_ExpressionsVector.rbegin(); it != i_ExpressionsVector.rend(); ++it) {
    const wchar_t* name = conversionFunctionName(types[typeIndex]);
    if (typeIndex + 1 < types.size()) {
      ++typeIndex;
    }
    if (name == nullptr) {
      continue;
    }
    std::unique_ptr<XPathFunction> pConversion(XPathFunctionFactory::create(name, L"(", nullptr));
    HOST_TRACE(trace, 3) << name << "() has been function prepared ";
    pConversion->addFunctionParameter(*it);
    pConversion->setStartNode(m_StartNode);
    pConversion->evaluate();
    std::unique_ptr<XPathExpression> pValue = pConversion->releaseOutputExpression();
    if (pValue == nullptr) {
      continue;
    }
    HOST_TRACE(trace, 3) << "Expression " << pValue->GetExpressionString()
                         << " after converting created and added to function parameters";
    converted.push_back(pValue.get());
    m_ConvertedValues.push_back(std::move(pValue));
  }
  m_pFunction->setFunctionParameters(
      std::vector<XPathExpression*>(converted.rbegin(), converted.rend()));
  return true;
}

}  // namespace XmlPlugin
