// The host's XML tree node.
//
// A tree is built by NodeReader and handed to a NodeSink as its root element.
// Deleting the root (through the virtual destructor) frees the whole tree, without
// recursion; no other node of a tree may be deleted. A copy made with the copy
// constructor is shallow: it has the same name, number, kind, attributes and
// relatives as the original, owns nothing and may be deleted freely. The strings of a
// tree (names, texts, attribute names and values, and copies of them) keep their
// characters in the tree's storage: they are valid as long as the tree is.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/String.h"
#include "host/StringMap.h"
#include "host/Types.h"

class Node;

// Node kinds returned by getType().
enum NodeType {
  ElementNode = 0,
  TextNode = 1,
  CommentNode = 7,
  ProcessingInstructionNode = 8,
};

// A node's children in document order; owned by the node.
class NodeList {
 public:
  NodeList(Node* const* i_Items, size_t i_Count) : m_Items(i_Items), m_Count(i_Count) {}
  size_t size() const { return m_Count; }
  bool empty() const { return m_Count == 0; }
  Node* operator[](size_t i_Index) const { return m_Items[i_Index]; }
  Node* const* begin() const { return m_Items; }
  Node* const* end() const { return m_Items + m_Count; }

 private:
  Node* const* m_Items;
  size_t m_Count;
};

class Node {
 public:
  Node(int i_Type, const String& i_Name, int32_t i_Index, StringMap* i_Attributes, Node* i_Parent);
  Node(const Node& i_Other);
  Node& operator=(const Node&) = delete;
  virtual ~Node();

  virtual int getType() const;

  // On success (0) *o_pChildren points at the node's own child list, or is null when the
  // node has no children.
  TErrorCode getChildren(const NodeList** o_pChildren) const;
  Node* getParent() const { return m_pParent; }

  // For an element its tag name as written (prefix included); for a text node the text;
  // for a comment its text; for a processing instruction its target.
  String m_Name;
  // Document-order number: distinct for every node of a tree, growing in document order.
  // An element with n attributes reserves the n numbers after its own for them.
  int32_t m_Index;

 private:
  int m_Type;  // kept beside m_Index so the two share one word

 public:
  // The element's attributes; never null for an element (an empty map when it has none).
  StringMap* m_Attributes;

  // Used by the reader while it builds a tree.
  void setChildren(const NodeList* i_pChildren) { m_pChildren = i_pChildren; }

 private:
  Node* m_pParent;
  const NodeList* m_pChildren;
};
