// One item of an evaluation result, and the candidate record of location-path evaluation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/Node.h"
#include "host/String.h"

namespace XmlPlugin {

class XPathOutputElement {
 public:
  XPathOutputElement() = default;
  // An item that stands for a node; the strings are copied as they are made.
  XPathOutputElement(const String& i_NodeText, const String& i_Value, int32_t i_Index,
                     Node* i_pNode)
      : m_NodeText(i_NodeText), m_Value(i_Value), m_Index(i_Index), m_Node(i_pNode) {}

  String m_NodeText;       // the text the item stands for as a node; empty for computed items
  String m_Value;          // the item's string result (attribute value, text, computed value)
  int32_t m_Index = 0;     // document-order number of what the item stands for
  Node* m_Node = nullptr;  // the element the item belongs to; null for computed items

  // The string the host receives for this item: the node text for an item that stands for
  // a node, the value for a computed one.
  const String& hostValue() const { return m_Node != nullptr ? m_NodeText : m_Value; }

  // Items are made and freed by the ten thousand: each thread keeps the memory of freed
  // items, up to a bound, for the next ones.
  static void* operator new(size_t i_Size);
  static void operator delete(void* i_pItem, size_t i_Size);
};

// A vector of output elements owns them: whoever holds the vector deletes the items
// (deleteOutputElements) or hands them on to another owning vector.
typedef std::vector<XPathOutputElement*> XPathOutputElements;

// Deletes every item and empties the vector.
void deleteOutputElements(XPathOutputElements& io_Elements);

// Deletes the items of an owning vector when it goes out of scope.
class OutputElementsGuard {
 public:
  explicit OutputElementsGuard(XPathOutputElements& i_Elements) : m_Elements(i_Elements) {}
  ~OutputElementsGuard() { deleteOutputElements(m_Elements); }
  OutputElementsGuard(const OutputElementsGuard&) = delete;
  OutputElementsGuard& operator=(const OutputElementsGuard&) = delete;

 private:
  XPathOutputElements& m_Elements;
};

// Ascending document order.
bool XPathOutputElement_comparator(const XPathOutputElement*& i_First,
                                   const XPathOutputElement*& i_Second);
struct cmp {
  bool operator()(const XPathOutputElement* i_First, const XPathOutputElement* i_Second) const {
    return i_First->m_Index < i_Second->m_Index;
  }
};

// Whether a step's name test was applied to a listed node, and its outcome.
enum class NameTest : uint8_t { untried, passes, fails };

// A candidate node with its predicate verdict: m_Marked is true when the step's
// predicates excluded the node. A walk that lists the children for a step may apply the
// step's name test and read each child's number as it lists them, so that the later passes
// over a long list need not fetch every node from memory again; m_Number is the node's
// number only when the name test was tried.
struct MarkedNode {
  Node* m_Node = nullptr;
  bool m_Marked = false;
  NameTest m_NameTest = NameTest::untried;
  int32_t m_Number = 0;
};

}  // namespace XmlPlugin
