// The recognizer. Every production is measured through measure(), which memoises it, and
// emitted through emit(), which runs it with i_Consume only where it measured a match.
//
// Alternatives. Where a production has alternatives, their lengths are combined with a
// bitwise OR instead of taking the longest match: as node tests text() and node() measure 6
// (name test 4 | node type 6) and pass, comment() measures 15 (7 | 9) and
// processing-instruction() 30 (22 | 24), and both fail. An alternative counts only when all
// its required parts match ("/" without a relative path after it counts nothing), except
// that an axis name counts without its "::" ("parentNode" is the axis name "parent" and the
// name test "Node"; "child" alone leaves no node test and fails). A shorter form of an
// alternative that matched is not tried: "." after "..", a bare filter expression after one
// followed by a path, a location path where a filter expression (a function call) starts.
//
// Positions only grow, and an OR of lengths can carry one past the end of the text; every
// character access is bounds-checked and nothing matches there.
#include "XPathTokenizer.h"

#include <string>

#include "PluginTracer.h"
#include "XPathArgument.h"
#include "XPathNameCharClasses.h"
#include "XPathOperator.h"
#include "XPathRejection.h"
#include "XmlPluginConstants.h"

namespace XmlPlugin {

namespace {

// Keyword tables: a lookup takes the first entry that matches, so their order matters.
// clang-format off
const std::initializer_list<const wchar_t*> AXIS_NAMES = {
    L"ancestor-or-self", L"ancestor", L"attribute", L"child", L"descendant",
    L"descendant-or-self", L"following", L"following-sibling", L"namespace", L"parent",
    L"preceding-sibling", L"preceding", L"self"};
const std::initializer_list<const wchar_t*> FUNCTION_NAMES = {
    L"starts-with", L"substring-after", L"substring-before", L"substring", L"string-length",
    L"normalize-space", L"translate", L"local-name", L"name", L"concat", L"contains", L"floor",
    L"string", L"number", L"boolean", L"sum", L"ceiling", L"position", L"last", L"count",
    L"round", L"not", L"true", L"false"};
// Node types are stored with their parentheses.
const std::initializer_list<const wchar_t*> NODE_TYPES = {
    L"comment()", L"text()", L"processing-instruction()", L"node()"};
// clang-format on
const std::initializer_list<const wchar_t*> PATH_SEPARATORS = {L"//", L"/"};

const wchar_t BLANK = L' ';

// The text of a union being merged. Each step joins the next operand to the string value of
// the operand the previous step made (its text without enclosing quotes); the text is kept in
// one buffer and made into an operand once, so a long union costs linear time and memory.
class UnionText {
 public:
  UnionText(const String& i_Left, const String& i_Right) : m_Text(i_Left.toWide()) {
    join(i_Right);
  }
  void append(const String& i_Right) {
    cutQuota();
    join(i_Right);
  }
  String text() const { return String(m_Text.c_str() + m_Begin, length()); }

 private:
  int length() const { return static_cast<int>(m_Text.size() - m_Begin); }
  void join(const String& i_Right) {
    m_Text.push_back(L'|');
    m_Text.append(i_Right.c_str(), i_Right.length());
  }
  // As XPathExpression::CutQuota, in place.
  void cutQuota() {
    for (const wchar_t quote : {L'"', L'\''}) {
      if (length() > 0 && m_Text[m_Begin] == quote && m_Text.back() == quote) {
        if (length() == 1) {
          m_Begin = m_Text.size();
        } else {
          ++m_Begin;
          m_Text.pop_back();
        }
        return;
      }
    }
  }

