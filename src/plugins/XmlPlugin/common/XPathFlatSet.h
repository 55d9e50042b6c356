// A set of node pointers or document numbers in one open-addressed table.
//
// Evaluation keeps such sets per path (nodes a predicate excluded, numbers already output),
// and a predicate evaluates a path per candidate: std::unordered_set's allocation per element
// and per rehash was a fifth of a predicate query. This table allocates nothing while empty
// and one array as it doubles; its memory goes with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace XmlPlugin {

template <typename T>
class XPathFlatSet {
 public:
  // True when the value was not there yet.
  bool insert(T i_Value) {
    if (i_Value == T()) {
      const bool added = !m_HasEmptyValue;
      m_HasEmptyValue = true;
      return added;
    }
    if ((m_Size + 1) * 4 > m_Slots.size() * 3) {
      grow();
    }
    const bool added = place(m_Slots, i_Value);
    m_Size += added ? 1 : 0;
    return added;
  }

  bool contains(T i_Value) const {
    if (i_Value == T()) {
      return m_HasEmptyValue;
    }
    if (m_Size == 0) {
      return false;
    }
    const size_t mask = m_Slots.size() - 1;
    for (size_t slot = hash(i_Value) & mask; m_Slots[slot] != T(); slot = (slot + 1) & mask) {
      if (m_Slots[slot] == i_Value) {
        return true;
      }
    }
    return false;
  }

 private:
  static size_t hash(T i_Value) {
    // Fibonacci hashing spreads pointers (aligned) and consecutive numbers alike.
    const uint64_t key = static_cast<uint64_t>(toKey(i_Value));
    return static_cast<size_t>((key * 0x9E3779B97F4A7C15ull) >> 17);
  }
  template <typename U>
  static uintptr_t toKey(U* i_pValue) {
    return reinterpret_cast<uintptr_t>(i_pValue);
  }
  static uint64_t toKey(int32_t i_Value) { return static_cast<uint32_t>(i_Value); }

  // i_Value is not T(), which marks a free slot.
  static bool place(std::vector<T>& io_Slots, T i_Value) {
    const size_t mask = io_Slots.size() - 1;
    for (size_t slot = hash(i_Value) & mask;; slot = (slot + 1) & mask) {
      if (io_Slots[slot] == T()) {
        io_Slots[slot] = i_Value;
        return true;
      }
      if (io_Slots[slot] == i_Value) {
        return false;
      }
    }
  }

  void grow() {
    std::vector<T> slots(m_Slots.empty() ? 16 : m_Slots.size() * 2, T());
    for (T value : m_Slots) {
      if (value != T()) {
        place(slots, value);
      }
    }
    m_Slots.swap(slots);
  }

  std::vector<T> m_Slots;        // a power of two long, at most three quarters used; T() is free
  size_t m_Size = 0;             // the values in m_Slots
  bool m_HasEmptyValue = false;  // whether T() itself is in the set
};

}  // namespace XmlPlugin
