// Infix to postfix, then postfix evaluation.
//
// The conversion is an operator-precedence (shunting-yard) pass over the items in source
// order. Operands go straight to the output. An arriving operator or function first moves to
// the output every stacked operator whose priority is at least its own, stopping at a "(",
// and is then stacked itself; equal priorities leave the stack, so binary operators are
// left-associative. A "(" is always stacked. A ")" or "," moves stacked operators to the
// output down to the nearest "(": a "," leaves that "(" stacked so the argument list stays
// open; a ")" drops it, and when the "(" opened a function's argument list (it reports
// isInfix()) the function stacked beneath it follows to the output. An unbalanced ")" or ","
// is dropped without complaint, and an unclosed "(" reaches the output like any operator.
// Priorities and the isInfix() flag come from the items themselves; only the punctuation
// texts "(", ")" and "," are known here.
//
// Evaluation keeps going after a failing operator: the code returned is that of the last
// operator evaluated, so an inner failure shows only when nothing later succeeds.
#include "XPathExpressionsParser.h"

#include <algorithm>

#include "PluginTracer.h"
#include "XPathArgument.h"
#include "XPathEvaluationContext.h"
#include "XPathEvaluationObserver.h"
#include "XPathFunction.h"
#include "XPathLogicalEvaluator.h"
#include "XPathOperator.h"
#include "XPathTokenizer.h"
#include "XmlPlugin/XmlPluginReasons.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

bool hasText(const XPathExpression* i_pExpression, const wchar_t* i_Text) {
  return i_pExpression->GetExpression().compareTo(i_Text) == 0;
}

// "(" text "," isOperator "," data type ")" "|" for every item.
String describe(const std::vector<XPathExpression*>& i_Expressions) {
  String text;
  for (const XPathExpression* pExpression : i_Expressions) {
    text.concat(L'(')
        .concat(pExpression->GetExpression())
        .concat(L',')
        .concat(String::valueOf(pExpression->isOperator() ? 1 : 0))
        .concat(L',')
        .concat(String::valueOf(pExpression->getDataType()))
        .concat(L")|");
  }
  return text;
}

XPathOutputElement* newValueElement(const String& i_Value) {
  XPathOutputElement* pElement = new XPathOutputElement();
  pElement->m_Value = i_Value;
  return pElement;
}

}  // namespace

XPathExpressionsParser::XPathExpressionsParser(const String& i_XPath) {
  Trace trace(pluginTracer(), "XPathExpressionsParser::XPathExpressionsParser");
  XPathTokenizer tokenizer(i_XPath);
  m_Status = tokenizer.start();
  if (m_Status != 0) {
    m_Rejection = tokenizer.describeRejection();  // every run reports it
    return;
  }
  m_Items = tokenizer.releaseItems();
  m_XPathExpressionsVector = tokenizer.getExpressionVector();
  m_SourceOrder = m_XPathExpressionsVector;
  HOST_TRACE(trace, 3) << " Parsed Expr = " << describe(m_XPathExpressionsVector);
  m_XPathExpressionsVector = doTrans();
  HOST_TRACE(trace, 3) << "Expr transformed =" << describe(m_XPathExpressionsVector);
  m_pComparison = findOperandComparison();
  findAttributeText();
  findCountedOperands();
}

void XPathExpressionsParser::findCountedOperands() {
  const std::vector<XPathExpression*>& program = m_XPathExpressionsVector;
  for (size_t index = 1; index < program.size(); ++index) {
    const XPathOperator* pOperator = dynamic_cast<const XPathOperator*>(program[index]);
    const XPathFunction* pFunction = pOperator != nullptr ? pOperator->getFunction() : nullptr;
    XPathArgument* pOperand = dynamic_cast<XPathArgument*>(program[index - 1]);
    // A function of one argument takes the operand right before it off the stack.
    if (dynamic_cast<const XPathFunction_count*>(pFunction) != nullptr &&
        pOperator->getArgumentsCount() == 1 && pOperand != nullptr) {
      pOperand->countItemsOnly();
    }
  }
}

