// The storage of one document's tree and the root element that owns it.
#pragma once

#include <memory>

#include "Arena.h"
#include "host/Node.h"
#include "host/StringMap.h"

// Everything below the root: nodes, child lists, attribute maps and their strings.
struct TreeStorage {
  Arena<Node> m_Nodes;
  Arena<Node*> m_ChildPointers;
  Arena<NodeList> m_ChildLists;
  Arena<StringMap> m_AttributeMaps;
  Arena<String> m_AttributeStrings;

  // The map of every node without attributes; nobody changes it.
  static StringMap* noAttributes();
};

// The root element of a tree. Deleting it frees the whole tree.
class DocumentRoot : public Node {
 public:
  DocumentRoot(const String& i_Name, int32_t i_Index, StringMap* i_Attributes)
      : Node(ElementNode, i_Name, i_Index, i_Attributes, nullptr) {}

  // Takes over the storage of the rest of the tree.
  void adopt(std::unique_ptr<TreeStorage> i_pStorage) { m_pStorage = std::move(i_pStorage); }

 private:
  std::unique_ptr<TreeStorage> m_pStorage;
};
