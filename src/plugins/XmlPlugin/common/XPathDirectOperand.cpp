#include "XPathDirectOperand.h"

#include <string_view>

#include "XPathCompiledPath.h"
#include "XPathEvaluationContext.h"
#include "XPathFunction.h"
#include "XPathPredicate.h"
#include "XmlPluginConstants.h"

namespace XmlPlugin {

namespace {

bool isPlainNameCharacter(wchar_t i_Character, bool i_First) {
  const bool letter = (i_Character >= L'a' && i_Character <= L'z') ||
                      (i_Character >= L'A' && i_Character <= L'Z') || i_Character == L'_';
  const bool other = (i_Character >= L'0' && i_Character <= L'9') || i_Character == L'-';
  return letter || (!i_First && other);
}

bool isPlainName(const String& i_Text, int i_From) {
  if (i_From >= i_Text.length()) {
    return false;
  }
  for (int at = i_From; at < i_Text.length(); ++at) {
    if (!isPlainNameCharacter(i_Text.charAt(at), at == i_From)) {
      return false;
    }
  }
  return true;
}

// Element names reach the anchored path text as they are, where two colons would read as an
// axis: names with a colon are left to the general path.
bool readsAsName(const String& i_Name) {
  // Read in place: every candidate of a predicate asks, for its own name and its parent's.
  const std::wstring_view name(i_Name.c_str(), static_cast<size_t>(i_Name.length()));
  return !name.empty() && name.find(L':') == std::wstring_view::npos;
}

}  // namespace

std::unique_ptr<XPathDirectOperand> XPathDirectOperand::recognize(const String& i_Text) {
  const bool attribute = i_Text.startsWith(String(L"@"));
  if (!isPlainName(i_Text, attribute ? 1 : 0)) {
    return nullptr;
  }
  return std::unique_ptr<XPathDirectOperand>(
      new XPathDirectOperand(attribute ? i_Text.substring(1) : i_Text, attribute));
}

XPathDirectOperand::XPathDirectOperand(const String& i_Name, bool i_Attribute)
    : m_ChildName(i_Attribute ? String() : i_Name),
      m_Leaf(i_Attribute ? i_Name : String(L"endfunction()"), i_Attribute ? attribute : child,
             XPathPredicates()) {}

bool XPathDirectOperand::applies(const Node* i_pCandidate, long i_Position) {
  const Node* pParent = i_pCandidate != nullptr ? i_pCandidate->getParent() : nullptr;
  return pParent != nullptr && i_Position > 0 && i_Position <= XPATH_MAX_ANCHOR &&
         readsAsName(i_pCandidate->m_Name) && readsAsName(pParent->m_Name);
}

template <typename Read>
bool XPathDirectOperand::reachAnchored(const Node* i_pCandidate, long i_Position,
                                       XPathEvaluationContext& io_Context, Read i_Read) {
  // The parent tried against the path's first step, then its anchored child.
  if (!io_Context.admit(1)) {
    return false;
  }
  const XPathEvaluationContext::Nesting parentStep(io_Context);
  Node* pAnchored = nullptr;
  if (io_Context.nthChild(i_pCandidate->getParent(), i_pCandidate->m_Name, i_Position, pAnchored) !=
      0) {
    return false;
  }
  if (pAnchored == nullptr) {
    return true;
  }
  if (!io_Context.admit(1)) {
    return false;
  }
  const XPathEvaluationContext::Nesting anchoredStep(io_Context);
  return i_Read(pAnchored);
}

void XPathDirectOperand::evaluate(const Node* i_pCandidate, long i_Position,
                                  XPathEvaluationContext& io_Context,
                                  XPathOutputElements& o_Items) const {
  deleteOutputElements(o_Items);
  bool done = false;
  {
    XPathOutputCollector collector(o_Items);
    done = reachAnchored(i_pCandidate, i_Position, io_Context, [&](Node* i_pAnchored) {
      return readsAttribute() ? evaluateLeaf(i_pAnchored, collector, io_Context)
                              : evaluateChildren(i_pAnchored, collector, io_Context);
    });
  }
  if (!done || io_Context.isRefused()) {
    deleteOutputElements(o_Items);
  }
}

TextReading XPathDirectOperand::compareAttribute(const Node* i_pCandidate, long i_Position,
                                                 const String& i_Text,
                                                 XPathEvaluationContext& io_Context) const {
  TextReading reading = TextReading::none;
  // evaluateLeaf's work, the item's string read instead of made.
  reachAnchored(i_pCandidate, i_Position, io_Context, [&](Node* i_pAnchored) {
    String value;
    int32_t number = 0;
    if (io_Context.admit(1) && m_Leaf.readAttribute(i_pAnchored, value, number, io_Context) == 0 &&
        io_Context.admit(XPATH_ITEM_COST)) {
      reading = XPathFunction_string::getItemString(value, i_pAnchored) == i_Text
                    ? TextReading::equal
                    : TextReading::different;
    }
    return true;
  });
  return io_Context.isRefused() ? TextReading::none : reading;
}

bool XPathDirectOperand::evaluateChildren(Node* i_pAnchored, XPathOutputCollector& io_Output,
                                          XPathEvaluationContext& io_Context) const {
  const NodeList* pChildren = nullptr;
  i_pAnchored->getChildren(&pChildren);
  for (size_t i = 0; pChildren != nullptr && i < pChildren->size(); ++i) {
    Node* pChild = (*pChildren)[i];
    if (pChild->getType() != ElementNode) {
      continue;
    }
    // Listed, then tried against the step.
    if (!io_Context.admit(2)) {
      return false;
    }
    const XPathEvaluationContext::Nesting childStep(io_Context);
    if (pChild->m_Name == m_ChildName && !evaluateLeaf(pChild, io_Output, io_Context)) {
      return false;
    }
  }
  return true;
}

bool XPathDirectOperand::evaluateLeaf(Node* i_pNode, XPathOutputCollector& io_Output,
                                      XPathEvaluationContext& io_Context) const {
  if (!io_Context.admit(1)) {
    return false;
  }
  const size_t before = io_Output.items().size();
  const TErrorCode result = m_Leaf.evaluateNode(i_pNode, io_Output, io_Context);
  return (result == 0 || result == XML_PLUGIN_ERROR_XPATH_NOT_FOUND) &&
         io_Context.admit(XPATH_ITEM_COST * (io_Output.items().size() - before));
}

}  // namespace XmlPlugin
