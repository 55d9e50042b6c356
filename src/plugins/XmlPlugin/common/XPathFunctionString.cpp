// The string functions. Parameters arrive in reverse call order: the call's last argument
// is parameter 0.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "PluginTracer.h"
#include "XPathFunction.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

// A string index computed in 64 bits, brought into the int range that String clamps.
int clampIndex(int64_t i_Index) {
  return static_cast<int>(
      std::max<int64_t>(std::numeric_limits<int>::min(),
                        std::min<int64_t>(std::numeric_limits<int>::max(), i_Index)));
}

// A position or length argument: rounded as "round" rounds, then truncated; 0 for a special
// number, whose kind the caller reads itself.
int64_t roundedIndex(const XPathExpression* i_pValue) {
  if (i_pValue->getNumbType() != NumbType) {
    return 0;
  }
  return truncateToInt32(XPathFunction_round::roundNumber(i_pValue->GetExpressionNumb()));
}

// The context node's string value; "" without a context node.
String contextString(const Node* i_pNode) {
  // An element whose one child is a text, the commonest content, reads as that text: a copy
  // of the tree's string instead of a new one.
  const NodeList* pChildren = nullptr;
  if (i_pNode != nullptr && i_pNode->getType() != TextNode &&
      i_pNode->getChildren(&pChildren) == 0 && pChildren != nullptr && pChildren->size() == 1) {
    const Node* pText = (*pChildren)[0];
    const NodeList* pTextChildren = nullptr;
    if (pText->getType() == TextNode && pText->getChildren(&pTextChildren) == 0 &&
        (pTextChildren == nullptr || pTextChildren->empty())) {
      return pText->m_Name;
    }
  }
  String text;
  XPathFunction_string::getTextFromNode(i_pNode, text);
  return text;
}

}  // namespace

// ---- string ----

void XPathFunction_string::getTextFromNode(const Node* i_pNode, String& o_Output) {
  std::vector<const Node*> pending;
  if (i_pNode != nullptr) {
    pending.push_back(i_pNode);
  }
  while (!pending.empty()) {
    const Node* pNode = pending.back();
    pending.pop_back();
    if (pNode->getType() == TextNode) {
      o_Output.concat(pNode->m_Name);
    }
    const NodeList* pChildren = nullptr;
    if (pNode->getChildren(&pChildren) == 0 && pChildren != nullptr) {
      for (size_t i = pChildren->size(); i > 0; --i) {
        pending.push_back((*pChildren)[i - 1]);
      }
    }
  }
}

String XPathFunction_string::getItemString(const XPathOutputElement* i_pItem) {
  return getItemString(i_pItem->m_Value, i_pItem->m_Node);
}

String XPathFunction_string::getItemString(const String& i_Value, const Node* i_pNode) {
  return i_Value.isEmpty() ? contextString(i_pNode) : i_Value;
}

String XPathFunction_string::getValueString(const XPathExpression* i_pValue) {
  switch (i_pValue->getDataType()) {
    case NodeSetType: {
      const XPathOutputElements& items = i_pValue->getOutputNodesList();
      return items.empty() ? String() : getItemString(items.front());
    }
    case BooleanType:
      return String(i_pValue->GetExpressionBool() == 1 ? L"true" : L"false");
    case NumberType:
    case StringType:
      break;
  }
  return i_pValue->GetExpressionString();
}

TErrorCode XPathFunction_string::evaluate() {
  Trace trace(pluginTracer(), "XPathFunction_string::evaluate");
  if (getParametersCount() == 0) {
    HOST_TRACE(trace, 3) << " getFunctionParameters = 0";
    createOutputExpression(contextString(getStartNode()));
    return 0;
  }
  const XPathExpression* pExpression = getParameter(0);
  HOST_TRACE(trace, 3) << " pExpression->GetExpressionString() = "
                       << pExpression->GetExpressionString() << " pExpression->GetDataType() = "
                       << static_cast<int>(pExpression->getDataType());
  createOutputExpression(getValueString(pExpression));
  return 0;
}

// ---- concat ----

