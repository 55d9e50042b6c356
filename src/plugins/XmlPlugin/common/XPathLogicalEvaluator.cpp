#include "XPathLogicalEvaluator.h"

namespace XmlPlugin {

constexpr int32_t XPathLogicalEvaluator::tabArithm[KINDS][KINDS][OPERATORS] = {};

unsigned XPathLogicalEvaluator::evaluate(const XPathExpression*, const XPathExpression*,
                                         const String&) {
  return 0;
}
int XPathLogicalEvaluator::getOperIndex(const String&) {
  return 0;
}
int XPathLogicalEvaluator::getTypeIndex(const XPathExpression*) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateLogicalOperation(double, double, const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNumberNode(const XPathExpression*, const XPathExpression*,
                                                   const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNodeNumber(const XPathExpression*, const XPathExpression*,
                                                   const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNodeString(const XPathExpression*, const XPathExpression*,
                                                   const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateStringNode(const XPathExpression*, const XPathExpression*,
                                                   const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateBoolNumber(const XPathExpression*, const XPathExpression*,
                                                   const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateStringString(const XPathExpression*, const XPathExpression*,
                                                     const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNodeInf(const XPathExpression*, const XPathExpression*,
                                                const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNodeNInf(const XPathExpression*, const XPathExpression*,
                                                 const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateInfNode(const XPathExpression*, const XPathExpression*,
                                                const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNInfNode(const XPathExpression*, const XPathExpression*,
                                                 const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNaNNode(const XPathExpression*, const XPathExpression*,
                                                const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNodeNaN(const XPathExpression*, const XPathExpression*,
                                                const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNodeNodeOperation(const XPathExpression*,
                                                          const XPathExpression*, const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateStringBool(const XPathExpression*, const XPathExpression*,
                                                   const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateBoolString(const XPathExpression*, const XPathExpression*,
                                                   const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateStringNumber(const XPathExpression*, const XPathExpression*,
                                                     const String&) {
  return 0;
}
unsigned XPathLogicalEvaluator::evaluateNumberString(const XPathExpression*, const XPathExpression*,
                                                     const String&) {
  return 0;
}

}  // namespace XmlPlugin
