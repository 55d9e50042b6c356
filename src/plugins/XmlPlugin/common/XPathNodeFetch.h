// Asking memory early for nodes that a walk reads soon.
#pragma once

#include <cstdint>

#include "host/Node.h"

namespace XmlPlugin {

// How many places ahead of the node being read a walk over a long list asks for the next one:
// trying a node costs less than fetching it from memory.
const unsigned int NODES_FETCHED_AHEAD = 4;

// Starts fetching a node's memory without waiting for it. The line after the node's first
// comes too: a node may straddle two lines, and what the reader made right after an element
// (its attributes) is read next.
inline void fetchNode(const Node* i_pNode) {
  const uintptr_t LINE = 64;
  const uintptr_t address = reinterpret_cast<uintptr_t>(i_pNode);
  __builtin_prefetch(reinterpret_cast<const void*>(address));
  __builtin_prefetch(reinterpret_cast<const void*>(address + LINE));
}

}  // namespace XmlPlugin
