// The operand item of an expression: a literal, a number or a location path.
#pragma once

#include "XPathExpression.h"

namespace XmlPlugin {

class XPathArgument : public XPathExpression {
 public:
  XPathArgument();
  // Classifies the token text; a number operand also reads its value.
  explicit XPathArgument(const String& i_Expression);
  // A computed number; its text is formatNumber's.
  explicit XPathArgument(double i_Expression);
  ~XPathArgument() override;

  void EvaluateXPath(XPathEvaluationContext& io_Context) override;

  void calculateType(const String& i_Expression);
  static int isNumber(const String& i_Operand);
  // The number of an operand made from i_Text, when that operand is a number operand (a
  // numeric text, quoted or not); false otherwise. Makes no operand.
  static bool numberOfOperand(const String& i_Text, double& o_Number);
  static String addPrefixToXPath(const String& i_Expr, long i_Position, Node* i_pNode);
  static Node* getXMLRootNode(Node* i_pNode);
};

}  // namespace XmlPlugin
