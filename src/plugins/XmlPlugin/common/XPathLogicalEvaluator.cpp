// Comparisons are not reduced to one type by general rules. Each operand is classified into
// one of seven kinds, and tabArithm[kind of R][kind of L][operator] names an action: a fixed
// answer, a numeric comparison of two chosen terms, or a pairwise operation. Several cells
// deliberately depart from textbook XPath (NaN != NaN is true, Infinity = Infinity is true, a
// number against NaN is false even for "!="); the table is the engine's defined behaviour.
//
// L is the left operand of the expression and R the right one; evaluate receives (R, L), the
// pairwise operations (L, R). Node sets are compared existentially: the answer is true when
// some node (for two node sets, some pair of nodes) satisfies the comparison.
#include "XPathLogicalEvaluator.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "PluginTracer.h"
#include "XPathArgument.h"
#include "XPathFunction.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

// Operator indexes, the table's last dimension.
enum Operator { EQ = 0, NE = 1, LT = 2, GT = 3, LE = 4, GE = 5, AND = 6, OR = 7 };

const wchar_t* const OPERATOR_TEXTS[XPathLogicalEvaluator::OPERATORS] = {
    L"=", L"!=", L"<", L">", L"<=", L">=", L"and", L"or"};

// Operand kinds, the table's first two dimensions.
enum Kind {
  NUMBER = 0,
  NAN_KIND = 1,
  INFINITY_KIND = 2,
  NINFINITY_KIND = 3,
  BOOLEAN = 4,
  STRING = 5,
  NODE_SET = 6
};

}  // namespace

// clang-format off
const int32_t XPathLogicalEvaluator::tabArithm[KINDS][KINDS][OPERATORS] = {
  // Rows: kind of R. Columns: kind of L. Each cell: =  !=  <  >  <=  >=  and  or
  { // R number
    /* L number    */ { 2,  2,  2,  2,  2,  2,  2,  2},
    /* L NaN       */ { 0,  0,  0,  0,  0,  0,  0,  7},
    /* L Infinity  */ { 0,  1,  0,  1,  0,  1,  5,  1},
    /* L -Infinity */ { 0,  1,  1,  0,  1,  0,  5,  1},
    /* L boolean   */ { 6,  6,  6,  6,  6,  6,  6,  6},
    /* L string    */ { 9,  9,  9,  9,  9,  9,  9,  9},
    /* L node set  */ {16, 16, 16, 16, 16, 16,  6,  6}},
  { // R NaN
    /* L number    */ { 0,  0,  0,  0,  0,  0,  0,  4},
    /* L NaN       */ { 0,  1,  0,  0,  0,  0,  0,  0},
    /* L Infinity  */ { 0,  0,  0,  0,  0,  0,  0,  1},
    /* L -Infinity */ { 0,  0,  0,  0,  0,  0,  0,  1},
    /* L boolean   */ {30, 30,  0,  0,  0,  0,  0,  4},
    /* L string    */ { 0,  0,  0,  0,  0,  0,  0, 31},
    /* L node set  */ {18,  0,  0,  0,  0,  0,  0, 18}},
  { // R Infinity
    /* L number    */ { 0,  1,  1,  0,  1,  0,  3,  1},
    /* L NaN       */ { 0,  0,  0,  0,  0,  0,  0,  1},
    /* L Infinity  */ { 1,  0,  0,  0,  1,  1,  1,  1},
    /* L -Infinity */ { 0,  1,  1,  0,  1,  0,  1,  1},
    /* L boolean   */ {29, 29,  1,  0,  1,  0, 29, 29},
    /* L string    */ { 0,  1,  0,  0,  0,  0, 11,  1},
    /* L node set  */ { 0, 22, 22,  0, 22,  0,  3,  1}},
  { // R -Infinity
    /* L number    */ { 0,  1,  0,  1,  0,  1,  3,  1},
    /* L NaN       */ { 0,  0,  0,  0,  0,  0,  0,  1},
    /* L Infinity  */ { 0,  1,  0,  1,  0,  1,  1,  1},
    /* L -Infinity */ { 1,  0,  0,  0,  1,  1,  1,  1},
    /* L boolean   */ {29, 29,  0,  1,  0,  1,  3,  1},
    /* L string    */ { 0,  1,  0,  0,  0,  0, 11,  1},
    /* L node set  */ { 0, 23,  0, 23,  0, 23, 24,  1}},
  { // R boolean
    /* L number    */ { 6,  6,  6,  6,  6,  6,  6,  6},
    /* L NaN       */ {19, 19,  0,  0,  0,  0,  0, 19},
    /* L Infinity  */ { 5,  5,  0,  1,  0,  1,  5,  5},
    /* L -Infinity */ {28, 28,  1,  0,  1,  0,  5,  1},
    /* L boolean   */ { 2,  2,  2,  2,  2,  2,  2,  2},
    /* L string    */ {13, 13, 13, 13, 13, 13, 13, 13},
    /* L node set  */ {24, 24, 24, 24, 24, 24, 24, 24}},
  { // R string
    /* L number    */ { 8,  8,  8,  8,  8,  8,  8,  8},
    /* L NaN       */ { 0,  0,  0,  0,  0,  0,  0, 10},
    /* L Infinity  */ { 0,  1,  0,  0,  0,  0, 11,  1},
    /* L -Infinity */ { 0,  1,  0,  0,  0,  0, 11,  1},
    /* L boolean   */ {12, 12, 12, 12, 12, 12, 12, 12},
    /* L string    */ {14, 14, 14, 14, 14, 14, 14, 14},
    /* L node set  */ {27, 27, 27,  0, 27,  0, 27, 27}},
  { // R node set
    /* L number    */ {15, 15, 15, 15, 15, 15, 25, 25},
    /* L NaN       */ {17, 33,  0,  0,  0,  0,  0, 25},
    /* L Infinity  */ { 0, 20,  0, 20,  0, 20,  5,  1},
    /* L -Infinity */ { 0, 21, 21,  0, 21,  0, 25,  1},
    /* L boolean   */ {25, 25, 25, 25, 25, 25, 25, 25},
    /* L string    */ {26, 26,  0, 26,  0,  0, 26, 26},
    /* L node set  */ {32, 32, 32, 32, 32, 32, 32, 32}},
};
// clang-format on