  std::wstring m_Text;
  size_t m_Begin = 0;
};

}  // namespace

XPathTokenizer::XPathTokenizer(const String& i_XPath)
    : m_Tracer(pluginTracer()),
      m_XPath(String(L"(").concat(i_XPath).concat(L')')),
      m_pText(m_XPath.c_str()),
      m_Length(m_XPath.length()) {
  Trace trace(m_Tracer, "XPathTokenizer::XPathTokenizer");
  HOST_TRACE(trace, 3) << " xpath to XPathTokenizer " << i_XPath;
}

XPathTokenizer::~XPathTokenizer() = default;

TErrorCode XPathTokenizer::start() {
  Trace trace(m_Tracer, "XPathTokenizer::start");
  if (m_Length > XPATH_MAX_LENGTH) {
    reject();
  }
  const int measured = m_Status == 0 ? measure(UnionExpr, 0) : 0;
  HOST_TRACE(trace, 3) << " First Parsing ret = " << measured;
  if (measured == m_Length && m_Status == 0) {
    HOST_TRACE(trace, 3) << "ret and xpath.length() are equal ";
    emit(UnionExpr, 0);
  } else {
    HOST_TRACE(trace, 3) << "ret and xpath.length() are different";
    reject();
  }
  if (m_Status == 0) {
    mergeXPath();
    if (m_ExprVector.size() >= 2) {
      m_OutVector.assign(m_ExprVector.begin() + 1, m_ExprVector.end() - 1);
    }
  }
  HOST_TRACE(trace, 3) << "result = " << m_Status;
  return m_Status;
}

std::wstring XPathTokenizer::describeRejection() const {
  // Positions count the wrapping "(".
  return XPathRejection(std::wstring(m_pText + 1, m_Length - 2), m_Reached - 1).describe();
}

std::vector<XPathExpression*> XPathTokenizer::getExpressionVector() {
  return m_OutVector;
}

std::vector<std::unique_ptr<XPathExpression>> XPathTokenizer::releaseItems() {
  return std::move(m_Items);
}

namespace {
bool isIn(const std::initializer_list<const wchar_t*>& i_Names, const std::wstring& i_Name) {
  for (const wchar_t* pName : i_Names) {
    if (i_Name == pName) {
      return true;
    }
  }
  return false;
}
}  // namespace

bool XPathTokenizer::knowsFunction(const std::wstring& i_Name) {
  return isIn(FUNCTION_NAMES, i_Name);
}

// Only the axes the first-match lookup can find in full.
bool XPathTokenizer::knowsAxis(const std::wstring& i_Name) {
  return isIn(AXIS_NAMES, i_Name) && i_Name != L"descendant-or-self" &&
         i_Name != L"following-sibling";
}

// ---- Expressions

// UnionExpr ::= PathExpr ( "|" PathExpr )*
int XPathTokenizer::isUnionExpr(int i_Position, bool i_Consume) {
  static const std::initializer_list<const wchar_t*> OPERATORS = {L"|"};
  return operatorChain(i_Position, i_Consume, PathExpr, OPERATORS, PlainChain);
}

// PathExpr ::= FilterExpr ( ( "//" | "/" ) RelativeLocationPath )? | LocationPath
// The relative path after a filter expression emits nothing.
int XPathTokenizer::isPathExpr(int i_Position, bool i_Consume) {
  const int filter = delegate(FilterExpr, i_Position, i_Consume);
  if (filter == 0) {
    return delegate(LocationPath, i_Position, i_Consume);
  }
  const int separator = matchFirst(i_Position + filter, PATH_SEPARATORS).m_Length;
  const int relative =
      separator != 0 ? measure(RelativeLocationPath, i_Position + filter + separator) : 0;
  if (relative == 0) {
    return filter;
  }
  if (i_Consume) {
    emitToken(matchFirst(i_Position + filter, PATH_SEPARATORS).m_pText, nullptr);
  }
  return filter + separator + relative;
}

// FilterExpr ::= PrimaryExpr Predicate*
int XPathTokenizer::isFilterExpr(int i_Position, bool i_Consume) {
  int length = delegate(PrimaryExpr, i_Position, i_Consume);
  if (length == 0) {
    return 0;
  }
  while (const int predicate = delegate(Predicate, i_Position + length, i_Consume)) {
    length += predicate;
  }
  return length;
}

// OrExpr ::= AndExpr ( "or" AndExpr )*
int XPathTokenizer::isOrExpr(int i_Position, bool i_Consume) {
  // Every nested expression passes here, so this bounds the recursion. The wrapping
  // parentheses add one level to what the text itself nests.
  if (m_Nesting > XPATH_MAX_NESTING) {
    reject();
    return 0;
  }
  static const std::initializer_list<const wchar_t*> OPERATORS = {L"or"};
  ++m_Nesting;
  const int length = operatorChain(i_Position, i_Consume, AndExpr, OPERATORS, PlainChain);
  --m_Nesting;
  return length;
}

// AndExpr ::= EqualityExpr ( "and" EqualityExpr )*
int XPathTokenizer::isAndExpr(int i_Position, bool i_Consume) {
  static const std::initializer_list<const wchar_t*> OPERATORS = {L"and"};
  return operatorChain(i_Position, i_Consume, EqualityExpr, OPERATORS, AndChainSlip);
}

// EqualityExpr ::= RelationalExpr ( ( "!=" | "=" ) RelationalExpr )*
int XPathTokenizer::isEqualityExpr(int i_Position, bool i_Consume) {
  static const std::initializer_list<const wchar_t*> OPERATORS = {L"!=", L"="};
  return operatorChain(i_Position, i_Consume, RelationalExpr, OPERATORS, PlainChain);
}

// RelationalExpr ::= AdditiveExpr ( ( "<=" | ">=" | "<" | ">" ) AdditiveExpr )*
int XPathTokenizer::isRelationalExpr(int i_Position, bool i_Consume) {
  static const std::initializer_list<const wchar_t*> OPERATORS = {L"<=", L">=", L"<", L">"};
  return operatorChain(i_Position, i_Consume, AdditiveExpr, OPERATORS, PlainChain);
}

// AdditiveExpr ::= MultiplicativeExpr ( ( "+" | "-" ) MultiplicativeExpr )*
int XPathTokenizer::isAdditiveExpr(int i_Position, bool i_Consume) {
  static const std::initializer_list<const wchar_t*> OPERATORS = {L"+", L"-"};
  return operatorChain(i_Position, i_Consume, MultiplicativeExpr, OPERATORS, PlainChain);
}

// MultiplicativeExpr ::= UnaryExpr ( ( "*" | "div" | "mod" ) UnaryExpr )*
int XPathTokenizer::isMultiplicativeExpr(int i_Position, bool i_Consume) {
  static const std::initializer_list<const wchar_t*> OPERATORS = {L"*", L"div", L"mod"};
  return operatorChain(i_Position, i_Consume, UnaryExpr, OPERATORS, MultiplicativeChainRetry);
}

// UnaryExpr ::= "-"* UnionExpr
// An odd number of signs emits ( 0 - UnionExpr ), the 0 a negative zero.
int XPathTokenizer::isUnaryExpr(int i_Position, bool i_Consume) {
  int signs = 0;
  int length = 0;
  while (const int sign = isCharacter(i_Position + length, L"-", false)) {
    length += sign;
    ++signs;
  }
  const int operand = measure(UnionExpr, i_Position + length);
  if (operand == 0) {
    return 0;
  }
  if (i_Consume) {
    const bool odd = signs % 2 != 0;
    negativeNumberEvaluate(odd);
    emit(UnionExpr, i_Position + length);
    if (odd) {
      emitToken(L")", nullptr);
    }
  }
  return length + operand;
}

// Expr ::= OrExpr
int XPathTokenizer::isExpr(int i_Position, bool i_Consume) {
  return delegate(OrExpr, i_Position, i_Consume);
}

// PrimaryExpr ::= VariableReference | "(" Expr ")" | FunctionCall | Literal | Number
int XPathTokenizer::isPrimaryExpr(int i_Position, bool i_Consume) {
  static const std::initializer_list<Part> GROUP = {L"(", Expr, L")"};
  int length = delegate(VariableReference, i_Position, i_Consume);
  length |= sequence(i_Position, i_Consume, GROUP);
  length |= delegate(FunctionCall, i_Position, i_Consume);
  length |= delegate(Literal, i_Position, i_Consume);
  return length | delegate(Number, i_Position, i_Consume);
}

// FunctionCall ::= FunctionName "(" ( Argument ( "," Argument )* )? ")"
// The "(" is made with the function as its neighbour, which marks it as opening an argument
// list; the function's argument count becomes the number of arguments written.
int XPathTokenizer::isFunctionCall(int i_Position, bool i_Consume) {
  const int name = measure(FunctionName, i_Position);
  const int open = name != 0 ? isCharacter(i_Position + name, L"(", false) : 0;
  if (open == 0) {
    return 0;
  }
  XPathOperator* pFunction = nullptr;
  if (i_Consume) {
    emit(FunctionName, i_Position);
    XPathExpression* pName = m_ExprVector.back();
    pFunction = dynamic_cast<XPathOperator*>(pName);
    emitToken(L"(", pName);
  }
  int length = name + open;
  int arguments = 0;
  int argument = measure(Argument, i_Position + length);
  while (argument != 0) {
    if (i_Consume) {
      emit(Argument, i_Position + length);
      if (pFunction != nullptr) {
        pFunction->setArgumentsCount(++arguments);
      }
    }
    length += argument;
    const int comma = isCharacter(i_Position + length, L",", false);
    argument = comma != 0 ? measure(Argument, i_Position + length + comma) : 0;
    if (argument != 0) {
      length += isCharacter(i_Position + length, L",", i_Consume);
    }
  }
  const int close = isCharacter(i_Position + length, L")", false);
  if (close == 0) {
    return 0;
  }
  return length + isCharacter(i_Position + length, L")", i_Consume);
}

// Argument ::= Expr
int XPathTokenizer::isArgument(int i_Position, bool i_Consume) {
  return delegate(Expr, i_Position, i_Consume);
}

// ---- Location paths: one operand with the whole text, blanks before it included.

// LocationPath ::= RelativeLocationPath | AbsoluteLocationPath
int XPathTokenizer::isLocationPath(int i_Position, bool i_Consume) {
  return operandOfFirst(i_Position, i_Consume, RelativeLocationPath, AbsoluteLocationPath,
                        KeepBlanks);
}

// AbsoluteLocationPath ::= AbbreviatedAbsoluteLocationPath | "/" RelativeLocationPath
int XPathTokenizer::isAbsoluteLocationPath(int i_Position, bool) {
  static const std::initializer_list<Part> PARTS = {L"/", RelativeLocationPath};
  return measure(AbbreviatedAbsoluteLocationPath, i_Position) | sequence(i_Position, false, PARTS);
}

// RelativeLocationPath ::= Step ( ( "//" | "/" ) Step )*
int XPathTokenizer::isRelativeLocationPath(int i_Position, bool) {
  return operatorChain(i_Position, false, Step, PATH_SEPARATORS, PlainChain);
}

// AbbreviatedAbsoluteLocationPath ::= "//" RelativeLocationPath
int XPathTokenizer::isAbbreviatedAbsoluteLocationPath(int i_Position, bool) {
  static const std::initializer_list<Part> PARTS = {L"//", RelativeLocationPath};
  return sequence(i_Position, false, PARTS);
}

// Step ::= AxisSpecifier NodeTest Predicate* | AbbreviatedStep
int XPathTokenizer::isStep(int i_Position, bool) {
  const int axis = measure(AxisSpecifier, i_Position);
  int step = measure(NodeTest, i_Position + axis);
  if (step != 0) {
    step += axis;
    while (const int predicate = measure(Predicate, i_Position + step)) {
      step += predicate;
    }
  }
  return step | measure(AbbreviatedStep, i_Position);
}

// AxisSpecifier ::= AxisName "::"? | AbbreviatedAxisSpecifier | (empty)
// Deliberately counts an axis name that no "::" follows.
int XPathTokenizer::isAxisSpecifier(int i_Position, bool) {
  int axis = measure(AxisName, i_Position);
  if (axis != 0) {
    axis += isCharacter(i_Position + axis, L"::", false);
  }
  return axis | measure(AbbreviatedAxisSpecifier, i_Position);
}

// AxisName ::= the first entry of AXIS_NAMES the text continues with
int XPathTokenizer::isAxisName(int i_Position, bool) {
  return matchFirst(i_Position, AXIS_NAMES).m_Length;
}

// AbbreviatedAxisSpecifier ::= "@"
int XPathTokenizer::isAbbreviatedAxisSpecifier(int i_Position, bool) {
  return isCharacter(i_Position, L"@", false);
}

// AbbreviatedStep ::= ".." | "."
int XPathTokenizer::isAbbreviatedStep(int i_Position, bool) {
  const int parent = isCharacter(i_Position, L"..", false);
  return parent != 0 ? parent : isCharacter(i_Position, L".", false);
}

// NodeTest ::= NodeType | NameTest | "processing-instruction" "(" Literal ")"
int XPathTokenizer::isNodeTest(int i_Position, bool) {
  static const std::initializer_list<Part> INSTRUCTION = {L"processing-instruction", L"(", Literal,
                                                          L")"};
  return measure(NodeType, i_Position) | measure(NameTest, i_Position) |
         sequence(i_Position, false, INSTRUCTION);
}

// NodeType ::= the first entry of NODE_TYPES ("comment()", "text()", ...) the text
// continues with
int XPathTokenizer::isNodeType(int i_Position, bool) {
  return matchFirst(i_Position, NODE_TYPES).m_Length;
}

// NameTest ::= "*" | NCName ":" "*" | QName   (the first that matches)
int XPathTokenizer::isNameTest(int i_Position, bool) {
  static const std::initializer_list<Part> ANY_LOCAL = {NCName, L":", L"*"};
  if (const int any = isCharacter(i_Position, L"*", false)) {
    return any;
  }
  if (const int anyLocal = sequence(i_Position, false, ANY_LOCAL)) {
    return anyLocal;
  }
  return measure(QName, i_Position);
}

// Predicate ::= "[" PredicateExpr "]"
int XPathTokenizer::isPredicate(int i_Position, bool i_Consume) {
  static const std::initializer_list<Part> PARTS = {L"[", PredicateExpr, L"]"};
  return sequence(i_Position, i_Consume, PARTS);
}

// PredicateExpr ::= Expr
int XPathTokenizer::isPredicateExpr(int i_Position, bool i_Consume) {
  return delegate(Expr, i_Position, i_Consume);
}

// ---- Tokens. Their operands carry their own text, without the blanks before it.

// Literal ::= '"' [^"]* '"' | "'" [^']* "'"
int XPathTokenizer::isLiteral(int i_Position, bool i_Consume) {
  const int start = i_Position + countBlanks(i_Position);
  const wchar_t quote = charAt(start);
  if (quote != L'"' && quote != L'\'') {
    return 0;
  }
  int end = start + 1;
  while (end < m_Length && charAt(end) != quote) {
    ++end;
  }
  if (end >= m_Length) {
    return 0;
  }
  const int length = end + 1 - i_Position;
  if (i_Consume) {
    emitOperand(i_Position, length, SkipBlanks);
  }
  return length;
}

// Number ::= Digits ( "." Digits? )?
// A number starts with a digit: ".5" is not one.
int XPathTokenizer::isNumber(int i_Position, bool i_Consume) {
  const int blanks = countBlanks(i_Position);
  const int digits = measure(Digits, i_Position + blanks);
  if (digits == 0) {
    return 0;
  }
  int length = blanks + digits;
  if (const int point = isCharacter(i_Position + length, L".", false)) {
    length += point;
    length += measure(Digits, i_Position + length);
  }
  if (i_Consume) {
    emitOperand(i_Position, length, SkipBlanks);
  }
  return length;
}

// Digits ::= Digit+
int XPathTokenizer::isDigits(int i_Position, bool) {
  int length = 0;
  while (isDigit(i_Position + length, false) != 0) {
    ++length;
  }
  return length;
}

// FunctionName ::= the first entry of FUNCTION_NAMES the text continues with
// Emits the function's operator; a function call always has "(" next.
int XPathTokenizer::isFunctionName(int i_Position, bool i_Consume) {
  const Match name = matchFirst(i_Position, FUNCTION_NAMES);
  if (i_Consume && name.m_Length != 0) {
    addItem(XPathExpression::create(String(name.m_pText), String(L"("), nullptr));
  }
  return name.m_Length;
}

// VariableReference ::= "$" QName   (recognised; no variable is ever bound)
int XPathTokenizer::isVariableReference(int i_Position, bool i_Consume) {
  static const std::initializer_list<Part> PARTS = {L"$", QName};
  return sequence(i_Position, i_Consume, PARTS);
}

// QName ::= PrefixName | UnprefixedName   (emitted as one operand)
int XPathTokenizer::isQName(int i_Position, bool i_Consume) {
  return operandOfFirst(i_Position, i_Consume, PrefixName, UnprefixedName, SkipBlanks);
}

// PrefixName ::= Prefix ":" LocalPart
int XPathTokenizer::isPrefixName(int i_Position, bool) {
  static const std::initializer_list<Part> PARTS = {Prefix, L":", LocalPart};
  return sequence(i_Position, false, PARTS);
}

// UnprefixedName ::= LocalPart
int XPathTokenizer::isUnprefixedName(int i_Position, bool) {
  return measure(LocalPart, i_Position);
}

// Prefix ::= NCName
int XPathTokenizer::isPrefix(int i_Position, bool) {
  return measure(NCName, i_Position);
}

// LocalPart ::= NCName
int XPathTokenizer::isLocalPart(int i_Position, bool) {
  return measure(NCName, i_Position);
}

// NCName ::= NCNameStartChar NCNameChar*   (after blanks)
int XPathTokenizer::isNCName(int i_Position, bool i_Consume) {
  const int blanks = countBlanks(i_Position);
  const int first = isNCNameStartChar(i_Position + blanks, false);
  if (first == 0) {
    return 0;
  }
  int length = blanks + first;
  while (const int next = isNCNameChar(i_Position + length, false)) {
    length += next;
  }
  if (i_Consume) {
    emitOperand(i_Position, length, SkipBlanks);
  }
  return length;
}

int XPathTokenizer::isCharacter(int i_Position, const wchar_t* i_pLiteral, bool i_Consume) {
  Trace trace(m_Tracer, "XPathTokenizer::isCharacter");
  const int length = matchFirst(i_Position, {i_pLiteral}).m_Length;
  if (i_Consume && length != 0) {
    emitToken(i_pLiteral, nullptr);
  }
  HOST_TRACE(trace, 3) << "isCharacter return value = " << length;
  return length;
}

// ---- XML name character classes

// NCNameStartChar ::= Letter | "_"
int XPathTokenizer::isNCNameStartChar(int i_Position, bool i_Consume) {
  if (const int letter = isLetter(i_Position, i_Consume)) {
    return letter;
  }
  return isCharacter(i_Position, L"_", i_Consume);
}

// NCNameChar ::= NameChar, but not ":" (nor blanks followed by ":")
int XPathTokenizer::isNCNameChar(int i_Position, bool i_Consume) {
  if (isCharacter(i_Position, L":", false) != 0) {
    return 0;
  }
  return isNameChar(i_Position, i_Consume);
}

// NameChar ::= Letter | Digit | "." | "-" | "_" | ":" | CombiningChar | Extender
// The separators skip blanks before them, so "a -b" is one name.
int XPathTokenizer::isNameChar(int i_Position, bool i_Consume) {
  if (const int letter = isLetter(i_Position, i_Consume)) {
    return letter;
  }
  if (const int digit = isDigit(i_Position, i_Consume)) {
    return digit;
  }
  for (const wchar_t* pSeparator : {L".", L"-", L"_", L":"}) {
    if (const int separator = isCharacter(i_Position, pSeparator, i_Consume)) {
      return separator;
    }
  }
  if (const int combining = isCombiningChar(i_Position, i_Consume)) {
    return combining;
  }
  return isExtender(i_Position, i_Consume);
}

// Letter ::= BaseChar | Ideographic
int XPathTokenizer::isLetter(int i_Position, bool i_Consume) {
  return isBaseChar(i_Position, i_Consume) != 0 ? 1 : isIdeographic(i_Position, i_Consume);
}

int XPathTokenizer::isBaseChar(int i_Position, bool) {
  return XPathNameCharClasses::isBaseChar(charAt(i_Position)) ? 1 : 0;
}

int XPathTokenizer::isIdeographic(int i_Position, bool) {
  return XPathNameCharClasses::isIdeographic(charAt(i_Position)) ? 1 : 0;
}

int XPathTokenizer::isCombiningChar(int i_Position, bool) {
  return XPathNameCharClasses::isCombiningChar(charAt(i_Position)) ? 1 : 0;
}

int XPathTokenizer::isDigit(int i_Position, bool) {
  return XPathNameCharClasses::isDigit(charAt(i_Position)) ? 1 : 0;
}

int XPathTokenizer::isExtender(int i_Position, bool) {
  return XPathNameCharClasses::isExtender(charAt(i_Position)) ? 1 : 0;
}

// ---- Emission

void XPathTokenizer::mergeXPath() {
  Trace trace(m_Tracer, "XPathTokenizer::mergeXPath");
  HOST_TRACE(trace, 3) << "m_ExprVector.size() " << static_cast<unsigned long>(m_ExprVector.size());
  if (m_ExprVector.size() < 5) {
    return;
  }
  std::vector<XPathExpression*> merged;
  std::unique_ptr<UnionText> pUnion;  // the union that the last merged operand will hold
  const auto closeUnion = [this, &merged, &pUnion]() {
    if (pUnion != nullptr) {
      merged.push_back(own(new XPathArgument(pUnion->text())));
      pUnion.reset();
    }
  };
  for (size_t index = 0; index < m_ExprVector.size(); ++index) {
    const bool isUnion = m_ExprVector[index]->GetExpressionString().compareTo(L"|") == 0;
    if (isUnion && index != 0 && index + 1 != m_ExprVector.size()) {
      const String right = m_ExprVector[index + 1]->GetExpressionString();
      if (pUnion != nullptr) {
        pUnion->append(right);
      } else {
        pUnion.reset(new UnionText(merged.back()->GetExpressionString(), right));
        merged.pop_back();
      }
      ++index;
    } else {
      closeUnion();
      merged.push_back(m_ExprVector[index]);
    }
  }
  closeUnion();
  m_ExprVector.swap(merged);
}

void XPathTokenizer::negativeNumberEvaluate(bool i_Odd) {
  if (!i_Odd) {
    return;
  }
  emitToken(L"(", nullptr);
  addItem(new XPathArgument(String(L"0")))->setNegativeZero(true);
  emitToken(L"-", nullptr);
}

// ---- Machinery

int XPathTokenizer::measure(Production i_Production, int i_Position) {
  // Nothing matches past the end of the text.
  if (i_Position >= m_Length) {
    return 0;
  }
  const long long key = static_cast<long long>(i_Position) * PRODUCTION_COUNT + i_Production;
  int length = recall(key);
  if (length < 0) {
    length = run(i_Production, i_Position, false);
    remember(key, length);
    if (length > 0 && i_Position + length > m_Reached) {
      m_Reached = i_Position + length;
    }
  }
  return length;
}

// Kept out of measure(), whose frame is on every level of the recursion.
int XPathTokenizer::recall(long long i_Key) const {
  const auto found = m_Measured.find(i_Key);
  return found != m_Measured.end() ? found->second : -1;
}

void XPathTokenizer::remember(long long i_Key, int i_Length) {
  m_Measured.emplace(i_Key, i_Length);
}

void XPathTokenizer::emit(Production i_Production, int i_Position) {
  if (measure(i_Production, i_Position) != 0) {
    run(i_Production, i_Position, true);
  }
}

// A switch rather than a table of member pointers: the dispatch sits on every level of the
// recursion, and this keeps its stack frame small.
int XPathTokenizer::run(Production i_Production, int i_Position, bool i_Consume) {
  traceProduction(i_Production, i_Position, i_Consume);
  switch (i_Production) {
    case UnionExpr:
      return isUnionExpr(i_Position, i_Consume);
    case PathExpr:
      return isPathExpr(i_Position, i_Consume);
    case FilterExpr:
      return isFilterExpr(i_Position, i_Consume);
    case OrExpr:
      return isOrExpr(i_Position, i_Consume);
    case AndExpr:
      return isAndExpr(i_Position, i_Consume);
    case EqualityExpr:
      return isEqualityExpr(i_Position, i_Consume);
    case RelationalExpr:
      return isRelationalExpr(i_Position, i_Consume);
    case AdditiveExpr:
      return isAdditiveExpr(i_Position, i_Consume);
    case MultiplicativeExpr:
      return isMultiplicativeExpr(i_Position, i_Consume);
    case UnaryExpr:
      return isUnaryExpr(i_Position, i_Consume);
    case Expr:
      return isExpr(i_Position, i_Consume);
    case PrimaryExpr:
      return isPrimaryExpr(i_Position, i_Consume);
    case FunctionCall:
      return isFunctionCall(i_Position, i_Consume);
    case Argument:
      return isArgument(i_Position, i_Consume);
    case LocationPath:
      return isLocationPath(i_Position, i_Consume);
    case AbsoluteLocationPath:
      return isAbsoluteLocationPath(i_Position, i_Consume);
    case RelativeLocationPath:
      return isRelativeLocationPath(i_Position, i_Consume);
    case AbbreviatedAbsoluteLocationPath:
      return isAbbreviatedAbsoluteLocationPath(i_Position, i_Consume);
    case Step:
      return isStep(i_Position, i_Consume);
    case AxisSpecifier:
      return isAxisSpecifier(i_Position, i_Consume);
    case AxisName:
      return isAxisName(i_Position, i_Consume);
    case AbbreviatedAxisSpecifier:
      return isAbbreviatedAxisSpecifier(i_Position, i_Consume);
    case AbbreviatedStep:
      return isAbbreviatedStep(i_Position, i_Consume);
    case NodeTest:
      return isNodeTest(i_Position, i_Consume);
    case NodeType:
      return isNodeType(i_Position, i_Consume);
    case NameTest:
      return isNameTest(i_Position, i_Consume);
    case Predicate:
      return isPredicate(i_Position, i_Consume);
    case PredicateExpr:
      return isPredicateExpr(i_Position, i_Consume);
    case Literal:
      return isLiteral(i_Position, i_Consume);
    case Number:
      return isNumber(i_Position, i_Consume);
    case Digits:
      return isDigits(i_Position, i_Consume);
    case FunctionName:
      return isFunctionName(i_Position, i_Consume);
    case VariableReference:
      return isVariableReference(i_Position, i_Consume);
    case QName:
      return isQName(i_Position, i_Consume);
    case PrefixName:
      return isPrefixName(i_Position, i_Consume);
    case UnprefixedName:
      return isUnprefixedName(i_Position, i_Consume);
    case Prefix:
      return isPrefix(i_Position, i_Consume);
    case LocalPart:
      return isLocalPart(i_Position, i_Consume);
    case NCName:
      return isNCName(i_Position, i_Consume);
    case PRODUCTION_COUNT:
      break;
  }
  return 0;
}

void XPathTokenizer::traceProduction(Production i_Production, int i_Position, bool i_Consume) {
  Trace trace(m_Tracer, productionName(i_Production));
  HOST_TRACE(trace, 3) << " Offset = " << i_Position << ", consume = " << i_Consume;
}

const char* XPathTokenizer::productionName(Production i_Production) {
  switch (i_Production) {
    case UnionExpr:
      return "XPathTokenizer::isUnionExpr";
    case PathExpr:
      return "XPathTokenizer::isPathExpr";
    case FilterExpr:
      return "XPathTokenizer::isFilterExpr";
    case OrExpr:
      return "XPathTokenizer::isOrExpr";
    case AndExpr:
      return "XPathTokenizer::isAndExpr";
    case EqualityExpr:
      return "XPathTokenizer::isEqualityExpr";
    case RelationalExpr:
      return "XPathTokenizer::isRelationalExpr";
    case AdditiveExpr:
      return "XPathTokenizer::isAdditiveExpr";
    case MultiplicativeExpr:
      return "XPathTokenizer::isMultiplicativeExpr";
    case UnaryExpr:
      return "XPathTokenizer::isUnaryExpr";
    case Expr:
      return "XPathTokenizer::isExpr";
    case PrimaryExpr:
      return "XPathTokenizer::isPrimaryExpr";
    case FunctionCall:
      return "XPathTokenizer::isFunctionCall";
    case Argument:
      return "XPathTokenizer::isArgument";
    case LocationPath:
      return "XPathTokenizer::isLocationPath";
    case AbsoluteLocationPath:
      return "XPathTokenizer::isAbsoluteLocationPath";
    case RelativeLocationPath:
      return "XPathTokenizer::isRelativeLocationPath";
    case AbbreviatedAbsoluteLocationPath:
      return "XPathTokenizer::isAbbreviatedAbsoluteLocationPath";
    case Step:
      return "XPathTokenizer::isStep";
    case AxisSpecifier:
      return "XPathTokenizer::isAxisSpecifier";
    case AxisName:
      return "XPathTokenizer::isAxisName";
    case AbbreviatedAxisSpecifier:
      return "XPathTokenizer::isAbbreviatedAxisSpecifier";
    case AbbreviatedStep:
      return "XPathTokenizer::isAbbreviatedStep";
    case NodeTest:
      return "XPathTokenizer::isNodeTest";
    case NodeType:
      return "XPathTokenizer::isNodeType";
    case NameTest:
      return "XPathTokenizer::isNameTest";
    case Predicate:
      return "XPathTokenizer::isPredicate";
    case PredicateExpr:
      return "XPathTokenizer::isPredicateExpr";
    case Literal:
      return "XPathTokenizer::isLiteral";
    case Number:
      return "XPathTokenizer::isNumber";
    case Digits:
      return "XPathTokenizer::isDigits";
    case FunctionName:
      return "XPathTokenizer::isFunctionName";
    case VariableReference:
      return "XPathTokenizer::isVariableReference";
    case QName:
      return "XPathTokenizer::isQName";
    case PrefixName:
      return "XPathTokenizer::isPrefixName";
    case UnprefixedName:
      return "XPathTokenizer::isUnprefixedName";
    case Prefix:
      return "XPathTokenizer::isPrefix";
    case LocalPart:
      return "XPathTokenizer::isLocalPart";
    case NCName:
      return "XPathTokenizer::isNCName";
    case PRODUCTION_COUNT:
      break;
  }
  return "XPathTokenizer";
}

int XPathTokenizer::delegate(Production i_Production, int i_Position, bool i_Consume) {
  if (i_Consume) {
    emit(i_Production, i_Position);
  }
  return measure(i_Production, i_Position);
}

int XPathTokenizer::sequence(int i_Position, bool i_Consume,
                             const std::initializer_list<Part>& i_Parts) {
  int length = 0;
  for (const Part* pPart = i_Parts.begin(); pPart != i_Parts.end(); ++pPart) {
    const int part = pPart->m_pLiteral != nullptr
                         ? isCharacter(i_Position + length, pPart->m_pLiteral, false)
                         : measure(pPart->m_Production, i_Position + length);
    if (part == 0) {
      return 0;
    }
    length += part;
  }
  if (i_Consume) {
    int at = i_Position;
    for (const Part* pPart = i_Parts.begin(); pPart != i_Parts.end(); ++pPart) {
      at += pPart->m_pLiteral != nullptr ? isCharacter(at, pPart->m_pLiteral, true)
                                         : delegate(pPart->m_Production, at, true);
    }
  }
  return length;
}

int XPathTokenizer::operandOfFirst(int i_Position, bool i_Consume, Production i_First,
                                   Production i_Second, Blanks i_Blanks) {
  int length = measure(i_First, i_Position);
  if (length == 0) {
    length = measure(i_Second, i_Position);
  }
  if (i_Consume && length != 0) {
    emitOperand(i_Position, length, i_Blanks);
  }
  return length;
}

// The emitting pass deviates in two ways that are kept on purpose. AndExpr advances past each
// further "and" by the length of its first operand instead of that of the "and" (the rest of
// the chain can be lost). MultiplicativeExpr has no way out when an operator lacks its right
// operand and would retry it forever; positions shifted by the AndExpr slip can get there, and
// the text is then rejected instead.
int XPathTokenizer::operatorChain(int i_Position, bool i_Consume, Production i_Operand,
                                  const std::initializer_list<const wchar_t*>& i_Operators,
                                  ChainEmission i_Emission) {
  const int first = delegate(i_Operand, i_Position, i_Consume);
  if (first == 0) {
    return 0;
  }
  int at = i_Position + first;
  for (;;) {
    const int operatorLength = matchFirst(at, i_Operators).m_Length;
    if (operatorLength == 0) {
      break;
    }
    const int operand = measure(i_Operand, at + operatorLength);
    if (operand == 0) {
      // An operator without its right operand ends the chain before it.
      if (i_Consume && i_Emission == MultiplicativeChainRetry) {
        reject();
      }
      break;
    }
    if (i_Consume) {
      emitToken(matchFirst(at, i_Operators).m_pText, nullptr);
      emit(i_Operand, at + operatorLength);
    }
    at += (i_Consume && i_Emission == AndChainSlip ? first : operatorLength) + operand;
  }
  return at - i_Position;
}

XPathTokenizer::Match XPathTokenizer::matchFirst(
    int i_Position, const std::initializer_list<const wchar_t*>& i_Texts) const {
  const int start = i_Position + countBlanks(i_Position);
  for (const wchar_t* pText : i_Texts) {
    int length = 0;
    while (pText[length] != 0 && charAt(start + length) == pText[length]) {
      ++length;
    }
    if (pText[length] == 0) {
      return {start - i_Position + length, pText};
    }
  }
  return {0, nullptr};
}

int XPathTokenizer::countBlanks(int i_Position) const {
  int blanks = 0;
  while (charAt(i_Position + blanks) == BLANK) {
    ++blanks;
  }
  return blanks;
}

wchar_t XPathTokenizer::charAt(int i_Position) const {
  return i_Position < m_Length ? m_pText[i_Position] : 0;
}

XPathExpression* XPathTokenizer::addItem(XPathExpression* i_pItem) {
  own(i_pItem);
  m_ExprVector.push_back(i_pItem);
  return i_pItem;
}

XPathExpression* XPathTokenizer::own(XPathExpression* i_pItem) {
  std::unique_ptr<XPathExpression> item(i_pItem);
  m_Items.push_back(std::move(item));
  return i_pItem;
}

void XPathTokenizer::emitToken(const wchar_t* i_pToken, XPathExpression* i_pPrevious) {
  addItem(XPathExpression::create(String(i_pToken), String(), i_pPrevious));
}

void XPathTokenizer::emitOperand(int i_Position, int i_Length, Blanks i_Blanks) {
  const int blanks = i_Blanks == SkipBlanks ? countBlanks(i_Position) : 0;
  addItem(new XPathArgument(m_XPath.substring(i_Position + blanks, i_Position + i_Length - 1)));
}

void XPathTokenizer::reject() {
  m_Status = XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION;
}

}  // namespace XmlPlugin
