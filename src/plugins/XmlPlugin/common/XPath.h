// Evaluates a location-path operand (one or more paths joined by "|") over a tree.
#pragma once

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "XPathOutputElement.h"
#include "XPathParser.h"
#include "XPathStep.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

// Bounds of an evaluation, with the evaluations nested in it through predicates; past
// them it fails with XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION.
// How deeply steps may nest: twice the reader's deepest document, so that a path may climb
// to the top of such a document and search all the way down again.
const unsigned int XPATH_MAX_STEP_NESTING = 4096;
// How many times a node may be tried against a step: about 3 s of work at the 170 ns a try
// costs in a release build when every try makes an item (//x/ancestor::*/descendant::* over
// a 2040-deep document); a path over a document of a million elements needs a few million.
const unsigned long XPATH_MAX_STEP_EVALUATIONS = 20000000;

// What the evaluation of a predicate for one candidate counts against
// XPATH_MAX_STEP_EVALUATIONS: about what it costs compared with trying a node against a step
// (8 us against 170 ns in a release build for //b[1=1], plus 8 us per 1000 characters of
// predicate text), kept low enough that a short predicate on every node of a million-element
// document stays within the bound.
const unsigned long XPATH_PREDICATE_EVALUATION_COST = 12;
const unsigned long XPATH_PREDICATE_CHARACTERS_PER_COST = 16;

// Counts i_Cost tries against the bounds of the location-path evaluation under way, for work
// done outside its steps (predicates); false once that evaluation is refused. Outside an
// evaluation everything is admitted.
bool admitEvaluationWork(unsigned long i_Cost);

// splitXPath's code when the prepared paths and their step counts disagree.
const TErrorCode XPATH_SPLIT_ERROR = -260;

// The element children of a node that pass a step's name test, kept per node and name
// test, so that an anchored step ("name[position()=N]", which relative paths inside
// predicates begin with) finds its node without walking all siblings for every candidate.
// One index serves an outermost evaluation and the evaluations nested in it; trees do not
// change meanwhile.
class XPathChildIndex {
 public:
  // The i_Position-th (1-based) element child of i_pParent that passes i_Step's name test,
  // or null; getting the children may fail with the host's code.
  TErrorCode nth(const Node* i_pParent, const XPathStep& i_Step, long i_Position, Node*& o_pChild);

 private:
  typedef std::pair<const Node*, String> Key;
  struct KeyHash {
    size_t operator()(const Key& i_Key) const;
  };
  std::unordered_map<Key, std::vector<Node*>, KeyHash> m_Children;
};

class XPath {
 public:
  explicit XPath(const String& i_XPath);
  ~XPath();
  XPath(const XPath&) = delete;
  XPath& operator=(const XPath&) = delete;

  // Fills o_Output (which owns its items) with the matching items, sorted by document
  // order without duplicates. A null root gives 0 and leaves o_Output untouched.
  // i_Root must itself pass the first step of each path. On failure o_Output is empty.
  // Supported once per object.
  TErrorCode getValues(XPathOutputElements& o_Output, Node* i_Root);

  // Cuts the operand at "|" and prepares each path: a single leading "/" is dropped (the
  // caller chooses the start node), a leading "//" is kept, and "/endfunction()" is
  // appended unless the path ends with "text()" or an attribute step, so that every path
  // that ends on an element ends in a leaf step that outputs the element.
  TErrorCode splitXPath();
  const std::vector<String>& getPaths() const { return m_XPaths; }
  const std::vector<unsigned int>& getStepCounts() const { return m_StepCounts; }

  // True when the last step of the path is an attribute step.
  bool endsWithAttribute(const String& i_Path);

  // How many evaluations on this thread have been refused past the bounds. An operand drops
  // its path's failure, so a request compares this count before and after to fail as a whole.
  static unsigned long getRefusedCount();

 private:
  // Steps of the path under evaluation, each built on first use and kept with its code.
  struct BuiltStep {
    std::unique_ptr<XPathStep> m_Step;
    TErrorCode m_Result = 0;
    bool m_Built = false;
  };

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
  TErrorCode evaluateMatch(MarkedNode i_Node, const XPathStep& i_Step, unsigned int& io_Position,
                           XPathOutputCollector& io_Output, bool i_absoluteDeepSearch);
  // Runs the operation of an axis other than child and attribute; false for those two.
  bool dispatchAxis(MarkedNode i_Node, StepAxis i_Axis, unsigned int i_StepPosition,
                    XPathOutputCollector& io_Output);
  TErrorCode evaluateLeaf(Node* i_Node, const XPathStep& i_Step, const XPathStep& i_Leaf,
                          XPathOutputCollector& io_Output);
  TErrorCode evaluateChildren(Node* i_Node, const XPathStep& i_Step, const XPathStep* i_pNext,
                              unsigned int i_Position, XPathOutputCollector& io_Output);
  TErrorCode evaluateAnchoredChild(Node* i_Node, const XPathStep& i_Step, const XPathStep& i_Next,
                                   unsigned int i_Position, XPathOutputCollector& io_Output);
  TErrorCode searchInDepth(Node* i_Node, const XPathStep& i_Step, unsigned int i_Position,
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

  String m_XPath;
  std::vector<unsigned int> m_StepCounts;  // per prepared path: the index of its leaf step
  std::vector<String> m_XPaths;            // the prepared paths
  unsigned int m_CurrentXPath = 0;
  // Every node that a predicate excluded while searching in depth; never emptied.
  std::unordered_set<const Node*> m_MarkedNodes;
  XPathParser m_XPathParser;
  std::vector<String> m_Tokens;  // the step texts of the current path
  std::vector<BuiltStep> m_Steps;
  XPathChildIndex m_ChildIndex;  // used while this is the outermost evaluation
};

}  // namespace XmlPlugin
