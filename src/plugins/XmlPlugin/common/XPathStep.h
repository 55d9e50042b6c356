// Location steps: one step of a path with its name test, axis and predicates, and what the
// last step of a path contributes to the result.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <utility>
#include <vector>

#include "XPathFlatSet.h"
#include "XPathOutputElement.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPathEvaluationContext;
class XPathPredicate;

// The place of a step in its path.
enum StepType {
  root = 0,  // the first step
  mid = 1,   // a step that another step follows
  leaf = 2,  // the last step
};

// The values matter: evaluation groups axes by them.
enum StepAxis {
  attribute = 0,  // also "@"
  child = 1,      // also the default and any unknown axis name
  descendant = 2,
  self = 3,
  descendant_or_self = 4,
  following = 5,
  preceding = 6,
  ancestor = 7,
  ancestor_or_self = 8,
  following_sibling = 9,
  preceding_sibling = 10,
  parent = 11,
};

typedef std::vector<std::unique_ptr<XPathPredicate>> XPathPredicates;

// A hash of the characters of a string, for indexes keyed by names and texts.
size_t hashText(const String& i_Text);

// The items one evaluation produces, kept in an owning vector. The result keeps, of the
// items sharing a document-order number, only the first made, so the collector keeps just
// that one: which later items would have been added meanwhile (attribute items always,
// others unless one with the same number and text is there) changes nothing in the result,
// and the items stay as many as the document has numbers. While the collector lives, items
// reach the vector only through it.
class XPathOutputCollector {
 public:
  // Borrows io_Items and indexes what it already holds. With i_OnlyCounted the items will
  // only be counted: an element's item then goes without the element's text.
  explicit XPathOutputCollector(XPathOutputElements& io_Items, bool i_OnlyCounted = false);
  XPathOutputCollector(const XPathOutputCollector&) = delete;
  XPathOutputCollector& operator=(const XPathOutputCollector&) = delete;

  // Appends the item unless one with its number is there; a refused item is deleted.
  void add(std::unique_ptr<XPathOutputElement> i_pItem);

  const XPathOutputElements& items() const { return m_Items; }
  bool onlyCounted() const { return m_OnlyCounted; }
  // True while every item came with a number above the one before: they are sorted.
  bool inOrder() const { return m_InOrder; }

 private:
  // True when no item with the number was kept yet, which it then is. While numbers come in
  // ascending order (document order, as most paths make them) no set is needed.
  bool keepNumber(int32_t i_Number);

  XPathOutputElements& m_Items;
  bool m_OnlyCounted;
  bool m_InOrder = true;  // every number so far above the one before
  bool m_HasLast = false;
  int32_t m_Last = 0;
  XPathFlatSet<int32_t> m_Numbers;  // every number kept, once out of order
};

// One step of a location path. A step is immutable once built, so one object serves every
// node that evaluation offers it.
class XPathStep {
 public:
  virtual ~XPathStep();
  XPathStep(const XPathStep&) = delete;
  XPathStep& operator=(const XPathStep&) = delete;

  // Builds the step of the given kind from its text (name test with axis and predicates).
  // A root step needs a name, the others also the text of the step before:
  // XML_PLUGIN_ERROR_XPATH_WRONG_ROOT, _WRONG_MID or _WRONG_LEAF otherwise; malformed
  // brackets give parseName's code. o_Step is null on failure.
  static TErrorCode get(const String& i_Name, const String& i_PrevName, StepType i_StepType,
                        std::unique_ptr<XPathStep>& o_Step);

  // Splits a step text into name test, axis and predicates (brackets kept, in text order);
  // "." and ".." stand for "self::*" and "parent::*". Each predicate is given the value
  // io_Axis holds on entry. XML_PLUGIN_ERROR_XPATH_WRONG_MID for malformed brackets or an
  // empty name; the outputs then hold what was parsed.
  static TErrorCode parseName(const String& i_Text, String& o_Name, XPathPredicates& o_Predicates,
                              StepAxis& io_Axis);

  // The axis of an axis name; `child` for an unknown one.
  static StepAxis receiveAxis(const String& i_AxisName);

  // The element children of a node in document order; -101 for a null node.
  static TErrorCode getChildrenXmlNodes(const Node* i_Node, std::list<Node*>& o_Nodes);
  // The first text child of a node, or null; -101 for a null node.
  static TErrorCode getTextNode(const Node* i_Node, Node*& o_Text);

  // What a node that the step before matched contributes to the result. Only a leaf
  // produces items; the other kinds answer XML_PLUGIN_ERROR_XPATH_NOT_FOUND.
  virtual TErrorCode evaluateNode(Node* i_Node, XPathOutputCollector& io_Output,
                                  XPathEvaluationContext& io_Context) const;

  // The name test, 1 or 0: the exact name, "*" or "node()"; the axis plays no part.
  int stepMatching(const Node* i_Node) const;

  // Keeps the nodes that pass the name test and every predicate; without predicates the
  // list stays as it is. XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION when a predicate
  // fails (the predicates after it are not applied).
  TErrorCode filterNodes(std::list<Node*>& io_Nodes, XPathEvaluationContext& io_Context) const;