void XPathExpressionsParser::findAttributeText() {
  if (m_pComparison == nullptr) {
    return;
  }
  // runComparison's order: the right operand is the evaluator's first.
  XPathExpression* pRight = m_XPathExpressionsVector[1];
  XPathExpression* pLeft = m_XPathExpressionsVector[0];
  bool itemsFirst = false;
  if (!XPathLogicalEvaluator::comparesItemsWithText(
          pRight, pLeft, m_pComparison->getFunction()->getExpression(), itemsFirst, m_WantEqual)) {
    return;
  }
  XPathArgument* pItems = dynamic_cast<XPathArgument*>(itemsFirst ? pRight : pLeft);
  if (pItems != nullptr && pItems->isDirectAttribute()) {
    m_pAttribute = pItems;
    m_pText = itemsFirst ? pLeft : pRight;
  }
}

XPathOperator* XPathExpressionsParser::findOperandComparison() const {
  const std::vector<XPathExpression*>& program = m_XPathExpressionsVector;
  if (program.size() != 3 || program[0]->isOperator() || program[1]->isOperator()) {
    return nullptr;
  }
  XPathOperator* pOperator = dynamic_cast<XPathOperator*>(program[2]);
  const XPathFunction* pFunction = pOperator != nullptr ? pOperator->getFunction() : nullptr;
  const bool comparison = dynamic_cast<const XPathFunction_logical_eq*>(pFunction) != nullptr;
  // Two arguments read and accepted as they are, as the operator's own evaluation would.
  return comparison && pFunction->getArgumentsCount() == 2 &&
                 pFunction->getParametersType().empty() && pFunction->getParametersRead() <= 2 &&
                 pFunction->getMaxArgumentsCount() >= 2 &&
                 (pFunction->getMinArgumentsCount() == -1 || pFunction->getMinArgumentsCount() <= 2)
             ? pOperator
             : nullptr;
}

bool XPathExpressionsParser::runComparison(Node* i_pStartNode, XPathEvaluationContext& io_Context) {
  m_pStartNode = i_pStartNode;
  XPathExpression* pLeft = m_XPathExpressionsVector[0];
  XPathExpression* pRight = m_XPathExpressionsVector[1];
  for (XPathExpression* pOperand : {pLeft, pRight}) {
    pOperand->setStartNode(i_pStartNode);
    pOperand->setRootPosition(getRootPosition());
  }
  if (m_pAttribute != nullptr) {
    const TextReading reading =
        m_pAttribute->readAgainst(m_pText->GetExpressionString(), io_Context);
    if (reading != TextReading::undecided) {
      return reading == (m_WantEqual ? TextReading::equal : TextReading::different);
    }
  }
  // doParse's order: the right operand comes off the stack first.
  pRight->EvaluateXPath(io_Context);
  pLeft->EvaluateXPath(io_Context);
  return XPathLogicalEvaluator::evaluate(pRight, pLeft,
                                         m_pComparison->getFunction()->getExpression()) != 0;
}

XPathExpressionsParser::~XPathExpressionsParser() = default;

void XPathExpressionsParser::stackExpression(XPathExpression* e,
                                             std::vector<XPathExpression*>* output) {
  Trace trace(pluginTracer(), "XPathExpressionsParser::stackExpression");
  if (!e->isOperator()) {
    output->push_back(e);
    HOST_TRACE(trace, 3) << "Expression " << e->GetExpression() << " pushed to expressionVector";
  } else if (hasText(e, L"(")) {
    m_OperatorStack.push_back(e);
    HOST_TRACE(trace, 3) << "( - expression goes on stack";
  } else if (hasText(e, L")") || hasText(e, L",")) {
    gotParen(e, output);
  } else {
    gotOper(e, output);
  }
}

void XPathExpressionsParser::gotOper(XPathExpression* e, std::vector<XPathExpression*>* output) {
  while (!m_OperatorStack.empty()) {
    XPathExpression* pTop = m_OperatorStack.back();
    if (hasText(pTop, L"(") || pTop->getPriority() < e->getPriority()) {
      break;
    }
    m_OperatorStack.pop_back();
    output->push_back(pTop);
  }
  m_OperatorStack.push_back(e);
}

