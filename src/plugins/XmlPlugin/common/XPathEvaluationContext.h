// What one request's evaluation shares across all its path operands and predicates: one
// work budget, the refusal once that budget or the nesting bound is passed, and indexes over
// the tree (which does not change while the request runs).
#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathEvaluationObserver;
class XPathStep;

// Bounds of one request; past them it fails with XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION.
// How deeply steps may nest: twice the reader's deepest document, so that a path may climb
// to the top of such a document and search all the way down again.
const unsigned int XPATH_MAX_STEP_NESTING = 4096;
// How much work a request may do, in units of about one node visited: a node tried against a
// step, a child listed, an ancestor climbed, a sibling passed, a step call remembered. Measured
// in a release build (bench/hostile-queries.sh and the predicates below): a unit took 17-46 ns,
// so the bound is reached within about 1 s (the hostile preceding-sibling request: 0.5 s). A
// path that makes an item of every element of a document reaches it at about 4 million
// elements.
const unsigned long XPATH_MAX_STEP_EVALUATIONS = 20000000;

// What a result item costs besides the visit that made it: making it, copying it out of the
// operand and ordering it cost about as much as visiting two nodes.
const unsigned long XPATH_ITEM_COST = 2;

// What the evaluation of a predicate for one candidate costs, in units, besides the paths it
// evaluates: a fixed part and a part per item of the compiled expression (the text is read
// once, not per candidate). Measured in a release build over <r> of 100,000 empty <v/> with
// xmlquery: 0.56 us a candidate for //v[.=""] (3 items, 33 units: 17 ns a unit), 2.6 us for
// //v[string-length(concat(name(), "abc")) > 2] (6 items, 60 units: 43 ns), 0.33 ms for
// //v[1+1+...+1=400] (801 items, 7215 units: 46 ns; refused after 0.9 s).
const unsigned long XPATH_PREDICATE_EVALUATION_COST = 6;
const unsigned long XPATH_PREDICATE_ITEM_COST = 9;

class XPathEvaluationContext {
 public:
  // A request allowed i_MaxWork units of work.
  explicit XPathEvaluationContext(unsigned long i_MaxWork = XPATH_MAX_STEP_EVALUATIONS);
  XPathEvaluationContext(const XPathEvaluationContext&) = delete;
  XPathEvaluationContext& operator=(const XPathEvaluationContext&) = delete;

  // Counts i_Cost units of work; false (and the request refused for good) past the budget
  // or the nesting bound.
  bool admit(unsigned long i_Cost);
  // True once anything was refused: the request then fails as a whole, also where the
  // refusal happened inside an operand or a predicate whose own failures are dropped.
  bool isRefused() const { return m_Refused; }
  unsigned long getWork() const { return m_Work; }

  // Who watches the evaluation (borrowed), or null: nobody, the default.
  XPathEvaluationObserver* getObserver() const { return m_pObserver; }
  void setObserver(XPathEvaluationObserver* i_pObserver) { m_pObserver = i_pObserver; }

  // One more level of step evaluation under way, while the guard lives.
  class Nesting {
   public:
    explicit Nesting(XPathEvaluationContext& io_Context) : m_Context(io_Context) {
      ++m_Context.m_Nesting;
    }
    ~Nesting() { --m_Context.m_Nesting; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    XPathEvaluationContext& m_Context;
  };

  // The candidate a predicate is judging, while the guard lives, with its place in the
  // candidate list: position() then finds it without searching the list.
  class Candidate {
   public:
    Candidate(XPathEvaluationContext& io_Context, const std::list<Node*>& i_Candidates,
              const Node* i_pNode, long i_Position)
        : m_Context(io_Context) {
      m_Context.m_Candidates.push_back(CandidatePlace{&i_Candidates, i_pNode, i_Position});
    }
    ~Candidate() { m_Context.m_Candidates.pop_back(); }
    Candidate(const Candidate&) = delete;
    Candidate& operator=(const Candidate&) = delete;

   private:
    XPathEvaluationContext& m_Context;
  };

