// Each operation walks its rules in order and answers the kind of the first rule that
// holds, NumbType when none does. The rules deliberately depart from IEEE arithmetic in
// places (Infinity - 5 is -Infinity, the sign of a product is read from the right operand);
// they are the engine's defined behaviour.
#include "XPathNumericLimits.h"

#include "PluginTracer.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

const double ZERO = 0.0;

// What the rules read of one operand.
struct Operand {
  explicit Operand(const XPathExpression* e)
      : m_Number(e->GetExpressionNumb()),
        m_Ordinary(XPathNumericLimits::isNumbType(e)),
        m_Inf(XPathNumericLimits::isInfinity(e)),
        m_NInf(XPathNumericLimits::isNInfinity(e)),
        m_NegativeZero(e->isNegativeZero()) {}
  bool infinite() const { return m_Inf || m_NInf; }
  bool zero() const { return m_Number == ZERO; }

  double m_Number;
  bool m_Ordinary;
  bool m_Inf;
  bool m_NInf;
  bool m_NegativeZero;
};

LimitType traced(const char* i_Function, LimitType i_Result) {
  Trace trace(pluginTracer(), i_Function);
  HOST_TRACE(trace, 3) << "result = " << static_cast<int>(i_Result);
  return i_Result;
}

LimitType modKind(const Operand&, const Operand& b) {
  return b.zero() ? NaN : NumbType;
}

LimitType divKind(const Operand& a, const Operand& b) {
  if (a.zero() && b.zero()) {
    return NaN;
  }
  if (a.m_Ordinary && b.zero()) {
    // A negative dividend and a negative zero divisor flip the sign twice.
    if (a.m_Number > ZERO) {
      return b.m_NegativeZero ? NInfinity : Infinity;
    }
    if (a.m_Number < ZERO) {
      return b.m_NegativeZero ? Infinity : NInfinity;
    }
  }
  if (a.m_Ordinary && b.infinite()) {
    return ZeroByInfinity;
  }
  if (a.infinite() && b.infinite()) {
    return NaN;
  }
  return NumbType;
}

LimitType multiKind(const Operand& a, const Operand& b) {
  const bool infTimesOrdinary = (a.m_Inf && b.m_Ordinary) || (b.m_Inf && a.m_Ordinary);
  // Deliberately reads the sign of the right operand in both orders, even when it is the
  // infinity.
  if (infTimesOrdinary && b.m_Number > ZERO) {
    return Infinity;
  }
  if (infTimesOrdinary && b.m_Number < ZERO) {
    return NInfinity;
  }
  // Deliberately -Infinity whatever the sign of the ordinary factor.
  if ((a.m_NInf && b.m_Ordinary) || (b.m_NInf && a.m_Ordinary)) {
    return NInfinity;
  }
  if ((a.zero() && b.infinite()) || (b.zero() && a.infinite())) {
    return NaN;
  }
  return NumbType;
}

LimitType plusKind(const Operand& a, const Operand& b) {
  if ((a.m_Ordinary && b.m_Inf) || (b.m_Ordinary && a.m_Inf)) {
    return Infinity;
  }
  if ((a.m_Ordinary && b.m_NInf) || (b.m_Ordinary && a.m_NInf)) {
    return NInfinity;
  }
  if ((a.m_Inf && b.m_NInf) || (b.m_Inf && a.m_NInf)) {
    return NaN;
  }
  if (a.m_Inf && b.m_Inf) {
    return Infinity;
  }
  // No rule for -Infinity + -Infinity: the caller adds the stored values.
  return NumbType;
}

LimitType minusKind(const Operand& a, const Operand& b) {
  // Deliberately the same for both operand orders: Infinity - 5 is -Infinity.
  if ((a.m_Ordinary && b.m_Inf) || (b.m_Ordinary && a.m_Inf)) {
    return NInfinity;
  }
  if ((a.m_Ordinary && b.m_NInf) || (b.m_Ordinary && a.m_NInf)) {
    return Infinity;
  }
  if ((a.m_Inf && b.m_Inf) || (a.m_NInf && b.m_NInf)) {
    return NaN;
  }
  if (a.m_Inf && b.m_NInf) {
    return Infinity;
  }
  if (b.m_Inf && a.m_NInf) {
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
  return traced("XPathNumericLimits::evaluateMod", modKind(Operand(e1), Operand(e2)));
}

LimitType XPathNumericLimits::evaluateDiv(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluateDiv", divKind(Operand(e1), Operand(e2)));
}

LimitType XPathNumericLimits::evaluateMulti(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluateMulti", multiKind(Operand(e1), Operand(e2)));
}

LimitType XPathNumericLimits::evaluatePlus(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluatePlus", plusKind(Operand(e1), Operand(e2)));
}

LimitType XPathNumericLimits::evaluateMinus(const XPathExpression* e1, const XPathExpression* e2) {
  return traced("XPathNumericLimits::evaluateMinus", minusKind(Operand(e1), Operand(e2)));
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
