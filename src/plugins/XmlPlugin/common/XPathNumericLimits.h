// Decides whether an arithmetic result is a special number, from the operands' kinds,
// values and negative-zero flags, before the operator computes anything.
#pragma once

#include "XPathExpression.h"
#include "XPathTypes.h"

namespace XmlPlugin {

class XPathNumericLimits {
 public:
  // e1 is the left operand, e2 the right one. NumbType (0) means: compute it yourself.
  static LimitType evaluate(const XPathExpression* e1, const XPathExpression* e2, const String& op);
  static LimitType evaluateMod(const XPathExpression* e1, const XPathExpression* e2);
  static LimitType evaluateDiv(const XPathExpression* e1, const XPathExpression* e2);
  static LimitType evaluateMulti(const XPathExpression* e1, const XPathExpression* e2);
  static LimitType evaluatePlus(const XPathExpression* e1, const XPathExpression* e2);
  static LimitType evaluateMinus(const XPathExpression* e1, const XPathExpression* e2);

  static bool isNumbType(const XPathExpression* e);
  static bool isNaN(const XPathExpression* e);
  static bool isInfinity(const XPathExpression* e);
  static bool isNInfinity(const XPathExpression* e);
};

}  // namespace XmlPlugin
