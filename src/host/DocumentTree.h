// The root element of a document's tree, which owns the storage of the whole tree.
#pragma once

#include <cstddef>
#include <memory>

#include "TreeArena.h"
#include "host/Node.h"
#include "host/StringMap.h"

// The map of every node without attributes; nobody changes it.
StringMap* noAttributes();

// Deleting the root frees the whole tree at once.
class DocumentRoot : public Node {
 public:
  DocumentRoot(const String& i_Name, int32_t i_Index, StringMap* i_Attributes)
      : Node(ElementNode, i_Name, i_Index, i_Attributes, nullptr) {}
  // The name's characters are in the storage, so the name goes before the storage does.
  ~DocumentRoot() override { m_Name = String(); }

  // Takes over the storage of the rest of the tree, which has i_NodeCount nodes in all.
  void adopt(std::unique_ptr<TreeArena> i_pStorage, size_t i_NodeCount) {
    m_pStorage = std::move(i_pStorage);
    m_NodeCount = i_NodeCount;
  }

  // Bytes the whole tree holds.
  size_t bytes() const {
    return sizeof(*this) + sizeof(TreeArena) + (m_pStorage ? m_pStorage->bytes() : 0);
  }
  size_t nodeCount() const { return m_NodeCount; }

 private:
  std::unique_ptr<TreeArena> m_pStorage;
  size_t m_NodeCount = 0;
};
