// A location-path operand prepared once: cut at "|" into paths, each path cut into its step
// texts and every step built. Evaluation (XPath) borrows it, so that an operand evaluated for
// many context nodes pays for the text only once.
#pragma once

#include <memory>
#include <vector>

#include "XPathStep.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

// splitXPath's code when the prepared paths and their step counts disagree.
const TErrorCode XPATH_SPLIT_ERROR = -260;

// Stands for the number of an anchored step ("name[position()=N]") in a path compiled for
// every position: the position is handed in at evaluation (XPathEvaluationContext::Anchor).
// A text that holds the mark itself is compiled as it reads and evaluated without anchor.
const wchar_t XPATH_ANCHOR_MARK = L'\x1';
// The largest position the mark stands for: an anchored step reads nine digits at most.
const long XPATH_MAX_ANCHOR = 999999999;

class XPathCompiledPath {
 public:
  // Cuts the operand at "|" and prepares each path: a single leading "/" is dropped (the
  // caller chooses the start node), a leading "//" is kept, and "/endfunction()" is
  // appended unless the path ends with "text()" or an attribute step, so that every path
  // that ends on an element ends in a leaf step that outputs the element. Then builds the
  // steps of every path, each with the code of its building.
  explicit XPathCompiledPath(const String& i_XPath);
  XPathCompiledPath(const XPathCompiledPath&) = delete;
  XPathCompiledPath& operator=(const XPathCompiledPath&) = delete;

  // 0, or XPATH_SPLIT_ERROR when the operand could not be cut.
  TErrorCode getStatus() const { return m_Status; }
  // The operand text; a positive i_Anchor replaces the anchor mark, as traces show it.
  String getText(long i_Anchor) const;
  // i_Text (a path or step text of this operand) as it reads with i_Anchor for the mark.
  static String withAnchor(const String& i_Text, long i_Anchor);
  static std::vector<String> withAnchor(const std::vector<String>& i_Texts, long i_Anchor);
  // True when the operand begins with a single "/": it starts from the root.
  bool isAbsolute() const;
  const std::vector<String>& getPaths() const { return m_Paths; }
  // Per prepared path: the index of its leaf step.
  const std::vector<unsigned int>& getStepCounts() const { return m_StepCounts; }

  // The step texts of path i_Path, in order (the anchor mark left in place).
  const std::vector<String>& getTokens(size_t i_Path) const { return m_Prepared[i_Path].m_Tokens; }
  // Step i_Index of path i_Path, or null; o_Result receives the code of its building.
  const XPathStep* getStep(size_t i_Path, unsigned int i_Index, TErrorCode& o_Result) const;
  // The first step after the first whose axis may reach a node more than once; 0 when no
  // step of the path has such an axis.
  unsigned int firstStepReachingAgain(size_t i_Path) const;
  // Whether some path asks, before its leaf, if a predicate excluded the node's parent: only
  // a step after the first and not searching in depth does. Without such a step, remembering
  // the excluded nodes is wasted work.
  bool asksForExcludedParents() const { return m_AsksForExcludedParents; }
  // Whether the children of a node that the step two before the leaf excluded can give
  // nothing: the step after it is a plain child step (no predicates, no deep search) and the
  // leaf reads children or attributes without predicates, so each child that passes only
  // finds its parent excluded. A walk through them would give no item and no trace.
  bool excludedChildrenGiveNothing(size_t i_Path) const {
    return m_Prepared[i_Path].m_ExcludedChildrenGiveNothing;
  }

  // True when the last step of the path is an attribute step.
  static bool endsWithAttribute(const String& i_Path);

 private:
  struct BuiltStep {
    std::unique_ptr<XPathStep> m_Step;
    TErrorCode m_Result = 0;
  };
  struct PreparedPath {
    std::vector<String> m_Tokens;
    std::vector<BuiltStep> m_Steps;  // one per step text
    unsigned int m_FirstRepeatedStep = 0;
    bool m_ExcludedChildrenGiveNothing = false;
  };

  TErrorCode split();
  void build(const String& i_Path);

  String m_Text;
  TErrorCode m_Status = 0;
  std::vector<String> m_Paths;
  std::vector<unsigned int> m_StepCounts;
  std::vector<PreparedPath> m_Prepared;
  bool m_AsksForExcludedParents = false;
};

// Inline: evaluation asks for a step at every node it visits.
inline const XPathStep* XPathCompiledPath::getStep(size_t i_Path, unsigned int i_Index,
                                                   TErrorCode& o_Result) const {
  const std::vector<BuiltStep>& steps = m_Prepared[i_Path].m_Steps;
  if (i_Index >= steps.size()) {
    o_Result = HOST_ERROR_OUT_OF_RANGE;
    return nullptr;
  }
  o_Result = steps[i_Index].m_Result;
  return steps[i_Index].m_Step.get();
}

}  // namespace XmlPlugin