static_assert(sizeof(XPathLogicalEvaluator::tabArithm) ==
                  sizeof(int32_t) * XPathLogicalEvaluator::KINDS * XPathLogicalEvaluator::KINDS *
                      XPathLogicalEvaluator::OPERATORS,
              "tabArithm is kinds x kinds x operators");
static_assert(sizeof(XPathLogicalEvaluator::tabArithm[0][0]) ==
                  sizeof(int32_t) * XPathLogicalEvaluator::OPERATORS,
              "one code per operator in each cell");

namespace {

typedef unsigned (*PairwiseOperation)(const XPathExpression*, const XPathExpression*,
                                      const String&);

// The numbers a comparison action compares.
enum Term { NUM_L, NUM_R, BOOL_L, BOOL_R, ONE, ZERO };

struct Action {
  enum Form { ANSWER, COMPARE, PAIRWISE };
  Form m_Form;
  unsigned m_Answer;
  Term m_First;
  Term m_Second;
  PairwiseOperation m_Operation;
};

constexpr Action answer(unsigned i_Answer) {
  return {Action::ANSWER, i_Answer, ZERO, ZERO, nullptr};
}
constexpr Action compare(Term i_First, Term i_Second) {
  return {Action::COMPARE, 0, i_First, i_Second, nullptr};
}
constexpr Action pairwise(PairwiseOperation i_Operation) {
  return {Action::PAIRWISE, 0, ZERO, ZERO, i_Operation};
}

typedef XPathLogicalEvaluator Evaluator;

// Indexed by the codes of tabArithm.
constexpr Action ACTIONS[] = {
    /*  0 */ answer(0),
    /*  1 */ answer(1),
    /*  2 */ compare(NUM_L, NUM_R),
    /*  3 */ compare(NUM_L, ONE),
    /*  4 */ compare(NUM_L, ZERO),
    /*  5 */ compare(ONE, NUM_R),
    /*  6 */ pairwise(&Evaluator::evaluateBoolNumber),
    /*  7 */ compare(ZERO, NUM_R),
    /*  8 */ pairwise(&Evaluator::evaluateStringNumber),
    /*  9 */ pairwise(&Evaluator::evaluateNumberString),
    /* 10 */ compare(ZERO, BOOL_R),
    /* 11 */ compare(BOOL_L, BOOL_R),
    /* 12 */ pairwise(&Evaluator::evaluateStringBool),
    /* 13 */ pairwise(&Evaluator::evaluateBoolString),
    /* 14 */ pairwise(&Evaluator::evaluateStringString),
    /* 15 */ pairwise(&Evaluator::evaluateNodeNumber),
    /* 16 */ pairwise(&Evaluator::evaluateNumberNode),
    /* 17 */ pairwise(&Evaluator::evaluateNodeNaN),
    /* 18 */ pairwise(&Evaluator::evaluateNaNNode),
    /* 19 */ compare(BOOL_R, ZERO),
    /* 20 */ pairwise(&Evaluator::evaluateNodeInf),
    /* 21 */ pairwise(&Evaluator::evaluateNodeNInf),
    /* 22 */ pairwise(&Evaluator::evaluateInfNode),
    /* 23 */ pairwise(&Evaluator::evaluateNInfNode),
    /* 24 */ compare(BOOL_L, BOOL_R),
    /* 25 */ compare(BOOL_L, BOOL_R),
    /* 26 */ pairwise(&Evaluator::evaluateNodeString),
    /* 27 */ pairwise(&Evaluator::evaluateStringNode),
    /* 28 */ compare(BOOL_R, ONE),
    /* 29 */ compare(ONE, BOOL_L),
    /* 30 */ compare(ZERO, BOOL_L),
    /* 31 */ compare(BOOL_L, ZERO),
    /* 32 */ pairwise(&Evaluator::evaluateNodeNodeOperation),
    /* 33 */ compare(BOOL_L, BOOL_R),
};
const int32_t ACTION_COUNT = sizeof(ACTIONS) / sizeof(ACTIONS[0]);
static_assert(ACTION_COUNT == 34, "one action per code 0 to 33");

double boolNumber(const XPathExpression* i_pValue) {
  return i_pValue->GetExpressionBool() != 0 ? 1.0 : 0.0;
}

double termValue(Term i_Term, const XPathExpression* L, const XPathExpression* R) {
  switch (i_Term) {
    case NUM_L:
      return L->GetExpressionNumb();
    case NUM_R:
      return R->GetExpressionNumb();
    case BOOL_L:
      return boolNumber(L);
    case BOOL_R:
      return boolNumber(R);
    case ONE:
      return 1.0;
    case ZERO:
      return 0.0;
  }
  return 0.0;
}

unsigned compareNumbers(double a, double b, int i_Oper) {
  switch (i_Oper) {
    case OR:
      return a != 0.0 || b != 0.0;
    case AND:
      return a != 0.0 && b != 0.0;
    case EQ:
      return a == b;
    case NE:
      return !(a == b);
    case LT:
      return a < b;
    case GT:
      return a > b;
    case LE:
      return a <= b;
    case GE:
      return a >= b;
  }
  return 0;
}

bool isBooleanOperator(int i_Oper) {
  return i_Oper == AND || i_Oper == OR;
}
bool isRelationalOperator(int i_Oper) {
  return i_Oper == LT || i_Oper == GT || i_Oper == LE || i_Oper == GE;
}

bool isNonEmptyNodeSet(const XPathExpression* i_pNodeSet) {
  return !i_pNodeSet->getOutputNodesList().empty();
}

// Num of a value; a string has one only when its text is numeric.
bool readNumber(const XPathExpression* i_pValue, double& o_Number) {
  if (i_pValue->getDataType() == StringType) {
    return XPathArgument::numberOfOperand(i_pValue->GetExpressionString(), o_Number);
  }
  o_Number = i_pValue->GetExpressionNumb();
  return true;
}

std::vector<String> nodeStrings(const XPathExpression* i_pNodeSet) {
  std::vector<String> strings;
  for (const XPathOutputElement* item : i_pNodeSet->getOutputNodesList()) {
    strings.push_back(XPathFunction_string::getItemString(item));
  }
  return strings;
}

// True at the first node whose number satisfies the comparison with i_Number; i_NodeOnLeft
// puts the node's number on the left side. A node that is not numeric is skipped, except
// under "!=", where it deliberately ends the search with false.
unsigned someNodeComparesWith(const XPathExpression* i_pNodeSet, double i_Number, bool i_NodeOnLeft,
                              int i_Oper) {
  for (const XPathOutputElement* item : i_pNodeSet->getOutputNodesList()) {
    const String text = XPathFunction_string::getItemString(item);
    double nodeNumber = 0.0;
    if (!XPathArgument::numberOfOperand(text, nodeNumber)) {
      if (i_Oper == NE) {
        return 0;
      }
      continue;
    }
    const unsigned satisfied = i_NodeOnLeft ? compareNumbers(nodeNumber, i_Number, i_Oper)
                                            : compareNumbers(i_Number, nodeNumber, i_Oper);
    if (satisfied != 0) {
      return 1;
    }
  }
  return 0;
}

// The numeric nodes' smallest and largest numbers; false when no node is numeric.
bool numberRange(const std::vector<String>& i_Strings, double& o_Min, double& o_Max) {
  bool found = false;
  for (const String& text : i_Strings) {
    double number = 0.0;
    if (!XPathArgument::numberOfOperand(text, number)) {
      continue;
    }
    o_Min = found ? std::min(o_Min, number) : number;
    o_Max = found ? std::max(o_Max, number) : number;
    found = true;
  }
  return found;
}

unsigned notANumber(const char* i_Function) {
  Trace trace(pluginTracer(), i_Function);
  HOST_TRACE(trace, 3) << "string is NaN so result is false";
  return 0;
}

// How a string meets a boolean or a number: truth values for "and" and "or" (and for "="
// and "!=" too when m_EqualityAsBoolean), numbers otherwise; a string that is not numeric
// answers false. m_Exchanged compares Num(R) with Num(L) instead of Num(L) with Num(R).
// m_NumberTextFirst traces m_NumberText before the string is tested, not with the numbers.
struct MixedComparison {
  const char* m_Function;
  bool m_EqualityAsBoolean;
  bool m_Exchanged;
  bool m_NumberTextFirst;
  const char* m_BooleanText;
  const char* m_NumberText;

