// Location-path evaluation.
//
// A node is tried against step k; when it matches, the nodes that the next step's axis
// reaches (its element children for the child axis) are tried against step k + 1, and a node
// that matches the step before the leaf hands itself to the leaf, which makes the items.
// A step marked "//" (or reached with deep search on) is also tried on every descendant,
// each carrying its own predicate verdict. Each step of the current path is built once and
// serves every node. The items of all paths are sorted by document order at the end, and
// of the items sharing a number only the first made survives.
//
// Every node visited counts against the request's budget (XPathEvaluationContext). Axes other
// than child may reach a node many times (siblings hand on their common parent, ".." chains
// after "//" double with every step): from the first such step on, each step call and each
// leaf output is made once per node and remembered, so the work stays polynomial.
#include "XPath.h"

#include <algorithm>
#include <list>

#include "PluginTracer.h"
#include "XPathEvaluationObserver.h"
#include "XPathNodeFetch.h"
#include "XPathNodeListSpare.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

// Asks for the node a few places ahead of i_Index; at the start, for all the places before
// it too, so that a short list's nodes come from memory together rather than one by one.
void fetchAhead(const NodeList& i_Children, size_t i_Index) {
  const size_t first = i_Index == 0 ? 1 : i_Index + NODES_FETCHED_AHEAD;
  for (size_t ahead = first; ahead <= i_Index + NODES_FETCHED_AHEAD && ahead < i_Children.size();
       ++ahead) {
    fetchNode(i_Children[ahead]);
  }
}

[[gnu::noinline]] void traceNoChildren(const XPathStep& i_Step) {
  Trace trace(pluginTracer(), "XPath::evaluateStep");
  HOST_TRACE(trace, 1) << "Unable to get descendants from node [" << i_Step.getName() << "]";
}

// Calls i_Visit for each element child of i_pParent after (i_Forward) or before i_pNode, in
// document order, never for i_pNode itself, walking the parent's own child list from the
// node's place; true when i_pNode is among the children. Every child passed counts as work.
template <typename Visit>
bool visitSiblings(XPathEvaluationContext& io_Context, const Node* i_pParent, const Node* i_pNode,
                   bool i_Forward, Visit i_Visit) {
  const NodeList* pChildren = nullptr;
  if (i_pParent->getChildren(&pChildren) != 0 || pChildren == nullptr) {
    return false;
  }
  // A node that is no element is deliberately not found among the element children: the
  // walk before it takes them all, the walk after it none.
  const size_t place = i_pNode->getType() == ElementNode
                           ? io_Context.childPosition(i_pParent, i_pNode)
                           : pChildren->size();
  const size_t begin = i_Forward ? place + 1 : 0;
  const size_t end = i_Forward ? pChildren->size() : place;
  for (size_t position = begin; position < end && io_Context.admit(1); ++position) {
    Node* pChild = (*pChildren)[position];
    if (pChild->getType() == ElementNode) {
      i_Visit(pChild);
    }
  }
  return place < pChildren->size();
}

// The place of the first element in a child list (null for none); the list's size when it
// holds none.
size_t firstElement(const NodeList* i_pChildren) {
  const size_t count = i_pChildren != nullptr ? i_pChildren->size() : 0;
  size_t place = 0;
  while (place < count && (*i_pChildren)[place]->getType() != ElementNode) {
    ++place;
  }
  return place;
}

// The element children in a child list (null for none) from place i_From on, in document
// order, none of them marked, each with i_Step's name test tried.
void unmarkedChildren(const NodeList* i_pChildren, size_t i_From, const XPathStep& i_Step,
                      std::vector<MarkedNode>& o_Children) {
  if (i_pChildren == nullptr) {
    return;
  }
  // One allocation rather than doublings; a lone child is often text and needs none.
  if (i_pChildren->size() > i_From + 1) {
    o_Children.reserve(o_Children.size() + i_pChildren->size() - i_From);
  }
  for (size_t place = i_From; place < i_pChildren->size(); ++place) {
    Node* pChild = (*i_pChildren)[place];
    if (pChild->getType() == ElementNode) {
      const NameTest name = i_Step.stepMatching(pChild) != 0 ? NameTest::passes : NameTest::fails;
      o_Children.push_back(MarkedNode{pChild, false, name, pChild->m_Index});
    }
  }
}

