// One bracketed predicate of a location step.
#pragma once

#include <list>
#include <memory>

#include "XPathOutputElement.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathEvaluationContext;
class XPathExpressionsParser;

class XPathPredicate {
 public:
  // i_Expression is the predicate text with its square brackets.
  explicit XPathPredicate(const String& i_Expression);
  // The predicate from i_Open to i_Close (its brackets) in a step text that the step's
  // predicates share, so that predicates overlapping in the text cost no copy each.
  XPathPredicate(const std::shared_ptr<const String>& i_pText, int i_Open, int i_Close);

  // Keeps, in order, the candidates for which the predicate holds. Every candidate gets
  // an evaluation of its own with the candidate as context node and the whole list as its
  // siblings. A boolean result keeps when it is true, a number when it equals the
  // candidate's position in the list, a string or a node set always; a candidate whose
  // evaluation fails or gives no value is dropped. The code is that of the last candidate's
  // evaluation (0 for an empty list); the kept nodes are written back also on failure.
  // XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION for an empty predicate, list unchanged.
  // The evaluations draw on io_Context.
  TErrorCode fiterNodes(std::list<Node*>& io_Nodes, XPathEvaluationContext& io_Context) const;

  // False for "[]", which fails whatever the candidates.
  bool hasCondition() const { return m_Close - m_Open >= 2; }

  // The predicate text with its brackets.
  String getExpression() const { return m_pText->substring(m_Open, m_Close); }

  // N when the predicate is "[position()=N]" (N a positive decimal, blanks allowed around
  // the "="), the form that anchors a relative path at its context node; 0 otherwise. Such a
  // predicate keeps the candidate at place N (a candidate without parent counts as place 1) and is
  // decided without an evaluation per candidate, with the same outcome. For the anchor mark
  // in place of N (XPATH_ANCHOR_MARK), N is i_Context's anchor.
  long getAnchoredPosition(const XPathEvaluationContext& i_Context) const;

 private:
  long anchoredPosition() const;
  // The predicate text without its brackets, the anchor mark read as i_Context's anchor.
  String condition(const XPathEvaluationContext& i_Context) const;
  void keepAnchored(std::list<Node*>& io_Nodes, long i_Position) const;
  // fiterNodes over a list that is not empty: the condition compiled once, run per candidate.
  TErrorCode keepMatching(std::list<Node*>& io_Nodes, XPathEvaluationContext& io_Context) const;
  // One candidate's verdict from a run of the compiled condition; i_Cost is what the run
  // counts against the request's work budget. io_Values is an empty list to take the run's
  // value, emptied again on return.
  TErrorCode judge(XPathExpressionsParser& io_Parser, unsigned long i_Cost, Node* i_pCandidate,
                   std::list<Node*>& i_Candidates, long i_RootPosition, long i_Position,
                   XPathEvaluationContext& io_Context, XPathOutputElements& io_Values,
                   bool& o_Keep) const;

  std::shared_ptr<const String> m_pText;
  int m_Open;               // the opening bracket in m_pText
  int m_Close;              // the closing bracket
  long m_AnchoredPosition;  // -1 for the anchor mark
};

}  // namespace XmlPlugin