  unsigned compare(const XPathExpression* L, const XPathExpression* R, const String& op) const {
    Trace trace(pluginTracer(), m_Function);
    const int oper = XPathLogicalEvaluator::getOperIndex(op);
    if (isBooleanOperator(oper) || (m_EqualityAsBoolean && (oper == EQ || oper == NE))) {
      HOST_TRACE(trace, 3) << m_BooleanText;
      return XPathLogicalEvaluator::evaluateLogicalOperation(boolNumber(L), boolNumber(R), op);
    }
    if (m_NumberTextFirst) {
      HOST_TRACE(trace, 3) << m_NumberText;
    }
    double left = 0.0;
    double right = 0.0;
    if (!readNumber(L, left) || !readNumber(R, right)) {
      return notANumber(m_Function);
    }
    if (!m_NumberTextFirst) {
      HOST_TRACE(trace, 3) << m_NumberText << ". Numb1 = " << left << " Numb2 = " << right;
    }
    return m_Exchanged ? XPathLogicalEvaluator::evaluateLogicalOperation(right, left, op)
                       : XPathLogicalEvaluator::evaluateLogicalOperation(left, right, op);
  }
};

// The four mixed comparisons, one row each. Deliberately, a string against a boolean
// compares Num(R) with Num(L), the reverse of the others, and the number rows keep their
// "evauation" texts.
enum MixedComparisonRow { STRING_BOOL, BOOL_STRING, STRING_NUMBER, NUMBER_STRING };
const MixedComparison MIXED_COMPARISONS[] = {
    // function, equality as boolean, exchanged, number text first, boolean text, number text
    {"XPathLogicalEvaluator::evaluateStringBool", true, true, true, "boolean evaluation",
     "number evaluation"},
    {"XPathLogicalEvaluator::evaluateBoolString", true, false, false, "boolean evaluation",
     "number evaluation"},
    {"XPathLogicalEvaluator::evaluateStringNumber", false, false, false, "boolean evauation",
     "number evauation"},
    {"XPathLogicalEvaluator::evaluateNumberString", false, false, false, "boolean evauation",
     "number evauation"},
};
static_assert(sizeof(MIXED_COMPARISONS) / sizeof(MIXED_COMPARISONS[0]) == NUMBER_STRING + 1,
              "one row per mixed comparison");

// True when the node set is not empty and the operator is one of i_Accepted.
unsigned nonEmptyUnder(const XPathExpression* i_pNodeSet, const String& op,
                       std::initializer_list<int> i_Accepted) {
  const int oper = XPathLogicalEvaluator::getOperIndex(op);
  return std::find(i_Accepted.begin(), i_Accepted.end(), oper) != i_Accepted.end() &&
         isNonEmptyNodeSet(i_pNodeSet);
}

}  // namespace

