// Checks an XPath text against the grammar this engine accepts and cuts it into the items
// that the infix-to-postfix parser receives: operands (literals, numbers, whole location
// paths with their predicates), operators, function calls and punctuation.
//
// Design: a recursive-descent recognizer with one operation per grammar production. Each
// operation answers how many characters of the text its production covers from a position
// (leading blanks included, 0 for no match). The text is first measured; only when the
// measure covers it in full is it run again to emit items, and every production places its
// parts by the lengths its measuring found. Measuring is a pure function of (production,
// position) and is memoised, which keeps tokenizing polynomial.
//
// The accepted language departs from XPath 1.0 on purpose:
//  - Keywords take the first table entry that matches, so descendant-or-self:: and
//    following-sibling:: are never found in full and are rejected.
//  - The separators ".", "-", "_" and ":" inside a name skip blanks before them, so
//    "price - 1" is one name followed by a stray number (rejected) while "1 - 2" is accepted.
//  - Alternatives combine their lengths by a bitwise OR (see XPathTokenizer.cpp): text() and
//    node() pass as node tests, comment() and processing-instruction() fail.
//  - A number starts with a digit (.5 is rejected); "/" alone is not a path.
//  - The emitting pass of AndExpr advances past each further "and" by the length of the
//    first operand, so the rest of a chain can be lost (a=1 and b=2 and c=3 emits only
//    a=1 and b=2, a=10 and b=2 and c=3 emits all).
//  - A union "a|b" becomes one operand; the location-path engine splits it again.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "XPathExpression.h"
#include "host/String.h"
#include "host/Trace.h"
#include "host/Types.h"

namespace XmlPlugin {

// The deepest nesting of parentheses, argument lists and predicates an expression may
// have; a deeper one is rejected, which bounds the recursion of the recognizer. Measured:
// the deepest forms at this limit need under 1 MiB of stack in a sanitized debug build.
const int XPATH_MAX_NESTING = 256;

// The longest expression text accepted, in characters; keeps every position the
// recognizer computes far inside the range of int.
const int XPATH_MAX_LENGTH = 1 << 20;

class XPathTokenizer {
 public:
  explicit XPathTokenizer(const String& i_XPath);
  ~XPathTokenizer();
  XPathTokenizer(const XPathTokenizer&) = delete;
  XPathTokenizer& operator=(const XPathTokenizer&) = delete;

  // 0, or XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION when the text is not accepted (also when
  // it nests deeper than XPATH_MAX_NESTING or is longer than XPATH_MAX_LENGTH).
  TErrorCode start();
  // After start() failed: where and why the text was rejected, in a rule author's words.
  std::wstring describeRejection() const;
  // The items in source order, without the wrapping parentheses (borrowed).
  std::vector<XPathExpression*> getExpressionVector();
  // Hands every item the tokenizer made (also those that merging replaced) to the caller.
  std::vector<std::unique_ptr<XPathExpression>> releaseItems();

  // Whether the grammar knows i_Name as a function name or an axis name.
  static bool knowsFunction(const std::wstring& i_Name);
  static bool knowsAxis(const std::wstring& i_Name);

 private:
  // The productions that are measured and emitted through measure() and emit().
  enum Production {
    UnionExpr,
    PathExpr,
    FilterExpr,
    OrExpr,
    AndExpr,
    EqualityExpr,
    RelationalExpr,
    AdditiveExpr,
    MultiplicativeExpr,
    UnaryExpr,
    Expr,
    PrimaryExpr,
    FunctionCall,
    Argument,
    LocationPath,
    AbsoluteLocationPath,
    RelativeLocationPath,
    AbbreviatedAbsoluteLocationPath,
    Step,
    AxisSpecifier,
    AxisName,
    AbbreviatedAxisSpecifier,
    AbbreviatedStep,
    NodeTest,
    NodeType,
    NameTest,
    Predicate,
    PredicateExpr,
    Literal,
    Number,
    Digits,
    FunctionName,
    VariableReference,
    QName,
    PrefixName,
    UnprefixedName,
    Prefix,
    LocalPart,
    NCName,
    PRODUCTION_COUNT
  };

  // One part of a sequence: a production or a literal text.
  struct Part {
    constexpr Part(Production i_Production) : m_Production(i_Production) {}
    constexpr Part(const wchar_t* i_pLiteral) : m_pLiteral(i_pLiteral) {}
    Production m_Production = PRODUCTION_COUNT;
    const wchar_t* m_pLiteral = nullptr;
  };

  // A location path operand keeps the blanks before it, a token operand does not.
  enum Blanks { KeepBlanks, SkipBlanks };

  // How the emitting pass of an operator chain deviates from its measuring pass.
  enum ChainEmission { PlainChain, AndChainSlip, MultiplicativeChainRetry };