bool outputsAfterMatch(StepAxis i_Axis, bool i_absoluteDeepSearch) {
  switch (i_Axis) {
    case child:
    case self:
    case descendant:
    case descendant_or_self:
      return true;
    case following:
    case preceding:
      return i_absoluteDeepSearch;
    default:
      return false;
  }
}

}  // namespace

bool XPath::StepCall::operator==(const StepCall& i_Other) const {
  return m_Node == i_Other.m_Node && m_Position == i_Other.m_Position &&
         m_Marked == i_Other.m_Marked && m_Deep == i_Other.m_Deep;
}

size_t XPath::StepCallHash::operator()(const StepCall& i_Call) const {
  return std::hash<const Node*>()(i_Call.m_Node) * 31u +
         (i_Call.m_Position * 4u + (i_Call.m_Marked ? 2u : 0u) + (i_Call.m_Deep ? 1u : 0u));
}

XPath::XPath(const String& i_XPath, XPathEvaluationContext& io_Context)
    : m_pOwnedPath(new XPathCompiledPath(i_XPath)), m_Path(*m_pOwnedPath), m_Context(io_Context) {
  Trace trace(pluginTracer(), "XPath::XPath");
  HOST_TRACE(trace, 3) << "XPath query = " << i_XPath;
}

XPath::XPath(const XPathCompiledPath& i_Path, long i_Anchor, XPathEvaluationContext& io_Context)
    : m_Path(i_Path), m_Anchor(i_Anchor), m_Context(io_Context) {
  Trace trace(pluginTracer(), "XPath::XPath");
  HOST_TRACE(trace, 3) << "XPath query = " << m_Path.getText(m_Anchor);
}

XPath::~XPath() {}

TErrorCode XPath::splitXPath() {
  Trace trace(pluginTracer(), "XPath::splitXPath");
  HOST_TRACE(trace, 3) << " XPath::splitXPath()";
  for (unsigned int stepCount : m_Path.getStepCounts()) {
    HOST_TRACE(trace, 3) << " m_XPathParser.getStepCount = " << stepCount;
  }
  return m_Path.getStatus();
}

bool XPath::endsWithAttribute(const String& i_Path) const {
  return XPathCompiledPath::endsWithAttribute(i_Path);
}

