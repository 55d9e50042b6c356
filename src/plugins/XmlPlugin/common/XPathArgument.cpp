#include "XPathArgument.h"

#include <cwctype>

#include "PluginTracer.h"
#include "XPath.h"
#include "XPathNumberText.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

XPathArgument::XPathArgument() = default;

XPathArgument::XPathArgument(const String& i_Expression) : XPathExpression(i_Expression) {
  Trace trace(pluginTracer(), "XPathArgument::XPathArgument");
  HOST_TRACE(trace, 3) << " Expression string " << i_Expression;
  calculateType(i_Expression);
  if (m_DataType == NumberType) {
    m_NumbType = NumbType;
    SetExpressionNumb(i_Expression);
  }
}

XPathArgument::XPathArgument(double i_Expression) : XPathExpression(i_Expression) {
  Trace trace(pluginTracer(), "XPathArgument::XPathArgument");
  m_DataType = NumberType;
  m_NumbType = NumbType;
  SetExpressionString(formatNumber(i_Expression));
  HOST_TRACE(trace, 3) << " Expression double " << GetExpression();
}

XPathArgument::~XPathArgument() = default;

void XPathArgument::calculateType(const String& i_Expression) {
  Trace trace(pluginTracer(), "XPathArgument::calculateType");
  const String unquoted = CutQuota(i_Expression);
  const bool quoted = unquoted.length() != i_Expression.length();
  if (isNumber(unquoted) != 0) {
    // Deliberately a number even when quoted: '12' is the number 12.
    m_DataType = NumberType;
  } else {
    m_DataType = quoted ? StringType : NodeSetType;
  }
  HOST_TRACE(trace, 3) << " m_DataType " << static_cast<int>(m_DataType);
}

namespace {

bool isNumeral(std::wstring_view i_Text) {
  bool negative = false;
  bool point = false;
  bool digit = false;
  bool valid = true;
  for (size_t i = 0; valid && i < i_Text.size(); ++i) {
    const wchar_t character = i_Text[i];
    if (character == L'-' && i == 0) {
      negative = true;
    } else if (character == L' ' && negative) {
      // blanks after a leading minus are allowed
    } else if (character == L'.' && !point) {
      point = true;
    } else if (std::iswdigit(static_cast<wint_t>(character)) != 0) {
      digit = true;
    } else {
      valid = false;
    }
  }
  return valid && digit;
}

}  // namespace

int XPathArgument::isNumber(const String& i_Operand) {
  Trace trace(pluginTracer(), "XPathArgument::isNumber");
  const int result = isNumeral(trimmedView(i_Operand)) ? 1 : 0;
  HOST_TRACE(trace, 3) << " isNumber result " << result;
  return result;
}

bool XPathArgument::numberOfOperand(const String& i_Text, double& o_Number) {
  const String unquoted = CutQuota(i_Text);
  const std::wstring_view numeral = trimmedView(unquoted);
  if (!isNumeral(numeral)) {
    return false;
  }
  // What a new operand of the text holds: 0 unless a numeral reads from its start.
  o_Number = 0.0;
  readNumber(numeral, o_Number);
  return true;
}

String XPathArgument::addPrefixToXPath(const String& i_Expr, long i_Position, Node* i_pNode) {
  Trace trace(pluginTracer(), "XPathArgument::addPrefixToXPath");
  if (i_pNode == nullptr) {
    return i_Expr;
  }
  const bool anchorable =
      !i_Expr.isEmpty() && (!i_Expr.startsWith(L"/") || i_Expr.startsWith(L"//"));
  String result;
  if (i_pNode->getParent() != nullptr) {
    result.concat(i_pNode->getParent()->m_Name).concat(L'/');
  }
  if (anchorable && i_Position > 0) {
    result.concat(i_pNode->m_Name)
        .concat(L"[position()=")
        .concat(formatInteger(i_Position))
        .concat(L"]/");
  }
  result.concat(i_Expr);
  HOST_TRACE(trace, 3) << "Returned Expression" << result;
  return result;
}

Node* XPathArgument::getXMLRootNode(Node* i_pNode) {
  Node* pRoot = i_pNode;
  while (pRoot != nullptr && pRoot->getParent() != nullptr) {
    pRoot = pRoot->getParent();
  }
  return pRoot;
}

void XPathArgument::EvaluateXPath(XPathEvaluationContext& io_Context) {
  Trace trace(pluginTracer(), "XPathArgument::EvaluateXPath");
  if (m_DataType != NodeSetType) {
    return;
  }
  HOST_TRACE(trace, 3) << " Datatype is NodeSetType ";
  Node* pContext = m_StartNode;
  if (pContext != nullptr && pContext->getParent() != nullptr) {
    pContext = pContext->getParent();
  }
  const String path = addPrefixToXPath(GetExpressionString(), m_RootPosition, m_StartNode);
  HOST_TRACE(trace, 3) << "XPath query = " << path;
  XPath xpath(path, io_Context);
  if (path.length() > 1 && path.charAt(0) == L'/' && path.charAt(1) != L'/') {
    pContext = getXMLRootNode(pContext);
  }
  // Evaluating again replaces the earlier result.
  deleteOutputElements(m_OutputNodes);
  xpath.getValues(m_OutputNodes, pContext);
  HOST_TRACE(trace, 3) << " Output node list size "
                       << static_cast<unsigned long>(m_OutputNodes.size());
}

}  // namespace XmlPlugin
