// The base of every item of a tokenized XPath expression: one typed value, its
// conversions, and the factory that makes an operator or an operand from a token.
//
// Ownership: an item is owned by exactly one registry (the tokenizer's, then the
// parser's, or the function object that computed it); stacks, vectors and parameter
// lists borrow it. The output node list (node-set values) is owned by the item.
//
// What an item is (its text, number, kinds and data type) is fixed when it is made; what it
// holds for one evaluation (context node, root position, siblings, node-set result, and for
// an operator the values its function made) is dropped by clearValue, so that a compiled
// expression is evaluated again and again as if it had just been parsed.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "XPathOutputElement.h"
#include "XPathTypes.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathEvaluationContext;

class XPathExpression {
 public:
  XPathExpression();
  explicit XPathExpression(const String& i_Text);
  explicit XPathExpression(double i_Value);
  // Copies root position, text, number, limit type, negative-zero flag and data type; the
  // copy owns a copy of the source's start node and of its siblings list (the source must
  // have both). The output node list is not copied.
  XPathExpression(const XPathExpression& i_Other);
  XPathExpression& operator=(const XPathExpression& i_Other);
  virtual ~XPathExpression();

  virtual bool isOperator() const;        // false
  virtual int getPriority() const;        // 0
  virtual bool isInfix() const;           // false
  virtual int getArgumentsCount() const;  // 0
  // Only operators evaluate: -102 here.
  virtual TErrorCode evaluate(const std::vector<XPathExpression*>& i_Arguments,
                              XPathEvaluationContext& io_Context);
  // The value an operator produced (borrowed); null here.
  virtual XPathExpression* getOutputArgument();
  // Fills the output node list of a location-path operand, drawing on io_Context; nothing
  // here.
  virtual void EvaluateXPath(XPathEvaluationContext& io_Context);
  // Forgets what the last evaluation left in the item (see the top of the file).
  virtual void clearValue();

  XPathDataType getDataType() const { return m_DataType; }
  void setDataType(XPathDataType i_Type) { m_DataType = i_Type; }
  Node* getStartNode() const { return m_StartNode; }
  void setStartNode(Node* i_pNode) { m_StartNode = i_pNode; }
  long getRootPosition() const { return m_RootPosition; }
  void setRootPosition(long i_Position) { m_RootPosition = i_Position; }
  std::list<Node*>* getSiblings() const { return m_Siblings; }
  void setSiblings(std::list<Node*>* i_pSiblings) { m_Siblings = i_pSiblings; }
  LimitType getNumbType() const { return m_NumbType; }
  void setNumbType(LimitType i_Type) { m_NumbType = i_Type; }
  bool isNegativeZero() const { return m_NegativeZero; }
  void setNegativeZero(bool i_NegativeZero) { m_NegativeZero = i_NegativeZero; }
  String GetExpression() const { return m_ExpressionString; }
  void SetExpressionString(const String& i_Text);
  // A copy of the pointers; the items stay owned by this expression.
  const XPathOutputElements& getOutputNodesList() const { return m_OutputNodes; }
  // Appends the output node list's items to io_Owner, which then owns them; the list is left
  // empty.
  void releaseOutputNodes(XPathOutputElements& io_Owner);

  // The text without its enclosing quotes.
  static String CutQuota(const String& i_Text);
  static std::string Stringtostring(const String& i_Text);
  void SetExpressionNumb(const String& i_Text);
  double GetExpressionNumb() const;
  int GetExpressionBool() const;
  String GetExpressionString() const;

  // A new operator or operand for the token; the caller owns it.
  static XPathExpression* create(const String& i_Token, const String& i_Context,
                                 XPathExpression* i_pPrevious);

 protected:
  // The text the item was made from, without a copy.
  const String& expressionText() const { return m_ExpressionString; }

  Node* m_StartNode = nullptr;
  long m_RootPosition = 0;
  double m_Number = 0.0;
  std::list<Node*>* m_Siblings = nullptr;
  LimitType m_NumbType = NumbType;
  bool m_NegativeZero = false;
  XPathOutputElements m_OutputNodes;  // owned
  XPathDataType m_DataType = BooleanType;

 private:
  // The largest result storage clearValue keeps.
  static const size_t KEPT_OUTPUT_CAPACITY = 64;

  String m_ExpressionString;
  // CutQuota of the text, kept with it: conversions read it for every evaluation.
  String m_UnquotedString;
  // The start node and siblings list copies that copying made.
  std::unique_ptr<Node> m_OwnedStartNode;
  std::unique_ptr<std::list<Node*>> m_OwnedSiblings;
};

}  // namespace XmlPlugin
