#include "XPathEvaluationContext.h"

#include "PluginTracer.h"
#include "XPathStep.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

// Child lists up to this long are scanned where they are needed; longer ones are indexed
// once, so that no scan repeated per candidate grows with the number of siblings.
const size_t SHORT_CHILD_LIST = 16;

const NodeList* childrenOf(const Node* i_pNode) {
  const NodeList* pChildren = nullptr;
  if (i_pNode->getChildren(&pChildren) != 0) {
    return nullptr;
  }
  return pChildren;
}

size_t scanPosition(const NodeList& i_Children, const Node* i_pChild) {
  size_t position = 0;
  while (position < i_Children.size() && i_Children[position] != i_pChild) {
    ++position;
  }
  return position;
}

}  // namespace

XPathEvaluationContext::XPathEvaluationContext(unsigned long i_MaxWork) : m_MaxWork(i_MaxWork) {}

bool XPathEvaluationContext::admit(unsigned long i_Cost) {
  if (m_Refused || m_Nesting >= XPATH_MAX_STEP_NESTING || m_Work + i_Cost > m_MaxWork) {
    refuse();
    return false;
  }
  m_Work += i_Cost;
  return true;
}

// Written out of line so that the frames of the step recursion stay small.
[[gnu::noinline]] void XPathEvaluationContext::refuse() {
  if (m_Refused) {
    return;
  }
  m_Refused = true;
  Trace trace(pluginTracer(), "XPathEvaluationContext::admit");
  HOST_TRACE(trace, 1) << "Evaluation too deep or too long: nesting " << m_Nesting << ", work "
                       << m_Work;
}

long XPathEvaluationContext::positionAmong(const std::list<Node*>& i_Siblings,
                                           const Node* i_pNode) {
  if (!m_Candidates.empty() && m_Candidates.back().m_pCandidates == &i_Siblings &&
      m_Candidates.back().m_pNode == i_pNode) {
    return m_Candidates.back().m_Position;
  }
  long position = 1;
  for (const Node* pSibling : i_Siblings) {
    if (pSibling == i_pNode) {
      admit(position);
      return position;
    }
    ++position;
  }
  admit(i_Siblings.size());
  return 0;
}

size_t XPathEvaluationContext::ChildKeyHash::operator()(const ChildKey& i_Key) const {
  return hashText(i_Key.second) * 31u + std::hash<const Node*>()(i_Key.first);
}

TErrorCode XPathEvaluationContext::nthChild(const Node* i_pParent, const XPathStep& i_Step,
                                            long i_Position, Node*& o_pChild) {
  o_pChild = nullptr;
  const ChildKey key(i_pParent, i_Step.getName());
  auto found = m_NamedChildren.find(key);
  if (found == m_NamedChildren.end()) {
    std::list<Node*> children;
    const TErrorCode result = XPathStep::getChildrenXmlNodes(i_pParent, children);
    if (result != 0) {
      return result;
    }
    admit(children.size());
    std::vector<Node*> passing;
    for (Node* pChild : children) {
      if (i_Step.stepMatching(pChild) != 0) {
        passing.push_back(pChild);
      }
    }
    found = m_NamedChildren.emplace(key, std::move(passing)).first;
  }
  if (i_Position >= 1 && static_cast<size_t>(i_Position) <= found->second.size()) {
    o_pChild = found->second[i_Position - 1];
  }
  return 0;
}

TErrorCode XPathEvaluationContext::firstTextChild(const Node* i_pNode, Node*& o_pText) {
  const NodeList* pChildren = nullptr;
  if (i_pNode == nullptr || i_pNode->getChildren(&pChildren) != 0 || pChildren == nullptr ||
      pChildren->size() <= SHORT_CHILD_LIST) {
    return XPathStep::getTextNode(i_pNode, o_pText);
  }
  auto found = m_FirstTexts.find(i_pNode);
  if (found == m_FirstTexts.end()) {
    admit(pChildren->size());
    Node* pText = nullptr;
    XPathStep::getTextNode(i_pNode, pText);
    found = m_FirstTexts.emplace(i_pNode, pText).first;
  }
  o_pText = found->second;
  return 0;
}

size_t XPathEvaluationContext::childPosition(const Node* i_pParent, const Node* i_pChild) {
  const NodeList* pChildren = childrenOf(i_pParent);
  if (pChildren == nullptr) {
    return 0;
  }
  if (pChildren->size() <= SHORT_CHILD_LIST) {
    return scanPosition(*pChildren, i_pChild);
  }
  if (m_IndexedParents.insert(i_pParent).second) {
    admit(pChildren->size());
    for (size_t position = 0; position < pChildren->size(); ++position) {
      m_ChildPositions.emplace((*pChildren)[position], position);
    }
  }
  const auto found = m_ChildPositions.find(i_pChild);
  return found != m_ChildPositions.end() && found->second < pChildren->size() &&
                 (*pChildren)[found->second] == i_pChild
             ? found->second
             : pChildren->size();
}

}  // namespace XmlPlugin