TErrorCode XPathFunction_concat::evaluate() {
  String result;
  for (size_t i = getParametersCount(); i > 0; --i) {
    result.concat(getParameter(i - 1)->GetExpressionString());
  }
  createOutputExpression(result);
  return 0;
}

// ---- starts-with, contains, substring-before, substring-after ----

TErrorCode XPathFunction_startsWith::evaluate() {
  const String text = getParameter(1)->GetExpressionString();
  const String prefix = getParameter(0)->GetExpressionString();
  createBooleanOutput(prefix.isEmpty() || text.startsWith(prefix, 0));
  return 0;
}

TErrorCode XPathFunction_contains::evaluate() {
  const String text = getParameter(1)->GetExpressionString();
  createBooleanOutput(text.indexOf(getParameter(0)->GetExpressionString()) != -1);
  return 0;
}

TErrorCode XPathFunction_substringBefore::evaluate() {
  const String text = getParameter(1)->GetExpressionString();
  const int found = text.indexOf(getParameter(0)->GetExpressionString());
  createOutputExpression(found < 0 ? String() : text.substring(0, found - 1));
  return 0;
}

TErrorCode XPathFunction_substringAfter::evaluate() {
  const String text = getParameter(1)->GetExpressionString();
  const String separator = getParameter(0)->GetExpressionString();
  const int found = text.indexOf(separator);
  createOutputExpression(found < 0 ? String() : text.substring(found + separator.length()));
  return 0;
}

// ---- substring ----

TErrorCode XPathFunction_substring::evaluate() {
  const bool hasLength = getParametersCount() == 3;
  const String text = getParameter(hasLength ? 2 : 1)->GetExpressionString();
  const LimitType startKind = getParameter(hasLength ? 1 : 0)->getNumbType();
  const int64_t start = roundedIndex(getParameter(hasLength ? 1 : 0));
  if (!hasLength) {
    const bool empty = startKind == NaN || startKind == Infinity || startKind == NInfinity;
    createOutputExpression(empty ? String()
                                 : text.substring(clampIndex(std::max<int64_t>(start - 1, 0))));
    return 0;
  }
  const LimitType lengthKind = getParameter(0)->getNumbType();
  const int64_t length = roundedIndex(getParameter(0));
  const int64_t first = std::max<int64_t>(start, 1);
  String result;
  if (startKind == NaN || startKind == Infinity) {
    result = String();
  } else if (startKind == NInfinity && lengthKind == Infinity) {
    result = text;
  } else if (lengthKind == NaN) {
    result = String();
  } else if (lengthKind == NInfinity) {
    result = text.substring(clampIndex(first - 1), text.length());
  } else {
    // The end uses the start before it was raised to 1: substring('12345', 0, 3) is "12".
    result = text.substring(clampIndex(first - 1), clampIndex(length + start - 2));
  }
  createOutputExpression(result);
  return 0;
}

// ---- string-length, normalize-space, translate ----

TErrorCode XPathFunction_stringlength::evaluate() {
  const String text = getParametersCount() == 0 ? contextString(getStartNode())
                                                : getParameter(0)->GetExpressionString();
  createOutputExpression(static_cast<double>(text.length()), NumbType, false);
  return 0;
}

TErrorCode XPathFunction_normalizespace::evaluate() {
  Trace trace(pluginTracer(), "XPathFunction_normalizespace::evaluate");
  String text;
  if (getParametersCount() == 0) {
    HOST_TRACE(trace, 3) << "normalize-space without parameters";
    text = contextString(getStartNode());
  } else {
    HOST_TRACE(trace, 3) << "normalize-space with parameter";
    text = getParameter(0)->GetExpressionString();
  }
  HOST_TRACE(trace, 3) << "str = " << text;
  text.trim();
  // Only the space character collapses; tabs and newlines inside are kept deliberately.
  String result;
  for (int i = 0; i < text.length(); ++i) {
    if (text.charAt(i) != L' ' || i == 0 || text.charAt(i - 1) != L' ') {
      result.concat(text.charAt(i));
    }
  }
  createOutputExpression(result);
  return 0;
}

TErrorCode XPathFunction_translate::evaluate() {
  return HOST_ERROR_NOT_SUPPORTED;
}

}  // namespace XmlPlugin