  // The position of the anchored step of the path under evaluation, while the guard lives
  // (a path evaluated inside it sets its own and gives this one back).
  class Anchor {
   public:
    Anchor(XPathEvaluationContext& io_Context, long i_Position)
        : m_Context(io_Context), m_Outer(io_Context.m_Anchor) {
      m_Context.m_Anchor = i_Position;
    }
    ~Anchor() { m_Context.m_Anchor = m_Outer; }
    Anchor(const Anchor&) = delete;
    Anchor& operator=(const Anchor&) = delete;

   private:
    XPathEvaluationContext& m_Context;
    long m_Outer;
  };
  long getAnchor() const { return m_Anchor; }

  // The 1-based place of i_pNode in i_Siblings, 0 when it is not there; constant time for
  // the candidate being judged.
  long positionAmong(const std::list<Node*>& i_Siblings, const Node* i_pNode);

  // The i_Position-th (1-based) element child of i_pParent that passes i_Step's name test,
  // or null; getting the children may fail with the host's code. Each parent's children
  // are listed once per name test, so that an anchored step ("name[position()=N]", which
  // relative paths inside predicates begin with) finds its node without walking all
  // siblings for every candidate.
  TErrorCode nthChild(const Node* i_pParent, const XPathStep& i_Step, long i_Position,
                      Node*& o_pChild);
  // The same for the name test of exactly i_Name.
  TErrorCode nthChild(const Node* i_pParent, const String& i_Name, long i_Position,
                      Node*& o_pChild);
  // The text the host writes attribute numbers into: one for the whole request lets the host
  // reuse its buffer instead of allocating one per lookup.
  String& attributeNumber() { return m_AttributeNumber; }

  // The first text child of a node, or null, in constant time however many children come
  // before it; -101 for a null node.
  TErrorCode firstTextChild(const Node* i_pNode, Node*& o_pText);
  // The place of i_pChild among all children of i_pParent, whatever their kind, in
  // constant time; the child count when it is not among them.
  size_t childPosition(const Node* i_pParent, const Node* i_pChild);

 private:
  void refuse();

  struct CandidatePlace {
    const std::list<Node*>* m_pCandidates;
    const Node* m_pNode;
    long m_Position;
  };

  unsigned long m_MaxWork;
  unsigned long m_Work = 0;
  unsigned int m_Nesting = 0;
  bool m_Refused = false;
  XPathEvaluationObserver* m_pObserver = nullptr;
  long m_Anchor = 0;
  std::vector<CandidatePlace> m_Candidates;  // innermost last

  typedef std::pair<const Node*, String> ChildKey;
  struct ChildKeyHash {
    size_t operator()(const ChildKey& i_Key) const;
  };
  // The children of i_pParent that pass i_Matches, listed on first use under i_Name, or null
  // when the host cannot list them (*o_pResult then holds its code).
  template <typename Matches>
  const std::vector<Node*>* namedChildren(const Node* i_pParent, const String& i_Name,
                                          Matches i_Matches, TErrorCode* o_pResult);
  // Picks the i_Position-th (1-based) of the listed children, or null.
  static TErrorCode pick(const std::vector<Node*>* i_pChildren, TErrorCode i_Result,
                         long i_Position, Node*& o_pChild);

  std::unordered_map<ChildKey, std::vector<Node*>, ChildKeyHash> m_NamedChildren;
  // The last list asked for: the candidates of a predicate mostly share parent and name.
  const Node* m_pLastParent = nullptr;
  String m_LastName;
  const std::vector<Node*>* m_pLastNamed = nullptr;
  std::unordered_map<const Node*, Node*> m_FirstTexts;  // of elements with many children
  String m_AttributeNumber;
  std::unordered_set<const Node*> m_IndexedParents;
  std::unordered_map<const Node*, size_t> m_ChildPositions;  // of their children
};

// Inline: every node visited asks.
inline bool XPathEvaluationContext::admit(unsigned long i_Cost) {
  if (m_Refused || m_Nesting >= XPATH_MAX_STEP_NESTING || m_Work + i_Cost > m_MaxWork) {
    refuse();
    return false;
  }
  m_Work += i_Cost;
  return true;
}

}  // namespace XmlPlugin
