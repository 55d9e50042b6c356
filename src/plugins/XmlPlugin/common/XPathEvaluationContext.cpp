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

template <typename Matches>
const std::vector<Node*>* XPathEvaluationContext::namedChildren(const Node* i_pParent,
                                                                const String& i_Name,
                                                                Matches i_Matches,
                                                                TErrorCode* o_pResult) {
  *o_pResult = 0;
  if (m_pLastNamed != nullptr && i_pParent == m_pLastParent && i_Name == m_LastName) {
    return m_pLastNamed;
  }
  const ChildKey key(i_pParent, i_Name);
  auto found = m_NamedChildren.find(key);
  if (found == m_NamedChildren.end()) {
    const NodeList* pChildren = nullptr;
    *o_pResult =
        i_pParent != nullptr ? i_pParent->getChildren(&pChildren) : HOST_ERROR_BAD_ARGUMENT;
    if (*o_pResult != 0) {
      return nullptr;
    }
    size_t elements = 0;
    std::vector<Node*> passing;
    for (size_t i = 0; pChildren != nullptr && i < pChildren->size(); ++i) {
      Node* pChild = (*pChildren)[i];
      if (pChild->getType() == ElementNode) {
        ++elements;
        if (i_Matches(pChild)) {
          passing.push_back(pChild);
        }
      }
    }
    admit(elements);
    found = m_NamedChildren.emplace(key, std::move(passing)).first;
  }
  m_pLastParent = i_pParent;
  m_LastName = i_Name;
  m_pLastNamed = &found->second;
  return m_pLastNamed;
}

TErrorCode XPathEvaluationContext::pick(const std::vector<Node*>* i_pChildren, TErrorCode i_Result,
                                        long i_Position, Node*& o_pChild) {
  o_pChild = nullptr;
  if (i_pChildren != nullptr && i_Position >= 1 &&
      static_cast<size_t>(i_Position) <= i_pChildren->size()) {
    o_pChild = (*i_pChildren)[i_Position - 1];
  }
  return i_Result;
}

TErrorCode XPathEvaluationContext::nthChild(const Node* i_pParent, const XPathStep& i_Step,
                                            long i_Position, Node*& o_pChild) {
  TErrorCode result = 0;
  const std::vector<Node*>* pChildren = namedChildren(
      i_pParent, i_Step.getName(),
      [&i_Step](const Node* i_pChild) { return i_Step.stepMatching(i_pChild) != 0; }, &result);
  return pick(pChildren, result, i_Position, o_pChild);
}

TErrorCode XPathEvaluationContext::nthChild(const Node* i_pParent, const String& i_Name,
                                            long i_Position, Node*& o_pChild) {
  TErrorCode result = 0;
  const std::vector<Node*>* pChildren = namedChildren(
      i_pParent, i_Name, [&i_Name](const Node* i_pChild) { return i_pChild->m_Name == i_Name; },
      &result);
  return pick(pChildren, result, i_Position, o_pChild);
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
