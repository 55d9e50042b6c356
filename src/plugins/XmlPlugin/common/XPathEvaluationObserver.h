// What a person may watch of one evaluation: hooks that the engine calls at the points where it
// decides something, so that an account of the evaluation comes from the evaluation itself.
// A request carries an observer only when one is asked for (XPathEvaluationContext), so the
// hooks cost one pointer test otherwise. The arguments are borrowed for the call only.
#pragma once

#include <cstddef>
#include <vector>

#include "XPathOutputElement.h"
#include "XPathTypes.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathExpressionsParser;

class XPathEvaluationObserver {
 public:
  virtual ~XPathEvaluationObserver() = default;

  // A compiled expression is about to run: its items in source and in postfix order.
  virtual void expressionStarted(const XPathExpressionsParser& i_Parser) = 0;

  // A location-path operand as its operand anchored it, cut at "|" into prepared paths, to be
  // evaluated from i_pRoot.
  virtual void pathsPrepared(const String& i_Anchored, const std::vector<String>& i_Paths,
                             const Node* i_pRoot) = 0;
  // One prepared path is about to be evaluated: the texts of its steps, the leaf last.
  virtual void pathStarted(const std::vector<String>& i_Steps) = 0;
  // Step i_Index of the current path matched i_pNode; a marked node was excluded by the
  // step's predicates and only its descendants go on.
  virtual void stepMatched(unsigned int i_Index, const Node* i_pNode, bool i_Marked) = 0;
  // The leaf of the current path made i_Items items of a node.
  virtual void itemsMade(size_t i_Items) = 0;
  // The operand's items in document order, and its code.
  virtual void pathsEvaluated(const XPathOutputElements& i_Items, TErrorCode i_Result) = 0;

  // A predicate (its text without brackets) is about to judge i_Candidates nodes.
  virtual void predicateStarted(const String& i_Condition, size_t i_Candidates) = 0;
  // The verdict on the candidate at 1-based i_Position: i_Parser holds the value the
  // condition gave, unless i_Result says its run failed.
  virtual void candidateJudged(const Node& i_Candidate, long i_Position,
                               const XPathExpressionsParser& i_Parser, TErrorCode i_Result,
                               bool i_Keep) = 0;
  virtual void predicateFinished(size_t i_Kept, TErrorCode i_Result) = 0;

  // The request's value, as shaped for the host.
  virtual void valueShaped(XPathDataType i_Type, const XPathOutputElements& i_Values) = 0;
};

}  // namespace XmlPlugin
