// The operand item of an expression: a literal, a number or a location path.
#pragma once

#include <memory>
#include <vector>

#include "XPathCompiledPath.h"
#include "XPathDirectOperand.h"
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
  // Whether the operand is an attribute read directly ("@name").
  bool isDirectAttribute() const { return m_pDirect && m_pDirect->readsAttribute(); }
  // The items of this operand will only be counted (it is the argument of count()).
  void countItemsOnly() { m_ItemsOnlyCounted = true; }
  // For such an operand: how the items EvaluateXPath would make read against i_Text, counting
  // the same work and leaving no items; undecided where only evaluating it can tell.
  TextReading readAgainst(const String& i_Text, XPathEvaluationContext& io_Context);

  void calculateType(const String& i_Expression);
  static int isNumber(const String& i_Operand);
  // The number of an operand made from i_Text, when that operand is a number operand (a
  // numeric text, quoted or not); false otherwise. Makes no operand.
  static bool numberOfOperand(const String& i_Text, double& o_Number);
  // The path anchored at its context node: "parent/", then "name[position()=N]/" for a
  // positive position when the path is relative, then the path.
  static String addPrefixToXPath(const String& i_Expr, long i_Position, Node* i_pNode);
  static Node* getXMLRootNode(Node* i_pNode);

 private:
  // What the anchored text depends on besides the position.
  struct AnchorShape {
    bool m_HasNode = false;
    bool m_HasParent = false;
    bool m_Anchored = false;
    String m_ParentName;
    String m_Name;
    bool operator==(const AnchorShape& i_Other) const;
  };
  struct CompiledShape {
    AnchorShape m_Shape;
    std::unique_ptr<XPathCompiledPath> m_pPath;
  };

  // Whether EvaluateXPath reads the operand directly, rather than as a path.
  bool readsDirectly(const XPathEvaluationContext& i_Context) const;
  static AnchorShape shapeAt(const String& i_Expr, const Node* i_pNode, long i_Position);
  // addPrefixToXPath's text, i_Position standing for the position.
  static String anchoredText(const String& i_Expr, const String& i_Position,
                             const AnchorShape& i_Shape);
  // The operand compiled for the shape, with the anchor mark for the position; compiled on
  // first use and kept.
  const XPathCompiledPath& compiledFor(const AnchorShape& i_Shape);

  // The operand read directly, when it is one plain step.
  std::unique_ptr<const XPathDirectOperand> m_pDirect;
  bool m_ItemsOnlyCounted = false;
  // Paths compiled for the anchors met so far, the oldest first.
  std::vector<CompiledShape> m_CompiledPaths;
};

}  // namespace XmlPlugin
