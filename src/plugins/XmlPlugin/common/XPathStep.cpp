#include "XPathStep.h"

#include <cassert>
#include <functional>
#include <string_view>

#include "XPathEvaluationContext.h"
#include "XPathNodeListSpare.h"
#include "XPathNumberText.h"
#include "XPathPredicate.h"
#include "XmlPluginConstants.h"

namespace XmlPlugin {

namespace {

// The host's second answer for an attribute that is not there, beside -1001.
const TErrorCode HOST_ERROR_ENTRY_MISSING = -1006;

// The first i_Count characters.
String prefix(const String& i_Text, int i_Count) {
  return i_Count > 0 ? i_Text.substring(0, i_Count - 1) : String();
}

// The children of a node; o_pChildren stays null when there are none or on failure.
TErrorCode childList(const Node* i_Node, const NodeList*& o_pChildren) {
  o_pChildren = nullptr;
  if (i_Node == nullptr) {
    return HOST_ERROR_BAD_ARGUMENT;
  }
  const TErrorCode result = i_Node->getChildren(&o_pChildren);
  if (result != 0) {
    o_pChildren = nullptr;
  }
  return result;
}

std::unique_ptr<XPathOutputElement> makeItem(const String& i_NodeText, const String& i_Value,
                                             int32_t i_Index, Node* i_pNode) {
  return std::unique_ptr<XPathOutputElement>(
      new XPathOutputElement(i_NodeText, i_Value, i_Index, i_pNode));
}

// The text of an element without text, and the value of an element item: one string for all.
const String& noText() {
  static const String s_Empty;
  return s_Empty;
}

struct AxisName {
  const wchar_t* m_Name;
  StepAxis m_Axis;
};

const AxisName AXIS_NAMES[] = {
    {L"attribute", attribute},
    {L"child", child},
    {L"descendant", descendant},
    {L"descendant-or-self", descendant_or_self},
    {L"following-sibling", following_sibling},
    {L"preceding-sibling", preceding_sibling},
    {L"preceding", preceding},
    {L"following", following},
    {L"parent", parent},
    {L"ancestor", ancestor},
    {L"ancestor-or-self", ancestor_or_self},
    {L"self", self},
};

}  // namespace

XPathOutputCollector::XPathOutputCollector(XPathOutputElements& io_Items, bool i_OnlyCounted)
    : m_Items(io_Items), m_OnlyCounted(i_OnlyCounted) {
  for (const XPathOutputElement* pItem : m_Items) {
    keepNumber(pItem->m_Index);
  }
}

bool XPathOutputCollector::keepNumber(int32_t i_Number) {
  if (m_InOrder && (!m_HasLast || i_Number > m_Last)) {
    m_Last = i_Number;
    m_HasLast = true;
    return true;
  }
  if (m_InOrder) {
    m_InOrder = false;
    for (const XPathOutputElement* pItem : m_Items) {
      m_Numbers.insert(pItem->m_Index);
    }
  }
  return m_Numbers.insert(i_Number);
}

size_t hashText(const String& i_Text) {
  return std::hash<std::wstring_view>()(std::wstring_view(i_Text.c_str(), i_Text.length()));
}

void XPathOutputCollector::add(std::unique_ptr<XPathOutputElement> i_pItem) {
  if (keepNumber(i_pItem->m_Index)) {
    m_Items.push_back(i_pItem.get());
    i_pItem.release();
  }
}

XPathStep::XPathStep(StepType i_StepType, const String& i_Name, StepAxis i_Axis,
                     XPathPredicates&& i_Predicates)
    : m_Predicates(std::move(i_Predicates)),
      m_Name(i_Name),
      m_StepType(i_StepType),
      m_Axis(i_Axis),
      m_StarName(i_Name.compareTo(L"*") == 0),
      m_AnyName(m_StarName || i_Name.compareTo(L"node()") == 0),
      m_TextTest(i_Name.compareTo(L"text()") == 0) {
  for (size_t index = 0; index < m_Predicates.size(); ++index) {
    if (!m_Predicates[index]->hasCondition()) {
      m_LastPredicateWithoutText = static_cast<long>(index);
    }
  }
}

XPathStep::~XPathStep() {}

TErrorCode XPathStep::get(const String& i_Name, const String& i_PrevName, StepType i_StepType,
                          std::unique_ptr<XPathStep>& o_Step) {
  o_Step.reset();
  assert(i_StepType == root || i_StepType == mid || i_StepType == leaf);
  if (i_StepType == root && i_Name.isEmpty()) {
    return XML_PLUGIN_ERROR_XPATH_WRONG_ROOT;
  }
  if (i_StepType != root && (i_Name.isEmpty() || i_PrevName.isEmpty())) {
    return i_StepType == mid ? XML_PLUGIN_ERROR_XPATH_WRONG_MID : XML_PLUGIN_ERROR_XPATH_WRONG_LEAF;
  }
  String name;
  XPathPredicates predicates;
  StepAxis axis = child;
  const TErrorCode result = parseName(i_Name, name, predicates, axis);
  if (result != 0) {
    return result;
  }
  switch (i_StepType) {
    case root:
      o_Step.reset(new XPathRootStep(name, axis, std::move(predicates)));
      break;
    case mid:
      o_Step.reset(new XPathMidStep(name, axis, std::move(predicates)));
      break;
    case leaf:
      o_Step.reset(new XPathLeafStep(name, axis, std::move(predicates)));
      break;
  }
  return result;
}

TErrorCode XPathStep::parseName(const String& i_Text, String& o_Name, XPathPredicates& o_Predicates,
                                StepAxis& io_Axis) {
  TErrorCode result = 0;
  o_Name = i_Text;
  // Brackets do not nest: an inner "[" starts a predicate text of its own, which ends at the
  // same "]" as the outer one. The predicates share the text instead of copying it.
  const std::shared_ptr<const String> pText = std::make_shared<const String>(i_Text);
  int close = 0;  // the first "]" after the last "[" looked at; -1 once there is none
  for (int open = o_Name.indexOf(L'['); open >= 0; open = o_Name.indexOf(L'[', open + 1)) {
    if (close >= 0 && close < open) {
      close = o_Name.indexOf(L']', open);
    }
    if (close < 0 || open == 0) {
      result = XML_PLUGIN_ERROR_XPATH_WRONG_MID;
      continue;
    }
    o_Predicates.emplace_back(new XPathPredicate(pText, open, close));
  }
  const int firstOpen = o_Name.indexOf(L'[');
  if (firstOpen >= 0) {
    o_Name = prefix(o_Name, firstOpen);
  } else if (o_Name.indexOf(L']') >= 0) {
    result = XML_PLUGIN_ERROR_XPATH_WRONG_MID;
  }

  if (o_Name.compareTo(L"..") == 0) {
    o_Name = String(L"parent::*");
  } else if (o_Name.compareTo(L".") == 0) {
    o_Name = String(L"self::*");
  }
  if (o_Name.isEmpty()) {
    return XML_PLUGIN_ERROR_XPATH_WRONG_MID;
  }

  const int separator = o_Name.indexOf(String(L"::"));
  if (separator >= 0) {
    io_Axis = receiveAxis(prefix(o_Name, separator));
    o_Name = o_Name.substring(separator + 2);
  } else if (o_Name.startsWith(String(L"@"))) {
    io_Axis = attribute;
    o_Name = o_Name.substring(1);
  } else {
    io_Axis = child;
  }
  return result;
}

StepAxis XPathStep::receiveAxis(const String& i_AxisName) {
  for (const AxisName& entry : AXIS_NAMES) {
    if (i_AxisName.compareTo(entry.m_Name) == 0) {
      return entry.m_Axis;
    }
  }
  return child;
}

TErrorCode XPathStep::getChildrenXmlNodes(const Node* i_Node, std::list<Node*>& o_Nodes) {
  o_Nodes.clear();
  const NodeList* pChildren = nullptr;
  const TErrorCode result = childList(i_Node, pChildren);
  if (pChildren == nullptr) {
    return result;
  }
  for (Node* pChild : *pChildren) {
    if (pChild->getType() == ElementNode) {
      o_Nodes.push_back(pChild);
    }
  }
  return result;
}

TErrorCode XPathStep::getTextNode(const Node* i_Node, Node*& o_Text) {
  o_Text = nullptr;
  const NodeList* pChildren = nullptr;
  const TErrorCode result = childList(i_Node, pChildren);
  if (pChildren == nullptr) {
    return result;
  }
  for (Node* pChild : *pChildren) {
    if (pChild->getType() == TextNode) {
      o_Text = pChild;
      break;
    }
  }
  return result;
}

TErrorCode XPathStep::evaluateNode(Node*, XPathOutputCollector&, XPathEvaluationContext&) const {
  return XML_PLUGIN_ERROR_XPATH_NOT_FOUND;
}

int XPathStep::stepMatching(const Node* i_Node) const {
  return m_AnyName || m_Name == i_Node->m_Name ? 1 : 0;
}

TErrorCode XPathStep::filterNodes(std::list<Node*>& io_Nodes,
                                  XPathEvaluationContext& io_Context) const {
  if (m_Predicates.empty()) {
    return 0;
  }
  io_Nodes.remove_if([this](const Node* i_pNode) { return stepMatching(i_pNode) == 0; });
  return applyPredicates(io_Nodes, io_Context);
}

TErrorCode XPathStep::applyPredicates(std::list<Node*>& io_Nodes,
                                      XPathEvaluationContext& io_Context) const {
  for (size_t index = 0; index < m_Predicates.size(); ++index) {
    if (io_Nodes.empty()) {
      // On no candidates only a predicate without text fails; the others need no call each.
      return m_LastPredicateWithoutText >= static_cast<long>(index)
                 ? XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION
                 : 0;
    }
    if (m_Predicates[index]->fiterNodes(io_Nodes, io_Context) != 0) {
      return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
    }
  }
  return 0;
}

long XPathStep::getAnchoredPosition(const XPathEvaluationContext& i_Context) const {
  return m_Predicates.size() == 1 ? m_Predicates.front()->getAnchoredPosition(i_Context) : 0;
}

TErrorCode XPathStep::markFilteredNodes(const std::list<Node*>& i_Nodes,
                                        std::vector<MarkedNode>& o_Marked,
                                        XPathEvaluationContext& io_Context) const {
  o_Marked.clear();
  for (Node* pNode : i_Nodes) {
    o_Marked.push_back(MarkedNode{pNode, false});
  }
  return markFiltered(o_Marked, io_Context);
}

TErrorCode XPathStep::markFiltered(std::vector<MarkedNode>& io_Candidates,
                                   XPathEvaluationContext& io_Context) const {
  for (MarkedNode& candidate : io_Candidates) {
    candidate.m_Marked = false;
  }
  if (m_Predicates.empty()) {
    // Nothing is marked, not even a node that fails the name test: the name test is
    // applied again when the node is evaluated.
    return 0;
  }
  // Only the names that pass reach the list: most candidates of a search in depth fail the
  // name test, and a list costs an allocation per node.
  std::list<Node*> passed;
  for (const MarkedNode& candidate : io_Candidates) {
    if (candidate.m_NameTest == NameTest::untried ? stepMatching(candidate.m_Node) != 0
                                                  : candidate.m_NameTest == NameTest::passes) {
      XPathNodeListSpare::append(passed, candidate.m_Node);
    }
  }
  const TErrorCode result = applyPredicates(passed, io_Context);
  // Filtering keeps the order, so the passing nodes are met in step with the candidates.
  std::list<Node*>::const_iterator next = passed.begin();
  for (MarkedNode& candidate : io_Candidates) {
    const bool passes = next != passed.end() && *next == candidate.m_Node;
    if (passes) {
      ++next;
    }
    candidate.m_Marked = !passes;
  }
  XPathNodeListSpare::recycle(passed);
  return result;
}

TErrorCode XPathLeafStep::evaluateNode(Node* i_Node, XPathOutputCollector& io_Output,
                                       XPathEvaluationContext& io_Context) const {
  if (getAxis() != attribute) {
    return getAxis() == child && isTextTest() ? evaluateText(i_Node, io_Output, io_Context)
                                              : evaluateElement(i_Node, io_Output, io_Context);
  }
  return isStarName() ? evaluateAttributes(i_Node, io_Output)
                      : evaluateAttribute(i_Node, io_Output, io_Context);
}

TErrorCode XPathLeafStep::addElement(std::unique_ptr<XPathOutputElement> i_pItem,
                                     XPathOutputCollector& io_Output) {
  io_Output.add(std::move(i_pItem));
  return 0;
}

TErrorCode XPathLeafStep::evaluateText(Node* i_Node, XPathOutputCollector& io_Output,
                                       XPathEvaluationContext& io_Context) const {
  Node* pText = nullptr;
  const TErrorCode result = io_Context.firstTextChild(i_Node, pText);
  if (result != 0) {
    return result;
  }
  if (pText == nullptr) {
    return XML_PLUGIN_ERROR_XPATH_NOT_FOUND;
  }
  return addElement(makeItem(pText->m_Name, pText->m_Name, pText->m_Index, i_Node), io_Output);
}

TErrorCode XPathLeafStep::evaluateElement(Node* i_Node, XPathOutputCollector& io_Output,
                                          XPathEvaluationContext& io_Context) const {
  Node* pText = nullptr;
  // Finding the text reads every child before the first text: wasted on an item only counted.
  const TErrorCode result = io_Output.onlyCounted() ? 0 : io_Context.firstTextChild(i_Node, pText);
  addElement(
      makeItem(pText != nullptr ? pText->m_Name : noText(), noText(), i_Node->m_Index, i_Node),
      io_Output);
  return result;
}

TErrorCode XPathLeafStep::evaluateAttributes(Node* i_Node, XPathOutputCollector& io_Output) const {
  const StringMap* pAttributes = i_Node->m_Attributes;
  const int32_t count = pAttributes != nullptr ? pAttributes->m_Count : 0;
  for (int32_t entry = 0; entry < count; ++entry) {
    String name;
    String value;
    pAttributes->getEntry(entry, name, value);
    io_Output.add(makeItem(value, value, i_Node->m_Index + entry, i_Node));
  }
  return 0;
}

TErrorCode XPathLeafStep::evaluateAttribute(Node* i_Node, XPathOutputCollector& io_Output,
                                            XPathEvaluationContext& io_Context) const {
  String value;
  int32_t number = 0;
  const TErrorCode result = readAttribute(i_Node, value, number, io_Context);
  if (result == 0) {
    io_Output.add(makeItem(value, value, number, i_Node));
  }
  return result;
}

TErrorCode XPathLeafStep::readAttribute(Node* i_Node, String& o_Value, int32_t& o_Number,
                                        XPathEvaluationContext& io_Context) const {
  if (i_Node->m_Attributes == nullptr) {
    return XML_PLUGIN_ERROR_XPATH_NOT_FOUND;
  }
  String& number = io_Context.attributeNumber();
  const TErrorCode result = i_Node->m_Attributes->getEntry(getName(), o_Value, number);
  if (result == HOST_ERROR_KEY_NOT_FOUND || result == HOST_ERROR_ENTRY_MISSING) {
    return XML_PLUGIN_ERROR_XPATH_NOT_FOUND;
  }
  if (result == 0) {
    o_Number = static_cast<int32_t>(readInteger(number));
  }
  return result;
}

}  // namespace XmlPlugin
