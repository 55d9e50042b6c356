// A relative location path of one plain step, "name" or "@name", as a predicate reads it.
//
// Inside a predicate such a path is anchored at the candidate: "parent/name[position()=N]/step"
// evaluated from the candidate's parent, where N is the candidate's position among the
// candidates of its name (see XPathArgument). The anchored node is thus the N-th child of the
// parent with the candidate's name, which is not always the candidate itself. This class
// finds the same node and makes the same items, counting the same work, without compiling
// or walking the anchored path: predicates over large documents mostly read such paths.
#pragma once

#include <memory>

#include "XPathOutputElement.h"
#include "XPathStep.h"
#include "host/Node.h"
#include "host/String.h"

namespace XmlPlugin {

class XPathEvaluationContext;

// How an operand's items read against a text, as "=" and "!=" with a string compare them:
// no item, or one item reading equal to the text or not; undecided when only evaluating the
// operand can tell.
enum class TextReading { none, equal, different, undecided };

class XPathDirectOperand {
 public:
  // Null when i_Text is anything but one plain step: an ASCII name, "@" and such a name.
  static std::unique_ptr<XPathDirectOperand> recognize(const String& i_Text);

  // False where the anchored path would not read as described above: a candidate without
  // parent, no anchor, or a name that the path text would read otherwise.
  static bool applies(const Node* i_pCandidate, long i_Position);

  // Replaces o_Items (which owns them) by the anchored path's items in document order; empty
  // when the request's budget refuses the work.
  void evaluate(const Node* i_pCandidate, long i_Position, XPathEvaluationContext& io_Context,
                XPathOutputElements& o_Items) const;

  bool readsAttribute() const { return m_ChildName.isEmpty(); }
  // For "@name": how the item evaluate would make reads against i_Text, counting the same
  // work but making no item (none, equal or different).
  TextReading compareAttribute(const Node* i_pCandidate, long i_Position, const String& i_Text,
                               XPathEvaluationContext& io_Context) const;

 private:
  XPathDirectOperand(const String& i_Name, bool i_Attribute);
  // Finds the candidate's anchored node as the path's first two steps would, counting their
  // work, and hands it to i_Read(Node*) within them. True when there is none; false when
  // refused or when the parent's children cannot be listed; otherwise what i_Read answers.
  template <typename Read>
  static bool reachAnchored(const Node* i_pCandidate, long i_Position,
                            XPathEvaluationContext& io_Context, Read i_Read);
  // The child step's work from the anchored node on; false when refused.
  bool evaluateChildren(Node* i_pAnchored, XPathOutputCollector& io_Output,
                        XPathEvaluationContext& io_Context) const;
  // The leaf's work on a node the step before matched; false when refused.
  bool evaluateLeaf(Node* i_pNode, XPathOutputCollector& io_Output,
                    XPathEvaluationContext& io_Context) const;

  String m_ChildName;    // the step's name test; empty for an attribute
  XPathLeafStep m_Leaf;  // "@name", or the end of a path of elements
};

}  // namespace XmlPlugin
