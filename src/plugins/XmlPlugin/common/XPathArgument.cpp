#include "XPathArgument.h"

#include <cwctype>

#include "PluginTracer.h"
#include "XPath.h"
#include "XPathDirectOperand.h"
#include "XPathEvaluationContext.h"
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
  if (m_DataType == NodeSetType) {
    m_pDirect = XPathDirectOperand::recognize(i_Expression);
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

namespace {

// How many anchored forms of one operand are kept compiled: the candidates of a predicate
// mostly share their name and their parent's.
const size_t XPATH_COMPILED_PATHS_PER_OPERAND = 16;

bool isAnchorable(const String& i_Expr) {
  return !i_Expr.isEmpty() && (!i_Expr.startsWith(L"/") || i_Expr.startsWith(L"//"));
}

}  // namespace

String XPathArgument::addPrefixToXPath(const String& i_Expr, long i_Position, Node* i_pNode) {
  Trace trace(pluginTracer(), "XPathArgument::addPrefixToXPath");
  if (i_pNode == nullptr) {
    return i_Expr;
  }
  const String result =
      anchoredText(i_Expr, formatInteger(i_Position), shapeAt(i_Expr, i_pNode, i_Position));
  HOST_TRACE(trace, 3) << "Returned Expression" << result;
  return result;
}

String XPathArgument::anchoredText(const String& i_Expr, const String& i_Position,
                                   const AnchorShape& i_Shape) {
  String result;
  if (i_Shape.m_HasParent) {
    result.concat(i_Shape.m_ParentName).concat(L'/');
  }
  if (i_Shape.m_Anchored) {
    result.concat(i_Shape.m_Name).concat(L"[position()=").concat(i_Position).concat(L"]/");
  }
  return result.concat(i_Expr);
}

bool XPathArgument::AnchorShape::operator==(const AnchorShape& i_Other) const {
  return m_HasNode == i_Other.m_HasNode && m_HasParent == i_Other.m_HasParent &&
         m_Anchored == i_Other.m_Anchored && m_ParentName == i_Other.m_ParentName &&
         m_Name == i_Other.m_Name;
}

XPathArgument::AnchorShape XPathArgument::shapeAt(const String& i_Expr, const Node* i_pNode,
                                                  long i_Position) {
  AnchorShape shape;
  if (i_pNode == nullptr) {
    return shape;
  }
  shape.m_HasNode = true;
  if (i_pNode->getParent() != nullptr) {
    shape.m_HasParent = true;
    shape.m_ParentName = i_pNode->getParent()->m_Name;
  }
  if (i_Position > 0 && isAnchorable(i_Expr)) {
    shape.m_Anchored = true;
    shape.m_Name = i_pNode->m_Name;
  }
  return shape;
}

const XPathCompiledPath& XPathArgument::compiledFor(const AnchorShape& i_Shape) {
  for (const CompiledShape& compiled : m_CompiledPaths) {
    if (compiled.m_Shape == i_Shape) {
      return *compiled.m_pPath;
    }
  }
  if (m_CompiledPaths.size() >= XPATH_COMPILED_PATHS_PER_OPERAND) {
    m_CompiledPaths.erase(m_CompiledPaths.begin());
  }
  const String text = anchoredText(expressionText(), String().concat(XPATH_ANCHOR_MARK), i_Shape);
  // The names are copied out of the tree, which may go before the compiled expression.
  AnchorShape kept = i_Shape;
  kept.m_ParentName = String(i_Shape.m_ParentName.c_str(), i_Shape.m_ParentName.length());
  kept.m_Name = String(i_Shape.m_Name.c_str(), i_Shape.m_Name.length());
  m_CompiledPaths.push_back(
      CompiledShape{kept, std::unique_ptr<XPathCompiledPath>(new XPathCompiledPath(text))});
  return *m_CompiledPaths.back().m_pPath;
}

Node* XPathArgument::getXMLRootNode(Node* i_pNode) {
  Node* pRoot = i_pNode;
  while (pRoot != nullptr && pRoot->getParent() != nullptr) {
    pRoot = pRoot->getParent();
  }
  return pRoot;
}

bool XPathArgument::readsDirectly(const XPathEvaluationContext& i_Context) const {
  // Only the general path tells its steps to whoever watches.
  const Trace trace(pluginTracer(), "XPathArgument::EvaluateXPath");
  return m_pDirect && !trace.on(3) && i_Context.getObserver() == nullptr &&
         XPathDirectOperand::applies(m_StartNode, m_RootPosition);
}

TextReading XPathArgument::readAgainst(const String& i_Text, XPathEvaluationContext& io_Context) {
  if (!isDirectAttribute() || !readsDirectly(io_Context)) {
    return TextReading::undecided;
  }
  deleteOutputElements(m_OutputNodes);
  return m_pDirect->compareAttribute(m_StartNode, m_RootPosition, i_Text, io_Context);
}

void XPathArgument::EvaluateXPath(XPathEvaluationContext& io_Context) {
  Trace trace(pluginTracer(), "XPathArgument::EvaluateXPath");
  if (m_DataType != NodeSetType) {
    return;
  }
  if (readsDirectly(io_Context)) {
    m_pDirect->evaluate(m_StartNode, m_RootPosition, io_Context, m_OutputNodes);
    return;
  }
  HOST_TRACE(trace, 3) << " Datatype is NodeSetType ";
  Node* pContext = m_StartNode;
  if (pContext != nullptr && pContext->getParent() != nullptr) {
    pContext = pContext->getParent();
  }
  // The anchored text is made only to be traced: the compiled path stands for it.
  HOST_TRACE(trace, 3) << "XPath query = "
                       << addPrefixToXPath(GetExpressionString(), m_RootPosition, m_StartNode);
  const AnchorShape shape = shapeAt(expressionText(), m_StartNode, m_RootPosition);
  // A position of more than nine digits is no anchor, and a text that holds the anchor mark
  // cannot stand for one: such a path is compiled as it reads.
  std::unique_ptr<XPathCompiledPath> pExact;
  if (m_RootPosition > XPATH_MAX_ANCHOR || expressionText().indexOf(XPATH_ANCHOR_MARK) >= 0) {
    pExact.reset(new XPathCompiledPath(
        anchoredText(expressionText(), formatInteger(m_RootPosition), shape)));
  }
  const XPathCompiledPath& path = pExact ? *pExact : compiledFor(shape);
  XPath xpath(path, pExact ? 0 : m_RootPosition, io_Context);
  if (m_ItemsOnlyCounted) {
    xpath.countItemsOnly();
  }
  if (path.isAbsolute()) {
    pContext = getXMLRootNode(pContext);
  }
  // Evaluating again replaces the earlier result.
  deleteOutputElements(m_OutputNodes);
  xpath.getValues(m_OutputNodes, pContext);
  HOST_TRACE(trace, 3) << " Output node list size "
                       << static_cast<unsigned long>(m_OutputNodes.size());
}

}  // namespace XmlPlugin