  // Replaces o_Marked by one verdict per candidate, in order: marked when the step has
  // predicates and the node fails the name test or a predicate. The same code as
  // filterNodes; the verdicts are written also on failure.
  TErrorCode markFilteredNodes(const std::list<Node*>& i_Nodes, std::vector<MarkedNode>& o_Marked,
                               XPathEvaluationContext& io_Context) const;
  // markFilteredNodes on candidates already listed: rewrites each one's verdict.
  TErrorCode markFiltered(std::vector<MarkedNode>& io_Candidates,
                          XPathEvaluationContext& io_Context) const;

  // N when the step's one predicate is "[position()=N]", blanks allowed (it selects the N-th
  // candidate that passes the name test); 0 otherwise. An anchor mark for N reads the
  // position from i_Context.
  long getAnchoredPosition(const XPathEvaluationContext& i_Context) const;

  const String& getName() const { return m_Name; }
  // The name is "text()", or "*"; read once, when the step is built.
  bool isTextTest() const { return m_TextTest; }
  bool isStarName() const { return m_StarName; }
  StepType getStepType() const { return m_StepType; }
  StepAxis getAxis() const { return m_Axis; }
  const XPathPredicates& getPredicates() const { return m_Predicates; }
  // True when the step's text began with "//": the step is tried on every descendant.
  bool isAbsoluteDeepSearch() const { return m_AbsoluteDeepSearch; }
  void setAbsoluteDeepSearch(bool i_Deep) { m_AbsoluteDeepSearch = i_Deep; }

 protected:
  XPathStep(StepType i_StepType, const String& i_Name, StepAxis i_Axis,
            XPathPredicates&& i_Predicates);

 private:
  // filterNodes on nodes that passed the name test already.
  TErrorCode applyPredicates(std::list<Node*>& io_Nodes, XPathEvaluationContext& io_Context) const;

  XPathPredicates m_Predicates;
  String m_Name;
  StepType m_StepType;
  StepAxis m_Axis;
  bool m_AbsoluteDeepSearch = false;
  bool m_StarName;                       // "*"
  bool m_AnyName;                        // "*" or "node()": every node passes the name test
  bool m_TextTest;                       // "text()"
  long m_LastPredicateWithoutText = -1;  // the index of the last "[]", -1 without one
};

// The first step of a path.
class XPathRootStep : public XPathStep {
 public:
  XPathRootStep(const String& i_Name, StepAxis i_Axis, XPathPredicates&& i_Predicates)
      : XPathStep(root, i_Name, i_Axis, std::move(i_Predicates)) {}
};

// A step between the first and the last.
class XPathMidStep : public XPathStep {
 public:
  XPathMidStep(const String& i_Name, StepAxis i_Axis, XPathPredicates&& i_Predicates)
      : XPathStep(mid, i_Name, i_Axis, std::move(i_Predicates)) {}
};

// The last step of a path: turns the nodes the step before matched into result items.
class XPathLeafStep : public XPathStep {
 public:
  XPathLeafStep(const String& i_Name, StepAxis i_Axis, XPathPredicates&& i_Predicates)
      : XPathStep(leaf, i_Name, i_Axis, std::move(i_Predicates)) {}

  // i_Node is an element that the step before matched:
  // - "text()" on the child axis: its first text child (XML_PLUGIN_ERROR_XPATH_NOT_FOUND
  //   when there is none);
  // - any other name on an axis other than `attribute`: the element itself with its text,
  //   added even when getting the text fails, whose code is then returned;
  // - "@*": every attribute, numbered from the element's number on;
  // - "@name": that attribute with the number the lookup reports
  //   (XML_PLUGIN_ERROR_XPATH_NOT_FOUND when it is absent).
  TErrorCode evaluateNode(Node* i_Node, XPathOutputCollector& io_Output,
                          XPathEvaluationContext& io_Context) const override;

  // What "@name" reads on i_Node, as evaluateNode would make its item: 0 with the value
  // and the number, XML_PLUGIN_ERROR_XPATH_NOT_FOUND when the attribute is absent, or the
  // host's code.
  TErrorCode readAttribute(Node* i_Node, String& o_Value, int32_t& o_Number,
                           XPathEvaluationContext& io_Context) const;

  // Adds the item to the output (see XPathOutputCollector); returns 0.
  static TErrorCode addElement(std::unique_ptr<XPathOutputElement> i_pItem,
                               XPathOutputCollector& io_Output);

 private:
  TErrorCode evaluateText(Node* i_Node, XPathOutputCollector& io_Output,
                          XPathEvaluationContext& io_Context) const;
  TErrorCode evaluateElement(Node* i_Node, XPathOutputCollector& io_Output,
                             XPathEvaluationContext& io_Context) const;
  TErrorCode evaluateAttributes(Node* i_Node, XPathOutputCollector& io_Output) const;
  TErrorCode evaluateAttribute(Node* i_Node, XPathOutputCollector& io_Output,
                               XPathEvaluationContext& io_Context) const;
};

}  // namespace XmlPlugin
