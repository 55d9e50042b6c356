#include "XPathNodeListSpare.h"

#include <cstddef>

namespace XmlPlugin {

namespace {

#if defined(__SANITIZE_ADDRESS__)
const size_t KEPT_LIST_NODES = 0;
#else
const size_t KEPT_LIST_NODES = 1u << 17;
#endif

thread_local std::list<Node*> t_Spare;

}  // namespace

void XPathNodeListSpare::append(std::list<Node*>& io_List, Node* i_pNode) {
  std::list<Node*>& spare = t_Spare;
  if (spare.empty()) {
    io_List.push_back(i_pNode);
    return;
  }
  io_List.splice(io_List.end(), spare, spare.begin());
  io_List.back() = i_pNode;
}

void XPathNodeListSpare::recycle(std::list<Node*>& io_List) {
  std::list<Node*>& spare = t_Spare;
  if (spare.size() + io_List.size() > KEPT_LIST_NODES) {
    io_List.clear();
    return;
  }
  spare.splice(spare.end(), io_List);
}

}  // namespace XmlPlugin