unsigned XPathLogicalEvaluator::evaluate(const XPathExpression* i_pFirst,
                                         const XPathExpression* i_pSecond, const String& i_Op) {
  Trace trace(pluginTracer(), "XPathLogicalEvaluator::evaluate");
  const XPathExpression* R = i_pFirst;
  const XPathExpression* L = i_pSecond;
  // A number of kind ZeroByInfinity (or an unknown type) has no row or column of its own:
  // it counts as an ordinary number.
  const int row = std::max(getTypeIndex(R), 0);
  const int column = std::max(getTypeIndex(L), 0);
  const int oper = getOperIndex(i_Op);
  const int32_t code = tabArithm[row][column][oper];
  HOST_TRACE(trace, 3) << "pExp1 = " << R->GetExpressionString()
                       << " pExp2 = " << L->GetExpressionString();
  HOST_TRACE(trace, 3) << "column = " << column << " row = " << row << " oper = " << oper;

  unsigned result = 0;
  if (code >= 0 && code < ACTION_COUNT) {
    const Action& action = ACTIONS[code];
    switch (action.m_Form) {
      case Action::ANSWER:
        result = action.m_Answer;
        break;
      case Action::COMPARE:
        result = evaluateLogicalOperation(termValue(action.m_First, L, R),
                                          termValue(action.m_Second, L, R), i_Op);
        break;
      case Action::PAIRWISE:
        result = action.m_Operation(L, R, i_Op);
        break;
    }
  }
  HOST_TRACE(trace, 3) << "result = " << result;
  return result;
}