void XPathExpressionsParser::gotParen(XPathExpression* e, std::vector<XPathExpression*>* output) {
  Trace trace(pluginTracer(), "XPathExpressionsParser::gotParen");
  XPathExpression* pOpening = nullptr;
  while (pOpening == nullptr) {
    if (m_OperatorStack.empty()) {
      return;
    }
    XPathExpression* pTop = m_OperatorStack.back();
    m_OperatorStack.pop_back();
    if (hasText(pTop, L"(")) {
      pOpening = pTop;
    } else {
      output->push_back(pTop);
      HOST_TRACE(trace, 3) << "pOper " << pTop->GetExpression() << "goes on Vector";
    }
  }
  const bool isComma = hasText(e, L",");
  if (pOpening->isInfix() && !isComma) {
    HOST_TRACE(trace, 3) << " Not isInfix && not coma ";
    if (!m_OperatorStack.empty()) {
      XPathExpression* pFunction = m_OperatorStack.back();
      m_OperatorStack.pop_back();
      output->push_back(pFunction);
      HOST_TRACE(trace, 3) << "pOperator " << pFunction->GetExpression() << " goes to Vector";
    }
  } else if (isComma) {
    m_OperatorStack.push_back(pOpening);
    HOST_TRACE(trace, 3) << "pOperator " << pOpening->GetExpression() << "goes on stack";
  }
}

std::vector<XPathExpression*> XPathExpressionsParser::doTrans() {
  Trace trace(pluginTracer(), "XPathExpressionsParser::doTrans");
  std::vector<XPathExpression*> output;
  for (XPathExpression* pExpression : m_XPathExpressionsVector) {
    stackExpression(pExpression, &output);
  }
  while (!m_OperatorStack.empty()) {
    output.push_back(m_OperatorStack.back());
    m_OperatorStack.pop_back();
  }
  HOST_TRACE(trace, 3) << "output.size = " << output.size();
  return output;
}

TErrorCode XPathExpressionsParser::doParse(XPathEvaluationContext& io_Context) {
  Trace trace(pluginTracer(), "XPathExpressionsParser::doParse");
  // Kept between runs: a predicate runs once per candidate.
  std::vector<XPathExpression*>& localStack = m_LocalStack;
  localStack.clear();
  TErrorCode result = 0;
  for (XPathExpression* pExpression : m_XPathExpressionsVector) {
    pExpression->setStartNode(m_pStartNode);
    pExpression->setRootPosition(getRootPosition());
    if (!pExpression->isOperator()) {
      localStack.push_back(pExpression);
      HOST_TRACE(trace, 3) << "isOperator = false. Expression pushed on localstack";
      continue;
    }
    pExpression->setSiblings(getSiblings());
    const size_t argumentsToRead =
        static_cast<size_t>(std::max(pExpression->getArgumentsCount(), 0));
    HOST_TRACE(trace, 3) << "Arguments to read= " << argumentsToRead << " for "
                         << pExpression->GetExpression() << " function ";
    std::vector<XPathExpression*>& arguments = m_Arguments;
    arguments.clear();
    while (arguments.size() < argumentsToRead && !localStack.empty()) {
      XPathExpression* pArgument = localStack.back();
      if (pArgument->isOperator()) {
        HOST_TRACE(trace, 3) << " Operator found ";
        break;
      }
      localStack.pop_back();
      pArgument->setStartNode(m_pStartNode);
      pArgument->setRootPosition(getRootPosition());
      pArgument->EvaluateXPath(io_Context);
      arguments.push_back(pArgument);
      HOST_TRACE(trace, 3) << "Argument to evaluate " << pArgument->GetExpression();
    }
    result = pExpression->evaluate(arguments, io_Context);
    XPathExpression* pValue = result == 0 ? pExpression->getOutputArgument() : nullptr;
    // A function may succeed without producing a value; nothing null is ever evaluated.
    if (pValue != nullptr) {
      localStack.push_back(pValue);
      HOST_TRACE(trace, 3) << "pXPathOp->getOutputArgument() = " << pValue->GetExpression();
      HOST_TRACE(trace, 3) << "pXPathOp->getDataType() = "
                           << static_cast<int>(pValue->getDataType());
    }
  }
  if (localStack.empty()) {
    HOST_TRACE(trace, 1) << "XPATH error, localStack.size() = 0";
    return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
  }
  m_pResultExpression = localStack.back();
  m_pResultExpression->EvaluateXPath(io_Context);
  return result;
}

