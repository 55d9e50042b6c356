// Evaluates a location-path operand (one or more paths joined by "|") over a tree.
#pragma once

#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "XPathCompiledPath.h"
#include "XPathEvaluationContext.h"
#include "XPathNodeNumberSet.h"
#include "XPathOutputElement.h"
#include "XPathStep.h"
#include "XPathVectorPool.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPath {
 public:
  // Every evaluation draws on io_Context, which must outlive the object.
  XPath(const String& i_XPath, XPathEvaluationContext& io_Context);
  // Evaluates a compiled operand (borrowed; it must outlive the object) whose anchored step,
  // if it has one, stands at position i_Anchor.
  XPath(const XPathCompiledPath& i_Path, long i_Anchor, XPathEvaluationContext& io_Context);
  ~XPath();
  XPath(const XPath&) = delete;
  XPath& operator=(const XPath&) = delete;

  // Fills o_Output (which owns its items) with the matching items, sorted by document
  // order without duplicates. A null root gives 0 and leaves o_Output untouched.
  // i_Root must itself pass the first step of each path. On failure o_Output is empty.
  // Supported once per object.
  TErrorCode getValues(XPathOutputElements& o_Output, Node* i_Root);
  // The items getValues makes will only be counted (see XPathOutputCollector).
  void countItemsOnly() { m_ItemsOnlyCounted = true; }

  // The code of cutting the operand into prepared paths (see XPathCompiledPath).
  TErrorCode splitXPath();
  const std::vector<String>& getPaths() const { return m_Path.getPaths(); }
  const std::vector<unsigned int>& getStepCounts() const { return m_Path.getStepCounts(); }

  // True when the last step of the path is an attribute step.
  bool endsWithAttribute(const String& i_Path) const;

 private:
  TErrorCode evaluatePath(Node* i_Root, XPathOutputCollector& io_Output);
  // Step i_Index of the current path, or null; *o_pResult receives the code of its building.
  const XPathStep* getStep(unsigned int i_Index, TErrorCode* o_pResult = nullptr);
  // The index of the current path's leaf step.
  unsigned int maxPosition() const;

  // Tries a node against step i_StepPosition and, when it matches, hands it on to the next
  // step (by its axis, to the leaf for output, or through its children). With deep search
  // the step is also tried on every descendant. Frames of this recursion stay small: a
  // document as deep as the reader allows is searched on the default stack.
  TErrorCode evaluateStep(MarkedNode i_Node, unsigned int i_StepPosition,
                          XPathOutputCollector& io_Output, bool i_absoluteDeepSearch);
  // The same, once per node, position, mark and deep flag: a later identical call only
  // returns the first one's code, since it could add no item the first did not.
  TErrorCode evaluateStepOnce(MarkedNode i_Node, unsigned int i_StepPosition,
                              XPathOutputCollector& io_Output, bool i_absoluteDeepSearch);
  // evaluateStep's work once the call is admitted.
  TErrorCode tryStep(MarkedNode i_Node, unsigned int i_StepPosition,
                     XPathOutputCollector& io_Output, bool i_absoluteDeepSearch);
  TErrorCode evaluateMatch(MarkedNode i_Node, const XPathStep& i_Step, unsigned int& io_Position,
                           XPathOutputCollector& io_Output, bool i_absoluteDeepSearch);
  // Runs the operation of an axis other than child and attribute; false for those two.
  bool dispatchAxis(MarkedNode i_Node, StepAxis i_Axis, unsigned int i_StepPosition,
                    XPathOutputCollector& io_Output);
  TErrorCode evaluateLeaf(Node* i_Node, const XPathStep& i_Step, const XPathStep& i_Leaf,
                          XPathOutputCollector& io_Output);
  // The leaf's evaluateNode, once per node when axes may reach a node many times.
  TErrorCode outputNode(Node* i_Node, const XPathStep& i_Leaf, XPathOutputCollector& io_Output);
  // The leaf's evaluateNode, counting the call and the items it made as work.
  TErrorCode evaluateLeafNode(Node* i_Node, const XPathStep& i_Leaf,
                              XPathOutputCollector& io_Output);
  TErrorCode evaluateChildren(Node* i_Node, const XPathStep& i_Step, const XPathStep* i_pNext,
                              unsigned int i_Position, XPathOutputCollector& io_Output);
  // Keeps the children that pass the step's name test and predicates.
  void keepPassing(const XPathStep& i_Step, std::vector<MarkedNode>& io_Children);
  TErrorCode evaluateAnchoredChild(Node* i_Node, const XPathStep& i_Step, const XPathStep& i_Next,
                                   unsigned int i_Position, XPathOutputCollector& io_Output);
  TErrorCode searchInDepth(Node* i_Node, const XPathStep& i_Step, unsigned int i_Position,
                           XPathOutputCollector& io_Output, bool i_absoluteDeepSearch);
  // searchInDepth's walk for a step without predicates, below the children in a list (null
  // for none): each element is counted, tried against the step at i_Position and searched in
  // turn as evaluateStep would, with one call per level instead of four. The step must be
  // the one at i_Position, which must not be repeated.
  TErrorCode searchPlain(const NodeList* i_pChildren, const XPathStep& i_Step,
                         unsigned int i_Position, XPathOutputCollector& io_Output,
                         bool i_absoluteDeepSearch);
  // Whether steps from i_Position on are made once per node (see evaluateStepOnce).
  bool isRepeated(unsigned int i_Position) const {
    return m_FirstRepeatedStep > 0 && i_Position >= m_FirstRepeatedStep;
  }
  // evaluateStep on each element child in the list (null for none), unmarked, counting each
  // as work, until one fails.
  TErrorCode evaluateElements(const NodeList* i_pChildren, unsigned int i_Position,
                              XPathOutputCollector& io_Output, bool i_absoluteDeepSearch);
  void rememberMarked(const std::vector<MarkedNode>& i_Marked);
  // Hands a node that an axis reached on: straight to the leaf when the next step is the
  // leaf and the incoming node is unmarked, else i_pEvaluated to evaluateStep.
  void continueAxis(const MarkedNode& i_Node, Node* i_pReached, Node* i_pEvaluated,
                    unsigned int i_StepPosition, XPathOutputCollector& io_Output,
                    bool i_absoluteDeepSearch);

  void ancestorStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                    XPathOutputCollector& io_Output);
  void siblingsStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                    XPathOutputCollector& io_Output);
  void followprescStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                       XPathOutputCollector& io_Output);
  void descendantStep(MarkedNode& i_Node, unsigned int i_StepPosition,
                      XPathOutputCollector& io_Output);
  void selfStep(MarkedNode& i_Node, unsigned int i_StepPosition, XPathOutputCollector& io_Output);

  // 0 when the node's parent was excluded by a predicate of an earlier step, else 1.
  int prevPredicateCheck(unsigned int i_StepPosition, MarkedNode i_Node);
  int isParentNodeMarked(MarkedNode i_Node) const;

  std::unique_ptr<XPathCompiledPath> m_pOwnedPath;  // when made from a text
  const XPathCompiledPath& m_Path;
  long m_Anchor = 0;
  bool m_ItemsOnlyCounted = false;
  unsigned int m_CurrentXPath = 0;
  // Every node that a predicate excluded while searching in depth, when a path asks; never
  // emptied.
  XPathNodeNumberSet m_MarkedNodes;
  XPathEvaluationContext& m_Context;
  // The child lists of the levels under way.
  XPathVectorPool<MarkedNode> m_ChildLists;

  // What the current path evaluated already, kept when its axes may reach a node again:
  // without this a chain of "." and ".." steps doubles its work with every step.
  struct StepCall {
    const Node* m_Node;
    unsigned int m_Position;
    bool m_Marked;
    bool m_Deep;
    bool operator==(const StepCall& i_Other) const;
  };
  struct StepCallHash {
    size_t operator()(const StepCall& i_Call) const;
  };
  // Calls before this step are made once each anyway: only an axis calls one twice.
  unsigned int m_FirstRepeatedStep = 0;
  std::unordered_map<StepCall, TErrorCode, StepCallHash> m_StepResults;
  std::unordered_map<const Node*, TErrorCode> m_LeafResults;
};

}  // namespace XmlPlugin