  // The productions. Each returns the length covered from i_Position (0: no match) and,
  // with i_Consume, appends its items to m_ExprVector.
  int isUnionExpr(int i_Position, bool i_Consume);
  int isPathExpr(int i_Position, bool i_Consume);
  int isFilterExpr(int i_Position, bool i_Consume);
  int isOrExpr(int i_Position, bool i_Consume);
  int isAndExpr(int i_Position, bool i_Consume);
  int isEqualityExpr(int i_Position, bool i_Consume);
  int isRelationalExpr(int i_Position, bool i_Consume);
  int isAdditiveExpr(int i_Position, bool i_Consume);
  int isMultiplicativeExpr(int i_Position, bool i_Consume);
  int isUnaryExpr(int i_Position, bool i_Consume);
  int isExpr(int i_Position, bool i_Consume);
  int isPrimaryExpr(int i_Position, bool i_Consume);
  int isFunctionCall(int i_Position, bool i_Consume);
  int isArgument(int i_Position, bool i_Consume);
  int isLocationPath(int i_Position, bool i_Consume);
  int isAbsoluteLocationPath(int i_Position, bool i_Consume);
  int isRelativeLocationPath(int i_Position, bool i_Consume);
  int isAbbreviatedAbsoluteLocationPath(int i_Position, bool i_Consume);
  int isStep(int i_Position, bool i_Consume);
  int isAxisSpecifier(int i_Position, bool i_Consume);
  int isAxisName(int i_Position, bool i_Consume);
  int isAbbreviatedAxisSpecifier(int i_Position, bool i_Consume);
  int isAbbreviatedStep(int i_Position, bool i_Consume);
  int isNodeTest(int i_Position, bool i_Consume);
  int isNodeType(int i_Position, bool i_Consume);
  int isNameTest(int i_Position, bool i_Consume);
  int isPredicate(int i_Position, bool i_Consume);
  int isPredicateExpr(int i_Position, bool i_Consume);
  int isLiteral(int i_Position, bool i_Consume);
  int isNumber(int i_Position, bool i_Consume);
  int isDigits(int i_Position, bool i_Consume);
  int isFunctionName(int i_Position, bool i_Consume);
  int isVariableReference(int i_Position, bool i_Consume);
  int isQName(int i_Position, bool i_Consume);
  int isPrefixName(int i_Position, bool i_Consume);
  int isUnprefixedName(int i_Position, bool i_Consume);
  int isPrefix(int i_Position, bool i_Consume);
  int isLocalPart(int i_Position, bool i_Consume);
  int isNCName(int i_Position, bool i_Consume);
  // Blanks, then exactly i_pLiteral: their joint length, or 0. Emits the literal itself.
  int isCharacter(int i_Position, const wchar_t* i_pLiteral, bool i_Consume);

  // The XML name character classes of the character at a position (0 past the end). Only
  // the literal alternatives ("_", ".", "-", ":") skip blanks, through isCharacter.
  int isNCNameStartChar(int i_Position, bool i_Consume);
  int isNCNameChar(int i_Position, bool i_Consume);
  int isNameChar(int i_Position, bool i_Consume);
  int isLetter(int i_Position, bool i_Consume);
  int isBaseChar(int i_Position, bool i_Consume);
  int isIdeographic(int i_Position, bool i_Consume);
  int isCombiningChar(int i_Position, bool i_Consume);
  int isDigit(int i_Position, bool i_Consume);
  int isExtender(int i_Position, bool i_Consume);

  // Joins each "|" item with its neighbours into one operand.
  void mergeXPath();
  // For an odd number of signs, the items "(", a negative zero and "-" that open a negation.
  void negativeNumberEvaluate(bool i_Odd);

  // The memoised length of a production at a position.
  int measure(Production i_Production, int i_Position);
  // Emits a production at a position where it matches.
  void emit(Production i_Production, int i_Position);
  // The memoised length for a key, -1 when not measured yet.
  int recall(long long i_Key) const;
  void remember(long long i_Key, int i_Length);
  // Runs a production by its id.
  int run(Production i_Production, int i_Position, bool i_Consume);
  void traceProduction(Production i_Production, int i_Position, bool i_Consume);
  static const char* productionName(Production i_Production);
  // Emits i_Production when consuming; its length either way.
  int delegate(Production i_Production, int i_Position, bool i_Consume);
  // All parts in order, or 0 when one fails; emits each part when consuming.
  int sequence(int i_Position, bool i_Consume, const std::initializer_list<Part>& i_Parts);
  // The first of two alternatives that matches, emitted as one operand of its text.
  int operandOfFirst(int i_Position, bool i_Consume, Production i_First, Production i_Second,
                     Blanks i_Blanks);
  // Operand ( operator Operand )*; an operator without its right operand ends the chain.
  int operatorChain(int i_Position, bool i_Consume, Production i_Operand,
                    const std::initializer_list<const wchar_t*>& i_Operators,
                    ChainEmission i_Emission);
  // The first of the texts that the text continues with after blanks (operators and
  // keywords alike: no word-boundary test) with the joint length; length 0 for none.
  struct Match {
    int m_Length;
    const wchar_t* m_pText;
  };
  Match matchFirst(int i_Position, const std::initializer_list<const wchar_t*>& i_Texts) const;
  int countBlanks(int i_Position) const;
  wchar_t charAt(int i_Position) const;

  XPathExpression* addItem(XPathExpression* i_pItem);
  XPathExpression* own(XPathExpression* i_pItem);
  void emitToken(const wchar_t* i_pToken, XPathExpression* i_pPrevious);
  // An operand of the text covered.
  void emitOperand(int i_Position, int i_Length, Blanks i_Blanks);
  void reject();

  Tracer& m_Tracer;
  String m_XPath;  // the expression wrapped in "(" and ")"
  const wchar_t* m_pText;
  int m_Length;
  std::vector<XPathExpression*> m_ExprVector;  // emission order, with the wrapping parentheses
  std::vector<XPathExpression*> m_OutVector;   // without them
  std::vector<std::unique_ptr<XPathExpression>> m_Items;  // every item made
  std::unordered_map<long long, int> m_Measured;          // (production, position) -> length
  int m_Nesting = 0;
  int m_Reached = 0;        // the furthest position up to which a production matched
  TErrorCode m_Status = 0;  // sticky: set by a failure found while recognizing or emitting
};

}  // namespace XmlPlugin