bool XPathLogicalEvaluator::comparesItemsWithText(const XPathExpression* i_pFirst,
                                                  const XPathExpression* i_pSecond,
                                                  const String& i_Op, bool& o_ItemsFirst,
                                                  bool& o_WantEqual) {
  const int oper = getOperIndex(i_Op);
  const int32_t code =
      tabArithm[std::max(getTypeIndex(i_pFirst), 0)][std::max(getTypeIndex(i_pSecond), 0)][oper];
  if ((oper != EQ && oper != NE) || code < 0 || code >= ACTION_COUNT ||
      ACTIONS[code].m_Form != Action::PAIRWISE) {
    return false;
  }
  // evaluate hands the operation (L, R) = (i_pSecond, i_pFirst); evaluateStringNode reads
  // the items of L and the string of R, evaluateNodeString swaps them for these operators.
  o_WantEqual = oper == EQ;
  if (ACTIONS[code].m_Operation == &Evaluator::evaluateStringNode) {
    o_ItemsFirst = false;
  } else if (ACTIONS[code].m_Operation == &Evaluator::evaluateNodeString) {
    o_ItemsFirst = true;
  } else {
    return false;
  }
  const XPathExpression* pItems = o_ItemsFirst ? i_pFirst : i_pSecond;
  const XPathExpression* pText = o_ItemsFirst ? i_pSecond : i_pFirst;
  return pItems->getDataType() == NodeSetType && pText->getDataType() == StringType;
}

int XPathLogicalEvaluator::getOperIndex(const String& i_Op) {
  // Read in place: a predicate asks once or twice for every candidate.
  const std::wstring_view op(i_Op.c_str(), static_cast<size_t>(i_Op.length()));
  for (int oper = 0; oper < OPERATORS; ++oper) {
    if (op == OPERATOR_TEXTS[oper]) {
      return oper;
    }
  }
  return EQ;
}

int XPathLogicalEvaluator::getTypeIndex(const XPathExpression* i_pExpression) {
  Trace trace(pluginTracer(), "XPathLogicalEvaluator::getTypeIndex");
  int index = -1;
  switch (i_pExpression->getDataType()) {
    case NumberType: {
      const LimitType kind = i_pExpression->getNumbType();
      index = kind <= NInfinity ? static_cast<int>(kind) : -1;
      break;
    }
    case BooleanType:
      index = BOOLEAN;
      break;
    case StringType:
      index = STRING;
      break;
    case NodeSetType:
      index = NODE_SET;
      break;
  }
  HOST_TRACE(trace, 3) << "result = " << index;
  return index;
}