TErrorCode XPathExpressionsParser::runParser(Node* i_pStartNode,
                                             XPathEvaluationContext& io_Context) {
  Trace trace(pluginTracer(), "XPathExpressionsParser::runParser");
  m_pStartNode = i_pStartNode;
  if (m_Status != 0) {
    HOST_TRACE(trace, 1) << "Tokenizing error";
    Trace reason(pluginTracer(), XML_PLUGIN_REASON_FUNCTION);
    HOST_TRACE(reason, 1) << m_Rejection;
    return m_Status;
  }
  clearValues();
  if (XPathEvaluationObserver* pObserver = io_Context.getObserver())
    pObserver->expressionStarted(*this);
  const TErrorCode result = doParse(io_Context);
  if (result == 0) {
    m_OutputType = m_pResultExpression->getDataType();
    HOST_TRACE(trace, 3) << "m_OutputType = " << static_cast<int>(m_OutputType);
  }
  HOST_TRACE(trace, 3) << "result = " << result;
  return result;
}

void XPathExpressionsParser::clearValues() {
  m_pResultExpression = nullptr;
  m_OutputType = BooleanType;
  for (const std::unique_ptr<XPathExpression>& pItem : m_Items) {
    pItem->clearValue();
  }
}

void XPathExpressionsParser::reset() {
  clearValues();
  m_pStartNode = nullptr;
  m_pSiblings = nullptr;
  m_RootPosition = 0;
}

TErrorCode XPathExpressionsParser::getValues(XPathOutputElements& o_Output) {
  Trace trace(pluginTracer(), "XPathExpressionsParser::getValues");
  if (m_pResultExpression == nullptr) {
    return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
  }
  TErrorCode result = 0;
  switch (m_OutputType) {
    case BooleanType:
      HOST_TRACE(trace, 3) << "Boolean Type output";
      result = calculateBooleanOutput(o_Output);
      break;
    case StringType:
    case NumberType:
      HOST_TRACE(trace, 3) << (m_OutputType == StringType ? "String Type output"
                                                          : "Number Type output");
      o_Output.push_back(newValueElement(m_pResultExpression->GetExpressionString()));
      break;
    case NodeSetType:
      HOST_TRACE(trace, 3) << "NodeSet Type output";
      m_pResultExpression->releaseOutputNodes(o_Output);
      break;
  }
  HOST_TRACE(trace, 3) << "output size = " << o_Output.size();
  HOST_TRACE(trace, 3) << "result = " << result;
  return result;
}

TErrorCode XPathExpressionsParser::calculateBooleanOutput(XPathOutputElements& o_Output) {
  Trace trace(pluginTracer(), "XPathExpressionsParser::calculateBooleanOutput");
  if (m_pResultExpression == nullptr) {
    HOST_TRACE(trace, 1) << " XML_PLUGIN_ERROR_XPATH_PARSER_ERROR ";
    return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
  }
  const bool isTrue = m_pResultExpression->GetExpressionBool() == 1;
  HOST_TRACE(trace, 3) << (isTrue ? " output set on TRUE" : " output set on FALSE");
  // Shared texts: a predicate makes one such value per candidate.
  static const String s_True(L"true");
  static const String s_False(L"false");
  o_Output.push_back(newValueElement(isTrue ? s_True : s_False));
  HOST_TRACE(trace, 3) << "result = " << 0;
  return 0;
}

}  // namespace XmlPlugin
