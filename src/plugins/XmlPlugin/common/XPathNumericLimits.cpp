// Each operation walks its rules in order and answers the kind of the first rule that
// holds, NumbType when none does. The rules deliberately depart from IEEE arithmetic in
// places (Infinity - 5 is -Infinity, the sign of a product is read from the right operand);
// they are the engine's defined behaviour.
#include "XPathNumericLimits.h"

#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

const double ZERO = 0.0;

double num(const XPathExpression* e) {
  return e->GetExpressionNumb();
}

bool isInfinite(const XPathExpression* e) {
  return XPathNumericLimits::isInfinity(e) || XPathNumericLimits::isNInfinity(e);
}

LimitType traced(const char* i_Function, LimitType i_Result) {
  Trace trace(Tracer::getInstance(TRACE_COMPONENT), i_Function);
  HOST_TRACE(trace, 3) << "result = " << static_cast<int>(i_Result);
  return i_Result;
}

LimitType modKind(const XPathExpression*, const XPathExpression* e2) {
  return num(e2) == ZERO ? NaN : NumbType;
}

LimitType divKind(const XPathExpression* e1, const XPathExpression* e2) {
  const bool ordinary = XPathNumericLimits::isNumbType(e1);
  const bool byZero = num(e2) == ZERO;
  const bool byNegativeZero = byZero && e2->isNegativeZero();
  if (num(e1) == ZERO && byZero) {
    return NaN;
  }
  if (ordinary && byZero) {
    // A negative dividend and a negative zero divisor flip the sign twice.
    if (num(e1) > ZERO) {
      return byNegativeZero ? NInfinity : Infinity;
    }
    if (num(e1) < ZERO) {
      return byNegativeZero ? Infinity : NInfinity;
    }
  }
  if (ordinary && isInfinite(e2)) {
    return ZeroByInfinity;
  }
  if (isInfinite(e1) && isInfinite(e2)) {
    return NaN;
  }
  return NumbType;
}

LimitType multiKind(const XPathExpression* e1, const XPathExpression* e2) {
  const bool infTimesOrdinary =
      (XPathNumericLimits::isInfinity(e1) && XPathNumericLimits::isNumbType(e2)) ||
      (XPathNumericLimits::isInfinity(e2) && XPathNumericLimits::isNumbType(e1));
  // Deliberately reads the sign of e2 in both orders, even when e2 is the infinity.
  if (infTimesOrdinary && num(e2) > ZERO) {
    return Infinity;
  }
  if (infTimesOrdinary && num(e2) < ZERO) {
    return NInfinity;
  }
  // Deliberately -Infinity whatever the sign of the ordinary factor.
  if ((XPathNumericLimits::isNInfinity(e1) && XPathNumericLimits::isNumbType(e2)) ||
      (XPathNumericLimits::isNInfinity(e2) && XPathNumericLimits::isNumbType(e1))) {
    return NInfinity;
  }
  if ((num(e1) == ZERO && isInfinite(e2)) || (num(e2) == ZERO && isInfinite(e1))) {
    return NaN;
  }
  return NumbType;
}

LimitType plusKind(const XPathExpression* e1, const XPathExpression* e2) {
  const bool ordinary1 = XPathNumericLimits::isNumbType(e1);
  const bool ordinary2 = XPathNumericLimits::isNumbType(e2);
  const bool inf1 = XPathNumericLimits::isInfinity(e1);
  const bool inf2 = XPathNumericLimits::isInfinity(e2);
  const bool nInf1 = XPathNumericLimits::isNInfinity(e1);
  const bool nInf2 = XPathNumericLimits::isNInfinity(e2);
  if ((ordinary1 && inf2) || (ordinary2 && inf1)) {
    return Infinity;
  }
  if ((ordinary1 && nInf2) || (ordinary2 && nInf1)) {
    return NInfinity;
  }
  if ((inf1 && nInf2) || (inf2 && nInf1)) {
    return NaN;
  }
  if (inf1 && inf2) {
    return Infinity;
  }
  // No rule for -Infinity + -Infinity: the caller adds the stored values.
  return NumbType;
}

LimitType minusKind(const XPathExpression* e1, const XPathExpression* e2) {
  const bool ordinary1 = XPathNumericLimits::isNumbType(e1);
  const bool ordinary2 = XPathNumericLimits::isNumbType(e2);
  const bool inf1 = XPathNumericLimits::isInfinity(e1);
  const bool inf2 = XPathNumericLimits::isInfinity(e2);
  const bool nInf1 = XPathNumericLimits::isNInfinity(e1);
  const bool nInf2 = XPathNumericLimits::isNInfinity(e2);
  // Deliberately the same for both operand orders: Infinity - 5 is -Infinity.
  if ((ordinary1 && inf2) || (ordinary2 && inf1)) {
    return NInfinity;
  }
  if ((ordinary1 && nInf2) || (ordinary2 && nInf1)) {
    return Infinity;
  }
  if ((inf1 && inf2) || (nInf1 && nInf2)) {
    return NaN;
  }
  if (inf1 && nInf2) {
    return Infinity;
  }
  if (inf2 && nInf1) {
    return NInfinity;
  }
  return NumbType;
}

typedef LimitType (*KindRule)(const XPathExpression*, const XPathExpression*);

struct OperatorRules {
  const wchar_t* m_Op;
  KindRule m_Rule;
};

const OperatorRules OPERATORS[] = {
    {L"mod", &XPathNumericLimits::evaluateMod}, {L"div", &XPathNumericLimits::evaluateDiv},
    {L"+", &XPathNumericLimits::evaluatePlus},  {L"-", &XPathNumericLimits::evaluateMinus},
    {L"*", &XPathNumericLimits::evaluateMulti},
};

}  // namespace

LimitType XPathNumericLimits::evaluate(const XPathExpression* e1, const XPathExpression* e2,
                                       const String& op) {
  for (const OperatorRules& rules : OPERATORS) {
    if (op.compareTo(rules.m_Op) == 0) {
      return rules.m_Rule(e1, e2);
    }
  }
  return traced("XPathNumericLimits::evaluate", NumbType);
}

LimitType XPathNumericLimits::evaluateMod(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluateMod", modKind(e1, e2));
}

LimitType XPathNumericLimits::evaluateDiv(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluateDiv", divKind(e1, e2));
}

LimitType XPathNumericLimits::evaluateMulti(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluateMulti", multiKind(e1, e2));
}

LimitType XPathNumericLimits::evaluatePlus(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluatePlus", plusKind(e1, e2));
}

LimitType XPathNumericLimits::evaluateMinus(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluateMinus", minusKind(e1, e2));
}

bool XPathNumericLimits::isNumbType(const XPathExpression* e) {
  return e->getNumbType() == NumbType;
}

bool XPathNumericLimits::isNaN(const XPathExpression* e) {
  return e->getNumbType() == NaN;
}

bool XPathNumericLimits::isInfinity(const XPathExpression* e) {
  return e->getNumbType() == Infinity;
}

bool XPathNumericLimits::isNInfinity(const XPathExpression* e) {
  return e->getNumbType() == NInfinity;
}

}  // namespace XmlPlugin