unsigned XPathLogicalEvaluator::evaluateLogicalOperation(double a, double b, const String& i_Op) {
  Trace trace(pluginTracer(), "XPathLogicalEvaluator::evaluateLogicalOperation");
  HOST_TRACE(trace, 3) << "numb1 = " << std::trunc(a) << " numb2 = " << std::trunc(b);
  return compareNumbers(a, b, getOperIndex(i_Op));
}

unsigned XPathLogicalEvaluator::evaluateNumberNode(const XPathExpression* L,
                                                   const XPathExpression* R, const String& op) {
  return someNodeComparesWith(L, R->GetExpressionNumb(), true, getOperIndex(op));
}

unsigned XPathLogicalEvaluator::evaluateNodeNumber(const XPathExpression* L,
                                                   const XPathExpression* R, const String& op) {
  return someNodeComparesWith(R, L->GetExpressionNumb(), false, getOperIndex(op));
}

unsigned XPathLogicalEvaluator::evaluateNodeString(const XPathExpression* L,
                                                   const XPathExpression* R, const String& op) {
  const int oper = getOperIndex(op);
  if (oper == EQ || oper == NE || isBooleanOperator(oper)) {
    return evaluateStringNode(R, L, op);
  }
  return nonEmptyUnder(R, op, {LT, LE});
}

unsigned XPathLogicalEvaluator::evaluateStringNode(const XPathExpression* L,
                                                   const XPathExpression* R, const String& op) {
  const int oper = getOperIndex(op);
  if (isBooleanOperator(oper)) {
    return evaluateLogicalOperation(boolNumber(L), boolNumber(R), op);
  }
  if (isRelationalOperator(oper)) {
    double number = 0.0;
    if (!XPathArgument::numberOfOperand(R->GetExpressionString(), number)) {
      return notANumber("XPathLogicalEvaluator::evaluateStringNode");
    }
    return someNodeComparesWith(L, number, true, oper);
  }
  // "=" wants a node equal to the string, "!=" a node that differs.
  const String text = R->GetExpressionString();
  const bool wantEqual = oper == EQ;
  for (const XPathOutputElement* item : L->getOutputNodesList()) {
    if ((XPathFunction_string::getItemString(item) == text) == wantEqual) {
      return 1;
    }
  }
  return 0;
}

unsigned XPathLogicalEvaluator::evaluateBoolNumber(const XPathExpression* L,
                                                   const XPathExpression* R, const String& op) {
  const int oper = getOperIndex(op);
  if (oper == GE && L->GetExpressionNumb() < 0.0) {
    return 0;
  }
  if (oper == EQ || oper == NE) {
    return evaluateLogicalOperation(boolNumber(L), boolNumber(R), op);
  }
  return evaluateLogicalOperation(L->GetExpressionNumb(), R->GetExpressionNumb(), op);
}

unsigned XPathLogicalEvaluator::evaluateStringString(const XPathExpression* L,
                                                     const XPathExpression* R, const String& op) {
  Trace trace(pluginTracer(), "XPathLogicalEvaluator::evaluateStringString");
  const int oper = getOperIndex(op);
  if (oper == EQ || oper == NE) {
    // Compared as strings even when both are numeric.
    const bool equal = L->GetExpressionString() == R->GetExpressionString();
    if (equal != (oper == EQ)) {
      return 0;
    }
    HOST_TRACE(trace, 3) << (oper == EQ ? "EQ retuns 1" : "INEQ returns 1");
    return 1;
  }
  if (isBooleanOperator(oper)) {
    if (evaluateLogicalOperation(boolNumber(L), boolNumber(R), op) == 0) {
      return 0;
    }
    HOST_TRACE(trace, 3) << (oper == AND ? "AND returns 1" : "OR returns 1");
    return 1;
  }
  double left = 0.0;
  double right = 0.0;
  if (!readNumber(L, left) || !readNumber(R, right)) {
    return notANumber("XPathLogicalEvaluator::evaluateStringString");
  }
  HOST_TRACE(trace, 3) << "Both string arguments are number";
  return evaluateLogicalOperation(left, right, op);
}

