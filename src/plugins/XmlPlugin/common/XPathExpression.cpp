#include "XPathExpression.h"

#include "PluginTracer.h"
#include "XPathArgument.h"
#include "XPathFunction.h"
#include "XPathNumberText.h"
#include "XPathOperator.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

XPathExpression::XPathExpression() = default;

XPathExpression::XPathExpression(const String& i_Text)
    : m_ExpressionString(i_Text), m_UnquotedString(CutQuota(i_Text)) {}

XPathExpression::XPathExpression(double i_Value) : m_Number(i_Value) {}

XPathExpression::XPathExpression(const XPathExpression& i_Other) {
  *this = i_Other;
}

XPathExpression& XPathExpression::operator=(const XPathExpression& i_Other) {
  if (this == &i_Other) {
    return *this;
  }
  m_RootPosition = i_Other.m_RootPosition;
  m_ExpressionString = i_Other.m_ExpressionString;
  m_UnquotedString = i_Other.m_UnquotedString;
  m_Number = i_Other.m_Number;
  m_NumbType = i_Other.m_NumbType;
  m_NegativeZero = i_Other.m_NegativeZero;
  m_DataType = i_Other.m_DataType;
  // The copy keeps context copies of its own, so it outlives the source's context.
  m_OwnedStartNode.reset(i_Other.m_StartNode != nullptr ? new Node(*i_Other.m_StartNode) : nullptr);
  m_StartNode = m_OwnedStartNode.get();
  m_OwnedSiblings.reset(i_Other.m_Siblings != nullptr ? new std::list<Node*>(*i_Other.m_Siblings)
                                                      : nullptr);
  m_Siblings = m_OwnedSiblings.get();
  return *this;
}

XPathExpression::~XPathExpression() {
  deleteOutputElements(m_OutputNodes);
}

bool XPathExpression::isOperator() const {
  return false;
}

int XPathExpression::getPriority() const {
  return 0;
}

bool XPathExpression::isInfix() const {
  return false;
}

int XPathExpression::getArgumentsCount() const {
  return 0;
}

TErrorCode XPathExpression::evaluate(const std::vector<XPathExpression*>&,
                                     XPathEvaluationContext&) {
  return HOST_ERROR_NOT_SUPPORTED;
}

XPathExpression* XPathExpression::getOutputArgument() {
  return nullptr;
}

void XPathExpression::EvaluateXPath(XPathEvaluationContext&) {}

void XPathExpression::releaseOutputNodes(XPathOutputElements& io_Owner) {
  io_Owner.insert(io_Owner.end(), m_OutputNodes.begin(), m_OutputNodes.end());
  m_OutputNodes.clear();
}

void XPathExpression::SetExpressionString(const String& i_Text) {
  m_ExpressionString = i_Text;
  m_UnquotedString = CutQuota(i_Text);
}

void XPathExpression::clearValue() {
  m_StartNode = nullptr;
  m_RootPosition = 0;
  m_Siblings = nullptr;
  deleteOutputElements(m_OutputNodes);
  // A large result's storage goes too: kept between runs it made the allocator's later work
  // three times slower (count(//book) on a 10 MB catalogue, glibc). A small one stays, for a
  // predicate's next candidate.
  if (m_OutputNodes.capacity() > KEPT_OUTPUT_CAPACITY) {
    XPathOutputElements().swap(m_OutputNodes);
  }
}

String XPathExpression::CutQuota(const String& i_Text) {
  // Read in place: every computed value passes here.
  const int last = i_Text.length() - 1;
  const wchar_t first = i_Text.charAt(0);
  if (last >= 0 && (first == L'"' || first == L'\'') && i_Text.charAt(last) == first) {
    return i_Text.substring(1, last - 1);
  }
  return i_Text;
}

std::string XPathExpression::Stringtostring(const String& i_Text) {
  return i_Text.toNarrow();
}

void XPathExpression::SetExpressionNumb(const String& i_Text) {
  // A text with no numeral reads nothing and leaves the number as it was.
  const String unquoted = CutQuota(i_Text);
  readNumber(trimmedView(unquoted), m_Number);
}

double XPathExpression::GetExpressionNumb() const {
  Trace trace(pluginTracer(), "XPathExpression::GetExpressionNumb");
  // Deliberately the item count, not the number in the first node's text.
  const double result =
      m_DataType == NodeSetType ? static_cast<double>(m_OutputNodes.size()) : m_Number;
  HOST_TRACE(trace, 3) << "result = " << result;
  return result;
}

int XPathExpression::GetExpressionBool() const {
  Trace trace(pluginTracer(), "XPathExpression::GetExpressionBool");
  int result = 0;
  switch (m_DataType) {
    case StringType:
      result = GetExpressionString().isEmpty() ? 0 : 1;
      break;
    case NumberType:
    case BooleanType:
      if (m_ExpressionString.length() != m_UnquotedString.length()) {
        result = 1;  // a quoted literal, whatever it holds
      } else if (m_NumbType == Infinity || m_NumbType == NInfinity) {
        result = 1;
      } else if (m_NumbType == NaN) {
        result = 0;
      } else {
        result = GetExpressionNumb() != 0.0 ? 1 : 0;
      }
      break;
    case NodeSetType:
      result = m_OutputNodes.empty() ? 0 : 1;
      break;
  }
  HOST_TRACE(trace, 3) << "result = " << result;
  return result;
}

String XPathExpression::GetExpressionString() const {
  if (m_DataType == NumberType) {
    switch (m_NumbType) {
      case Infinity:
        return String(L"Infinity");
      case NInfinity:
        return String(L"-Infinity");
      case NaN:
        return String(L"NaN");
      case NumbType:
      case ZeroByInfinity:
        break;
    }
  }
  return m_UnquotedString;
}

XPathExpression* XPathExpression::create(const String& i_Token, const String& i_Context,
                                         XPathExpression* i_pPrevious) {
  Trace trace(pluginTracer(), "XPathExpression::create");
  XPathFunction* pFunction = XPathFunctionFactory::create(i_Token, i_Context, i_pPrevious);
  if (pFunction != nullptr) {
    HOST_TRACE(trace, 3) << " Operator created " << i_Token;
    return new XPathOperator(i_Token, i_pPrevious, pFunction);
  }
  HOST_TRACE(trace, 3) << " Argument created " << i_Token;
  return new XPathArgument(i_Token);
}

}  // namespace XmlPlugin