TErrorCode XPath::getValues(XPathOutputElements& o_Output, Node* i_Root) {
  Trace trace(pluginTracer(), "XPath::getValues");
  TErrorCode result = splitXPath();
  if (result != 0) {
    HOST_TRACE(trace, 1) << "Error while splitting xpath";
    return result;
  }
  if (i_Root == nullptr) {
    HOST_TRACE(trace, 2) << "No nodes available for the XML file ";
    return 0;
  }
  HOST_TRACE(trace, 3) << "Evaluating the xpath [" << m_Path.getText(m_Anchor)
                       << "] for the XML file ";
  if (XPathEvaluationObserver* pObserver = m_Context.getObserver())
    pObserver->pathsPrepared(m_Path.getText(m_Anchor),
                             XPathCompiledPath::withAnchor(getPaths(), m_Anchor), i_Root);
  deleteOutputElements(o_Output);
  bool inOrder = true;
  {
    const XPathEvaluationContext::Anchor anchor(m_Context, m_Anchor);
    XPathOutputCollector collector(o_Output, m_ItemsOnlyCounted);
    while (result == 0 && m_CurrentXPath < getPaths().size()) {
      result = evaluatePath(i_Root, collector);
      ++m_CurrentXPath;
    }
    inOrder = collector.inOrder();
  }
  if (result == 0 && m_Context.isRefused()) {
    result = XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  // The collector kept one item per number: the first made.
  if (!inOrder && !std::is_sorted(o_Output.begin(), o_Output.end(), cmp())) {
    std::sort(o_Output.begin(), o_Output.end(), cmp());
  }
  if (result != 0) {
    deleteOutputElements(o_Output);
  }
  if (XPathEvaluationObserver* pObserver = m_Context.getObserver())
    pObserver->pathsEvaluated(o_Output, result);
  return result;
}

TErrorCode XPath::evaluatePath(Node* i_Root, XPathOutputCollector& io_Output) {
  if (XPathEvaluationObserver* pObserver = m_Context.getObserver())
    pObserver->pathStarted(
        XPathCompiledPath::withAnchor(m_Path.getTokens(m_CurrentXPath), m_Anchor));
  m_StepResults.clear();
  m_LeafResults.clear();
  m_FirstRepeatedStep = m_Path.firstStepReachingAgain(m_CurrentXPath);
  const XPathStep* pFirst = getStep(0);
  if (pFirst == nullptr) {
    // Deliberately this code, whatever stopped the first step from being built.
    return XML_PLUGIN_ERROR_XPATH_ARGUMENTS_TYPE_ERROR;
  }
  std::vector<MarkedNode> marked;
  pFirst->markFilteredNodes(std::list<Node*>(1, i_Root), marked, m_Context);
  return evaluateStep(marked.front(), 0, io_Output, false);
}

const XPathStep* XPath::getStep(unsigned int i_Index, TErrorCode* o_pResult) {
  TErrorCode result = 0;
  const XPathStep* pStep = m_Path.getStep(m_CurrentXPath, i_Index, result);
  if (o_pResult != nullptr) {
    *o_pResult = result;
  }
  return pStep;
}

unsigned int XPath::maxPosition() const {
  return getStepCounts()[m_CurrentXPath];
}

TErrorCode XPath::evaluateStep(MarkedNode i_Node, unsigned int i_StepPosition,
                               XPathOutputCollector& io_Output, bool i_absoluteDeepSearch) {
  // The leaf is never tried here: the step before it hands its node to the leaf directly.
  if (i_Node.m_Node == nullptr || i_StepPosition >= maxPosition()) {
    return 0;
  }
  if (!m_Context.admit(1)) {
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  return isRepeated(i_StepPosition)
             ? evaluateStepOnce(i_Node, i_StepPosition, io_Output, i_absoluteDeepSearch)
             : tryStep(i_Node, i_StepPosition, io_Output, i_absoluteDeepSearch);
}

[[gnu::noinline]] TErrorCode XPath::evaluateStepOnce(MarkedNode i_Node, unsigned int i_StepPosition,
                                                     XPathOutputCollector& io_Output,
                                                     bool i_absoluteDeepSearch) {
  const StepCall call{i_Node.m_Node, i_StepPosition, i_Node.m_Marked, i_absoluteDeepSearch};
  // Entered before the evaluation, so that a call reached again meanwhile ends at once.
  const auto entry = m_StepResults.emplace(call, 0);
  if (!entry.second) {
    return entry.first->second;
  }
  // Keeping the call costs about as much as the try itself.
  if (!m_Context.admit(1)) {
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  const TErrorCode result = tryStep(i_Node, i_StepPosition, io_Output, i_absoluteDeepSearch);
  m_StepResults[call] = result;
  return result;
}

TErrorCode XPath::tryStep(MarkedNode i_Node, unsigned int i_StepPosition,
                          XPathOutputCollector& io_Output, bool i_absoluteDeepSearch) {
  XPathEvaluationContext::Nesting nesting(m_Context);
  TErrorCode result = 0;
  const XPathStep* pStep = getStep(i_StepPosition, &result);
  if (pStep == nullptr) {
    return result;
  }
  unsigned int position = i_StepPosition;
  const bool matches = i_Node.m_NameTest == NameTest::untried
                           ? pStep->stepMatching(i_Node.m_Node) != 0
                           : i_Node.m_NameTest == NameTest::passes;
  // The verdict was this step's, not the next ones'.
  i_Node.m_NameTest = NameTest::untried;
  if (matches) {
    if (XPathEvaluationObserver* pObserver = m_Context.getObserver())
      pObserver->stepMatched(i_StepPosition, i_Node.m_Node, i_Node.m_Marked);
    result = evaluateMatch(i_Node, *pStep, position, io_Output, i_absoluteDeepSearch);
  }
  if (pStep->isAbsoluteDeepSearch() || i_absoluteDeepSearch) {
    result = searchInDepth(i_Node.m_Node, *pStep, position, io_Output, i_absoluteDeepSearch);
  }
  return result;
}

TErrorCode XPath::evaluateMatch(MarkedNode i_Node, const XPathStep& i_Step,
                                unsigned int& io_Position, XPathOutputCollector& io_Output,
                                bool i_absoluteDeepSearch) {
  const XPathStep* pNext = getStep(io_Position + 1);
  if (i_Node.m_Marked && io_Position + 2 == maxPosition() &&
      m_Path.excludedChildrenGiveNothing(m_CurrentXPath) && m_MarkedNodes.contains(i_Node.m_Node) &&
      m_Context.getObserver() == nullptr) {
    // Only an observer would see the walk below.
    return 0;
  }
  if (pNext != nullptr && !i_Node.m_Marked) {
    if (dispatchAxis(i_Node, pNext->getAxis(), io_Position + 1, io_Output)) {
      if (pNext->getAxis() == self) {
        ++io_Position;
      }
    } else if (pNext->getStepType() == leaf &&
               outputsAfterMatch(i_Step.getAxis(), i_absoluteDeepSearch) &&
               prevPredicateCheck(io_Position, i_Node) != 0) {
      return evaluateLeaf(i_Node.m_Node, i_Step, *pNext, io_Output);
    }
  }
  return evaluateChildren(i_Node.m_Node, i_Step, pNext, io_Position, io_Output);
}

bool XPath::dispatchAxis(MarkedNode i_Node, StepAxis i_Axis, unsigned int i_StepPosition,
                         XPathOutputCollector& io_Output) {
  switch (i_Axis) {
    case ancestor:
    case ancestor_or_self:
    case parent:
      ancestorStep(i_Node, i_StepPosition, io_Output);
      return true;
    case following_sibling:
    case preceding_sibling:
      siblingsStep(i_Node, i_StepPosition, io_Output);
      return true;
    case following:
    case preceding:
      followprescStep(i_Node, i_StepPosition, io_Output);
      return true;
    case descendant:
    case descendant_or_self:
      descendantStep(i_Node, i_StepPosition, io_Output);
      return true;
    case self:
      selfStep(i_Node, i_StepPosition, io_Output);
      return true;
    case attribute:
    case child:
      return false;
  }
  return false;
}

[[gnu::noinline]] TErrorCode XPath::evaluateLeaf(Node* i_Node, const XPathStep& i_Step,
                                                 const XPathStep& i_Leaf,
                                                 XPathOutputCollector& io_Output) {
  Trace trace(pluginTracer(), "XPath::evaluateStep");
  HOST_TRACE(trace, 3) << "Node match. EvaluateNode";
  const TErrorCode result = outputNode(i_Node, i_Leaf, io_Output);
  HOST_TRACE(trace, 3) << "Evaluate result = " << result;
  if (result == XML_PLUGIN_ERROR_XPATH_NOT_FOUND) {
    HOST_TRACE(trace, 3) << "Node [" << i_Step.getName() << "/" << i_Leaf.getName()
                         << "] has no value ";
    return 0;
  }
  if (result != 0) {
    HOST_TRACE(trace, 1) << "Unable to evaluate node [" << i_Step.getName() << "/"
                         << i_Leaf.getName() << "] (err=" << result << ")";
  }
  return result;
}

TErrorCode XPath::outputNode(Node* i_Node, const XPathStep& i_Leaf,
                             XPathOutputCollector& io_Output) {
  if (m_FirstRepeatedStep == 0) {
    return evaluateLeafNode(i_Node, i_Leaf, io_Output);
  }
  const auto entry = m_LeafResults.emplace(i_Node, 0);
  if (entry.second) {
    entry.first->second = evaluateLeafNode(i_Node, i_Leaf, io_Output);
  }
  return entry.first->second;
}

TErrorCode XPath::evaluateLeafNode(Node* i_Node, const XPathStep& i_Leaf,
                                   XPathOutputCollector& io_Output) {
  if (!m_Context.admit(1)) {
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  const size_t before = io_Output.items().size();
  const TErrorCode result = i_Leaf.evaluateNode(i_Node, io_Output, m_Context);
  if (XPathEvaluationObserver* pObserver = m_Context.getObserver())
    pObserver->itemsMade(io_Output.items().size() - before);
  if (!m_Context.admit(XPATH_ITEM_COST * (io_Output.items().size() - before))) {
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  return result;
}

TErrorCode XPath::evaluateChildren(Node* i_Node, const XPathStep& i_Step, const XPathStep* i_pNext,
                                   unsigned int i_Position, XPathOutputCollector& io_Output) {
  if (i_pNext != nullptr && i_pNext->getAnchoredPosition(m_Context) > 0) {
    return evaluateAnchoredChild(i_Node, i_Step, *i_pNext, i_Position, io_Output);
  }
  const NodeList* pChildren = nullptr;
  TErrorCode result = i_Node->getChildren(&pChildren);
  if (result != 0) {
    traceNoChildren(i_Step);
    return result;
  }
  if (i_pNext == nullptr || i_pNext->getPredicates().empty()) {
    return evaluateElements(pChildren, i_Position + 1, io_Output, false);
  }
  XPathVectorPool<MarkedNode>::Lease lease(m_ChildLists);
  std::vector<MarkedNode>& children = *lease;
  unmarkedChildren(pChildren, 0, *i_pNext, children);
  if (!m_Context.admit(children.size())) {
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  keepPassing(*i_pNext, children);
  for (size_t i = 0; i < children.size() && result == 0; ++i) {
    result = evaluateStep(children[i], i_Position + 1, io_Output, false);
  }
  return result;
}

// Filtering wants a list; only steps with predicates filter.
void XPath::keepPassing(const XPathStep& i_Step, std::vector<MarkedNode>& io_Children) {
  std::list<Node*> passing;
  for (const MarkedNode& child : io_Children) {
    XPathNodeListSpare::append(passing, child.m_Node);
  }
  i_Step.filterNodes(passing, m_Context);
  io_Children.clear();
  for (Node* pChild : passing) {
    io_Children.push_back(MarkedNode{pChild, false});
  }
  XPathNodeListSpare::recycle(passing);
}

// The same outcome as the general child walk, whose filtering keeps just that one child.
TErrorCode XPath::evaluateAnchoredChild(Node* i_Node, const XPathStep& i_Step,
                                        const XPathStep& i_Next, unsigned int i_Position,
                                        XPathOutputCollector& io_Output) {
  Node* pChild = nullptr;
  const TErrorCode result =
      m_Context.nthChild(i_Node, i_Next, i_Next.getAnchoredPosition(m_Context), pChild);
  if (result != 0) {
    traceNoChildren(i_Step);
    return result;
  }
  return pChild != nullptr
             ? evaluateStep(MarkedNode{pChild, false}, i_Position + 1, io_Output, false)
             : 0;
}

TErrorCode XPath::searchInDepth(Node* i_Node, const XPathStep& i_Step, unsigned int i_Position,
                                XPathOutputCollector& io_Output, bool i_absoluteDeepSearch) {
  // A node whose children cannot be listed is searched as one without children.
  const NodeList* pChildren = nullptr;
  if (i_Node->getChildren(&pChildren) != 0) {
    pChildren = nullptr;
  }
  if (i_Step.getPredicates().empty()) {
    // Nothing is marked: the children need no list of their own.
    return &i_Step == getStep(i_Position) && !isRepeated(i_Position)
               ? searchPlain(pChildren, i_Step, i_Position, io_Output, i_absoluteDeepSearch)
               : evaluateElements(pChildren, i_Position, io_Output, i_absoluteDeepSearch);
  }
  const size_t first = firstElement(pChildren);
  if (pChildren == nullptr || first == pChildren->size()) {
    // Most nodes of a document hold no element: filtering no candidates needs no list.
    std::vector<MarkedNode> none;
    return m_Context.admit(0) ? i_Step.markFiltered(none, m_Context)
                              : XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  XPathVectorPool<MarkedNode>::Lease lease(m_ChildLists);
  std::vector<MarkedNode>& marked = *lease;
  unmarkedChildren(pChildren, first, i_Step, marked);
  if (!m_Context.admit(marked.size())) {
    return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  TErrorCode result = i_Step.markFiltered(marked, m_Context);
  if (m_Path.asksForExcludedParents()) {
    rememberMarked(marked);
  }
  // After a self step the search goes on at the step after i_Step, whose name test differs.
  const bool nameTested = getStep(i_Position) == &i_Step;
  for (size_t i = 0; i < marked.size() && result == 0; ++i) {
    MarkedNode candidate = marked[i];
    if (!nameTested) {
      candidate.m_NameTest = NameTest::untried;
    }
    result = evaluateStep(candidate, i_Position, io_Output, i_absoluteDeepSearch);
  }
  return result;
}

TErrorCode XPath::searchPlain(const NodeList* i_pChildren, const XPathStep& i_Step,
                              unsigned int i_Position, XPathOutputCollector& io_Output,
                              bool i_absoluteDeepSearch) {
  for (size_t i = 0; i_pChildren != nullptr && i < i_pChildren->size(); ++i) {
    Node* pChild = (*i_pChildren)[i];
    fetchAhead(*i_pChildren, i);
    if (pChild->getType() != ElementNode) {
      continue;
    }
    // Listed, then tried: evaluateElements' count and evaluateStep's.
    if (!m_Context.admit(1) || !m_Context.admit(1)) {
      return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
    }
    const XPathEvaluationContext::Nesting nesting(m_Context);
    unsigned int position = i_Position;
    TErrorCode result = 0;
    if (i_Step.stepMatching(pChild) != 0) {
      if (XPathEvaluationObserver* pObserver = m_Context.getObserver())
        pObserver->stepMatched(i_Position, pChild, false);
      result = evaluateMatch(MarkedNode{pChild, false}, i_Step, position, io_Output,
                             i_absoluteDeepSearch);
    }
    if (position != i_Position) {
      result = searchInDepth(pChild, i_Step, position, io_Output, i_absoluteDeepSearch);
    } else {
      const NodeList* pGrandChildren = nullptr;
      result =
          pChild->getChildren(&pGrandChildren) == 0 && pGrandChildren != nullptr
              ? searchPlain(pGrandChildren, i_Step, i_Position, io_Output, i_absoluteDeepSearch)
              : 0;
    }
    if (result != 0) {
      return result;
    }
  }
  return 0;
}

TErrorCode XPath::evaluateElements(const NodeList* i_pChildren, unsigned int i_Position,
                                   XPathOutputCollector& io_Output, bool i_absoluteDeepSearch) {
  TErrorCode result = 0;
  for (size_t i = 0; i_pChildren != nullptr && i < i_pChildren->size() && result == 0; ++i) {
    Node* pChild = (*i_pChildren)[i];
    fetchAhead(*i_pChildren, i);
    if (pChild->getType() != ElementNode) {
      continue;
    }
    result = m_Context.admit(1) ? evaluateStep(MarkedNode{pChild, false}, i_Position, io_Output,
                                               i_absoluteDeepSearch)
                                : XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
  }
  return result;
}

[[gnu::noinline]] void XPath::rememberMarked(const std::vector<MarkedNode>& i_Marked) {
  for (const MarkedNode& candidate : i_Marked) {
    if (candidate.m_Marked) {
      m_MarkedNodes.insert(candidate.m_Number);
    }
  }
}

void XPath::continueAxis(const MarkedNode& i_Node, Node* i_pReached, Node* i_pEvaluated,
                         unsigned int i_StepPosition, XPathOutputCollector& io_Output,
                         bool i_absoluteDeepSearch) {
  const XPathStep* pNext = getStep(i_StepPosition + 1);
  if (pNext != nullptr && pNext->getStepType() == leaf && !i_Node.m_Marked) {
    outputNode(i_pReached, *pNext, io_Output);
  } else {
    evaluateStep(MarkedNode{i_pEvaluated, false}, i_StepPosition, io_Output, i_absoluteDeepSearch);
  }
}

void XPath::ancestorStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                         XPathOutputCollector& io_Output) {
  const XPathStep* pStep = getStep(i_StepPosition);
  if (pStep == nullptr) {
    return;
  }
  const StepAxis axis = pStep->getAxis();
  // Unlike the name test of the other axes, "node()" is no wildcard here.
  const bool anyName = pStep->isStarName();
  for (Node* pCurrent = axis == ancestor_or_self ? i_Node.m_Node : i_Node.m_Node->getParent();
       pCurrent != nullptr && m_Context.admit(1); pCurrent = pCurrent->getParent()) {
    if (anyName || pStep->getName() == pCurrent->m_Name) {
      continueAxis(i_Node, pCurrent, pCurrent, i_StepPosition, io_Output, false);
    }
    if (axis == parent) {
      break;
    }
  }
}

void XPath::siblingsStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                         XPathOutputCollector& io_Output) {
  Node* pParent = i_Node.m_Node->getParent();
  const XPathStep* pStep = pParent != nullptr ? getStep(i_StepPosition) : nullptr;
  if (pStep == nullptr) {
    return;
  }
  const StepAxis axis = pStep->getAxis();
  const bool forward = axis == following_sibling || axis == following;
  const bool deep = axis == following || axis == preceding;
  // Deliberately evaluates the parent, not the sibling, when the path goes on: that decides
  // which nodes the later steps reach.
  visitSiblings(m_Context, pParent, i_Node.m_Node, forward, [&](Node* i_pSibling) {
    continueAxis(i_Node, i_pSibling, pParent, i_StepPosition, io_Output, deep);
  });
}

void XPath::followprescStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                            XPathOutputCollector& io_Output) {
  Node* pParent = i_Node.m_Node->getParent();
  const XPathStep* pStep = pParent != nullptr ? getStep(i_StepPosition) : nullptr;
  if (pStep == nullptr) {
    return;
  }
  const bool forward = pStep->getAxis() == following;
  const bool found =
      visitSiblings(m_Context, pParent, i_Node.m_Node, forward, [&](Node* i_pSibling) {
        evaluateStep(MarkedNode{i_pSibling, false}, i_StepPosition, io_Output, true);
      });
  if (!found) {
    return;
  }
  // Deliberately reaches the node's own siblings and the topmost element's later (earlier)
  // branches, but not the siblings of the ancestors in between.
  Node* pBranch = i_Node.m_Node;
  Node* pTop = pParent;
  while (pTop->getParent() != nullptr) {
    pBranch = pTop;
    pTop = pTop->getParent();
  }
  const size_t branchPosition = m_Context.childPosition(pTop, pBranch);
  const NodeList* pTopChildren = nullptr;
  pTop->getChildren(&pTopChildren);
  if (pTopChildren == nullptr || !m_Context.admit(pTopChildren->size())) {
    return;
  }
  for (size_t position = 0; position < pTopChildren->size(); ++position) {
    Node* pChild = (*pTopChildren)[position];
    const bool beyond = forward ? position > branchPosition : position < branchPosition;
    if (pChild->getType() != TextNode && beyond) {
      evaluateStep(MarkedNode{pChild, false}, i_StepPosition, io_Output, true);
    }
  }
}

void XPath::descendantStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                           XPathOutputCollector& io_Output) {
  const XPathStep* pStep = getStep(i_StepPosition);
  if (pStep == nullptr) {
    return;
  }
  if (pStep->getAxis() == descendant_or_self) {
    evaluateStep(i_Node, i_StepPosition, io_Output, true);
    return;
  }
  // Every child, deliberately not only the elements.
  const NodeList* pChildren = nullptr;
  if (i_Node.m_Node->getChildren(&pChildren) != 0 || pChildren == nullptr) {
    return;
  }
  for (Node* pChild : *pChildren) {
    evaluateStep(MarkedNode{pChild, false}, i_StepPosition, io_Output, true);
  }
}

void XPath::selfStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                     XPathOutputCollector& io_Output) {
  evaluateStep(i_Node, i_StepPosition, io_Output, false);
}

int XPath::prevPredicateCheck(unsigned int i_StepPosition, MarkedNode i_Node) {
  const XPathStep* pStep = getStep(i_StepPosition);
  // The earlier steps need no check of their own: the first one was built, or evaluation
  // would not have started.
  return pStep != nullptr && !pStep->isAbsoluteDeepSearch() && i_StepPosition > 0 &&
                 isParentNodeMarked(i_Node) != 0
             ? 0
             : 1;
}

int XPath::isParentNodeMarked(MarkedNode i_Node) const {
  if (m_MarkedNodes.empty()) {
    return 0;
  }
  const Node* pParent = i_Node.m_Node->getParent();
  return pParent != nullptr && m_MarkedNodes.contains(pParent) ? 1 : 0;
}

}  // namespace XmlPlugin
