// Feeds the input bytes to the host reader as a file, once with the default options and once
// with every option set and small chunks, and walks each tree it delivers.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "TestXml.h"

namespace {

// Touches every node, name and attribute, without recursion.
void walk(const Node* i_pRoot) {
  std::vector<const Node*> pending{i_pRoot};
  while (!pending.empty()) {
    const Node* pNode = pending.back();
    pending.pop_back();
    pNode->m_Name.toNarrow();
    String name;
    String value;
    for (int i = 0; pNode->m_Attributes->getEntry(i, name, value) == 0; ++i) {
      String number;
      if (pNode->m_Attributes->getEntry(name, value, number) != 0) {
        __builtin_trap();
      }
    }
    for (const Node* pChild : TestXml::children(pNode)) {
      if (pChild->getParent() != pNode) {
        __builtin_trap();
      }
      pending.push_back(pChild);
    }
  }
}

void read(const std::string& i_Path, bool i_AllOptions) {
  TestXml::KeepingSink sink;
  NodeReader reader(sink);
  if (i_AllOptions) {
    reader.m_KeepBlankText = 1;
    reader.m_SkipComments = 1;
    reader.m_TrimText = 1;
    reader.m_ChunkSize = 7;
  }
  reader.process(String(i_Path.c_str()), 0);
  // A tree exactly when the status says success, and a message exactly on failure.
  if ((reader.m_Status == 0) != (sink.m_Tree != nullptr) ||
      (reader.m_Status == 0) != (sink.m_Messages == 0)) {
    __builtin_trap();
  }
  if (sink.m_Tree) {
    walk(sink.m_Tree.get());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* i_pData, size_t i_Size) {
  const TestXml::TempFile file(std::string(reinterpret_cast<const char*>(i_pData), i_Size));
  if (file.path().empty()) {
    __builtin_trap();
  }
  read(file.path(), false);
  read(file.path(), true);
  return 0;
}