unsigned XPathLogicalEvaluator::evaluateNodeInf(const XPathExpression*, const XPathExpression* R,
                                                const String& op) {
  return nonEmptyUnder(R, op, {NE, GE, GT});
}

unsigned XPathLogicalEvaluator::evaluateNodeNInf(const XPathExpression*, const XPathExpression* R,
                                                 const String& op) {
  return nonEmptyUnder(R, op, {NE, LT, LE});
}

unsigned XPathLogicalEvaluator::evaluateInfNode(const XPathExpression* L, const XPathExpression*,
                                                const String& op) {
  return nonEmptyUnder(L, op, {NE, LT, LE});
}

unsigned XPathLogicalEvaluator::evaluateNInfNode(const XPathExpression* L, const XPathExpression*,
                                                 const String& op) {
  const int oper = getOperIndex(op);
  if (oper == LT || oper == LE) {
    return someNodeComparesWith(L, -std::numeric_limits<double>::infinity(), true, oper);
  }
  return nonEmptyUnder(L, op, {NE, GT, GE});
}

unsigned XPathLogicalEvaluator::evaluateNaNNode(const XPathExpression* L, const XPathExpression*,
                                                const String& op) {
  return nonEmptyUnder(L, op, {NE, LT, LE, OR});
}

unsigned XPathLogicalEvaluator::evaluateNodeNaN(const XPathExpression* L, const XPathExpression* R,
                                                const String& op) {
  return getOperIndex(op) == NE ? evaluateNaNNode(R, L, op) : 0;
}

unsigned XPathLogicalEvaluator::evaluateNodeNodeOperation(const XPathExpression* L,
                                                          const XPathExpression* R,
                                                          const String& op) {
  const int oper = getOperIndex(op);
  if (isBooleanOperator(oper)) {
    return evaluateLogicalOperation(boolNumber(L), boolNumber(R), op);
  }
  // Each node's string is converted once; the pairs are then decided without visiting them.
  const std::vector<String> left = nodeStrings(L);
  const std::vector<String> right = nodeStrings(R);
  if (left.empty() || right.empty()) {
    return 0;
  }
  if (oper == EQ) {
    std::unordered_set<std::wstring> leftTexts;
    for (const String& text : left) {
      leftTexts.insert(text.toWide());
    }
    return std::any_of(right.begin(), right.end(),
                       [&](const String& text) { return leftTexts.count(text.toWide()) != 0; });
  }
  if (oper == NE) {
    // Some pair differs unless every string of both sets is the same.
    const auto differs = [&](const String& text) { return text != left.front(); };
    return std::any_of(left.begin(), left.end(), differs) ||
           std::any_of(right.begin(), right.end(), differs);
  }
  double leftMin = 0.0;
  double leftMax = 0.0;
  double rightMin = 0.0;
  double rightMax = 0.0;
  if (!numberRange(left, leftMin, leftMax) || !numberRange(right, rightMin, rightMax)) {
    return 0;
  }
  // Some pair satisfies "<" or "<=" exactly when the smallest left number does against the
  // largest right one, and conversely for ">" and ">=".
  return oper == LT || oper == LE ? compareNumbers(leftMin, rightMax, oper)
                                  : compareNumbers(leftMax, rightMin, oper);
}

unsigned XPathLogicalEvaluator::evaluateStringBool(const XPathExpression* L,
                                                   const XPathExpression* R, const String& op) {
  return MIXED_COMPARISONS[STRING_BOOL].compare(L, R, op);
}

unsigned XPathLogicalEvaluator::evaluateBoolString(const XPathExpression* L,
                                                   const XPathExpression* R, const String& op) {
  return MIXED_COMPARISONS[BOOL_STRING].compare(L, R, op);
}

unsigned XPathLogicalEvaluator::evaluateStringNumber(const XPathExpression* L,
                                                     const XPathExpression* R, const String& op) {
  return MIXED_COMPARISONS[STRING_NUMBER].compare(L, R, op);
}

unsigned XPathLogicalEvaluator::evaluateNumberString(const XPathExpression* L,
                                                     const XPathExpression* R, const String& op) {
  return MIXED_COMPARISONS[NUMBER_STRING].compare(L, R, op);
}

}  // namespace XmlPlugin
