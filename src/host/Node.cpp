#include "host/Node.h"

Node::Node(int i_Type, const String& i_Name, int32_t i_Index, StringMap* i_Attributes,
           Node* i_Parent)
    : m_Name(i_Name),
      m_Index(i_Index),
      m_Type(i_Type),
      m_Attributes(i_Attributes),
      m_pParent(i_Parent),
      m_pChildren(nullptr) {}

Node::Node(const Node& i_Other)
    : m_Name(i_Other.m_Name),
      m_Index(i_Other.m_Index),
      m_Type(i_Other.m_Type),
      m_Attributes(i_Other.m_Attributes),
      m_pParent(i_Other.m_pParent),
      m_pChildren(i_Other.m_pChildren) {}

Node::~Node() {}

int Node::getType() const {
  return m_Type;
}

TErrorCode Node::getChildren(const NodeList** o_pChildren) const {
  if (o_pChildren == nullptr) {
    return HOST_ERROR_BAD_ARGUMENT;
  }
  *o_pChildren = m_pChildren;
  return 0;
}
