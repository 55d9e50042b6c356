// The eight comparison and logical operators over any pair of values, driven by the
// table tabArithm[kind of right operand][kind of left operand][operator].
#pragma once

#include <cstdint>

#include "XPathExpression.h"
#include "XmlPluginConstants.h"

namespace XmlPlugin {

class XPathLogicalEvaluator {
 public:
  static const int KINDS = 7;
  static const int OPERATORS = 8;
  // Exported: the host and other modules read the table.
  XML_PLUGIN_EXPORT static const int32_t tabArithm[KINDS][KINDS][OPERATORS];

  // i_pFirst is the right operand, i_pSecond the left one. Answers 1 or 0.
  static unsigned evaluate(const XPathExpression* i_pFirst, const XPathExpression* i_pSecond,
                           const String& i_Op);
  // True when evaluate(i_pFirst, i_pSecond, i_Op) asks only whether some item of a node-set
  // operand reads (as the string function reads an item) equal to the other operand's string,
  // or, for "!=", other than it: o_ItemsFirst tells which operand holds the items.
  static bool comparesItemsWithText(const XPathExpression* i_pFirst,
                                    const XPathExpression* i_pSecond, const String& i_Op,
                                    bool& o_ItemsFirst, bool& o_WantEqual);
  static int getOperIndex(const String& i_Op);
  static int getTypeIndex(const XPathExpression* i_pExpression);
  static unsigned evaluateLogicalOperation(double a, double b, const String& i_Op);

  // Pairwise operations, each (L, R, op), named after the kinds of (R, L).
  static unsigned evaluateNumberNode(const XPathExpression* L, const XPathExpression* R,
                                     const String& op);
  static unsigned evaluateNodeNumber(const XPathExpression* L, const XPathExpression* R,
                                     const String& op);
  static unsigned evaluateNodeString(const XPathExpression* L, const XPathExpression* R,
                                     const String& op);
  static unsigned evaluateStringNode(const XPathExpression* L, const XPathExpression* R,
                                     const String& op);
  static unsigned evaluateBoolNumber(const XPathExpression* L, const XPathExpression* R,
                                     const String& op);
  static unsigned evaluateStringString(const XPathExpression* L, const XPathExpression* R,
                                       const String& op);
  static unsigned evaluateNodeInf(const XPathExpression* L, const XPathExpression* R,
                                  const String& op);
  static unsigned evaluateNodeNInf(const XPathExpression* L, const XPathExpression* R,
                                   const String& op);
  static unsigned evaluateInfNode(const XPathExpression* L, const XPathExpression* R,
                                  const String& op);
  static unsigned evaluateNInfNode(const XPathExpression* L, const XPathExpression* R,
                                   const String& op);
  static unsigned evaluateNaNNode(const XPathExpression* L, const XPathExpression* R,
                                  const String& op);
  static unsigned evaluateNodeNaN(const XPathExpression* L, const XPathExpression* R,
                                  const String& op);
  static unsigned evaluateNodeNodeOperation(const XPathExpression* L, const XPathExpression* R,
                                            const String& op);
  static unsigned evaluateStringBool(const XPathExpression* L, const XPathExpression* R,
                                     const String& op);
  static unsigned evaluateBoolString(const XPathExpression* L, const XPathExpression* R,
                                     const String& op);
  static unsigned evaluateStringNumber(const XPathExpression* L, const XPathExpression* R,
                                       const String& op);
  static unsigned evaluateNumberString(const XPathExpression* L, const XPathExpression* R,
                                       const String& op);
};

}  // namespace XmlPlugin
