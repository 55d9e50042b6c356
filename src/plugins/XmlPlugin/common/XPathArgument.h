// The operand item of an expression: a literal, a number or a location path.
#pragma once

#include "XPathExpression.h"

namespace XmlPlugin {

class XPathArgument : public XPathExpression {
 public:
  XPathArgument();
  // Classifies the token text; a number operand also reads its value.
  explicit XPathArgument(const String& i_Expression);
  // A computed number; its text is the value formatted like a default ostream.
  explicit XPathArgument(double i_Expression);
  ~XPathArgument() override;

  void EvaluateXPath(XPathEvaluationContext& io_Context) override;

  void calculateType(const String& i_Expression);
  static int isNumber(const String& i_Operand);
  static String addPrefixToXPath(const String& i_Expr, long i_Position, Node* i_pNode);
  static Node* getXMLRootNode(Node* i_pNode);
};

}  // namespace XmlPlugin
