// Turns the text of one XPath expression into postfix order and evaluates it.
//
// The parser owns every item of its expression (taken over from the tokenizer) and,
// through the operators, every value computed while it runs: the result expression
// stays valid until the next run, clearValues or the parser's destruction. A parser is
// compiled once and may run any number of times, each run as if on a fresh parse.
#pragma once

#include <deque>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "XPathExpression.h"
#include "XPathOutputElement.h"
#include "XPathTypes.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathArgument;

class XPathOperator;

class XPathEvaluationContext;

class XPathExpressionsParser {
 public:
  // Tokenizes and converts to postfix; the outcome is the construction status, which every
  // run returns when it is not 0.
  explicit XPathExpressionsParser(const String& i_XPath);
  ~XPathExpressionsParser();
  XPathExpressionsParser(const XPathExpressionsParser&) = delete;
  XPathExpressionsParser& operator=(const XPathExpressionsParser&) = delete;

  // Evaluates from i_pStartNode; every location path draws on io_Context.
  TErrorCode runParser(Node* i_pStartNode, XPathEvaluationContext& io_Context);
  // True when the postfix program is two operands and one comparison or logical operator
  // that converts neither: such an expression is decided by the comparison alone.
  bool isOperandComparison() const { return m_pComparison != nullptr; }
  // Runs such an expression from i_pStartNode as runParser would, with the root position
  // set, and answers the comparison without making the operator's or the result's value.
  bool runComparison(Node* i_pStartNode, XPathEvaluationContext& io_Context);
  // Frees what the last run computed; the compiled items stay.
  void clearValues();
  // Back to the state of a fresh parse: no values, no siblings, root position 0.
  void reset();
  // Appends the run's result as output elements, owned by o_Output's holder. A node-set
  // result hands its own items over (no copies): a second call finds none of them.
  TErrorCode getValues(XPathOutputElements& o_Output);
  TErrorCode calculateBooleanOutput(XPathOutputElements& o_Output);

  XPathDataType getXPathOutputType() const { return m_OutputType; }
  long getRootPosition() const { return m_RootPosition; }
  void setRootPosition(long i_Position) { m_RootPosition = i_Position; }
  std::list<Node*>* getSiblings() const { return m_pSiblings; }
  void setSiblings(std::list<Node*>* i_pSiblings) { m_pSiblings = i_pSiblings; }
  TErrorCode getStatus() const { return m_Status; }

  void stackExpression(XPathExpression* e, std::vector<XPathExpression*>* output);
  void gotOper(XPathExpression* e, std::vector<XPathExpression*>* output);
  void gotParen(XPathExpression* e, std::vector<XPathExpression*>* output);
  std::vector<XPathExpression*> doTrans();
  TErrorCode doParse(XPathEvaluationContext& io_Context);

  // The current expression sequence: infix before doTrans, postfix after (borrowed).
  const std::vector<XPathExpression*>& getExpressionsVector() const {
    return m_XPathExpressionsVector;
  }
  // The items in source order (borrowed).
  const std::vector<XPathExpression*>& getSourceOrder() const { return m_SourceOrder; }
  // The value the last run left, or null (borrowed).
  const XPathExpression* getResultExpression() const { return m_pResultExpression; }

 private:
  // The operator of an operand comparison, or null.
  XPathOperator* findOperandComparison() const;
  // For an operand comparison of an attribute read directly with a string by "=" or "!=":
  // the two operands, so that a run need not make the attribute's item.
  void findAttributeText();
  // Tells each operand that is the argument of count() that its items will only be counted.
  void findCountedOperands();

  Node* m_pStartNode = nullptr;
  long m_RootPosition = 0;
  XPathOperator* m_pComparison = nullptr;
  XPathArgument* m_pAttribute = nullptr;  // with m_pText: see findAttributeText
  const XPathExpression* m_pText = nullptr;
  bool m_WantEqual = true;
  XPathDataType m_OutputType = BooleanType;
  std::list<Node*>* m_pSiblings = nullptr;
  std::deque<XPathExpression*> m_OperatorStack;
  // doParse's value stack and the arguments of the operator at hand, kept for their capacity.
  std::vector<XPathExpression*> m_LocalStack;
  std::vector<XPathExpression*> m_Arguments;
  XPathExpression* m_pResultExpression = nullptr;
  std::vector<XPathExpression*> m_XPathExpressionsVector;
  std::vector<XPathExpression*> m_SourceOrder;
  TErrorCode m_Status = 0;
  std::wstring m_Rejection;  // why the text was rejected, when m_Status says it was
  std::vector<std::unique_ptr<XPathExpression>> m_Items;  // owns every item
};

}  // namespace XmlPlugin
