// A set of nodes of one tree, kept by their document-order numbers.
//
// A search in depth may exclude most nodes of a document, one by one in document order: a bit
// per number costs a fraction of a hashed set's memory traffic. Numbers beyond what a bit array
// should hold (a host may number its nodes sparsely) go to a hashed set instead.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "XPathFlatSet.h"
#include "host/Node.h"

namespace XmlPlugin {

class XPathNodeNumberSet {
 public:
  // A node by its number (m_Index).
  void insert(int32_t i_Number) {
    m_Empty = false;
    if (!inBits(i_Number)) {
      m_Others.insert(i_Number);
      return;
    }
    const size_t word = static_cast<size_t>(i_Number) / BITS_PER_WORD;
    if (word >= m_Bits.size()) {
      m_Bits.resize(word + 1 + word / 2, 0);
    }
    m_Bits[word] |= bit(i_Number);
  }

  bool empty() const { return m_Empty; }

  bool contains(const Node* i_pNode) const {
    const int32_t number = i_pNode->m_Index;
    if (!inBits(number)) {
      return m_Others.contains(number);
    }
    const size_t word = static_cast<size_t>(number) / BITS_PER_WORD;
    return word < m_Bits.size() && (m_Bits[word] & bit(number)) != 0;
  }

 private:
  static const size_t BITS_PER_WORD = 64;
  // 2^26 numbers: a bit array of at most 8 MB.
  static const int32_t MAX_BIT_NUMBER = 1 << 26;

  static bool inBits(int32_t i_Number) { return i_Number >= 0 && i_Number < MAX_BIT_NUMBER; }
  static uint64_t bit(int32_t i_Number) {
    return uint64_t(1) << (static_cast<size_t>(i_Number) % BITS_PER_WORD);
  }

  std::vector<uint64_t> m_Bits;
  XPathFlatSet<int32_t> m_Others;
  bool m_Empty = true;
};

}  // namespace XmlPlugin
