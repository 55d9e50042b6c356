// Block allocation of many objects of one type that all die together.
//
// Objects are constructed in place in blocks and destroyed, in reverse order and without
// recursion, when the arena goes. Blocks grow from 16 to 1024 items, so a small document
// costs little and a large one makes few allocations.
#pragma once

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

template <typename T>
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  ~Arena() {
    for (auto block = m_Blocks.rbegin(); block != m_Blocks.rend(); ++block) {
      for (size_t i = block->m_Used; i > 0; --i) {
        block->m_pItems[i - 1].~T();
      }
      ::operator delete(block->m_pItems);
    }
  }

  // A new object made from the arguments; it lives as long as the arena.
  template <typename... Args>
  T* create(Args&&... i_Args) {
    T* pItem = new (reserve(1)) T(std::forward<Args>(i_Args)...);
    ++m_Blocks.back().m_Used;
    return pItem;
  }

  // i_Count new default-made objects in adjacent places; returns the first of them.
  T* createMany(size_t i_Count) {
    T* pFirst = reserve(i_Count);
    for (size_t i = 0; i < i_Count; ++i) {
      new (pFirst + i) T();
      ++m_Blocks.back().m_Used;
    }
    return pFirst;
  }

  // Moves i_Count items into adjacent places of the arena; returns the first of them.
  T* adopt(T* i_pItems, size_t i_Count) {
    T* pFirst = reserve(i_Count);
    for (size_t i = 0; i < i_Count; ++i) {
      new (pFirst + i) T(std::move(i_pItems[i]));
      ++m_Blocks.back().m_Used;
    }
    return pFirst;
  }

 private:
  static constexpr size_t FIRST_BLOCK_SIZE = 16;
  static constexpr size_t LARGEST_BLOCK_SIZE = 1024;

  struct Block {
    T* m_pItems;
    size_t m_Capacity;
    size_t m_Used;
  };

  // Room for i_Count adjacent items at the end of the last block.
  T* reserve(size_t i_Count) {
    if (m_Blocks.empty() || m_Blocks.back().m_Capacity - m_Blocks.back().m_Used < i_Count) {
      const size_t capacity = std::max(i_Count, m_NextBlockSize);
      m_Blocks.reserve(m_Blocks.size() + 1);
      T* pItems = static_cast<T*>(::operator new(capacity * sizeof(T)));
      m_Blocks.push_back(Block{pItems, capacity, 0});
      m_NextBlockSize = std::min(2 * m_NextBlockSize, LARGEST_BLOCK_SIZE);
    }
    return m_Blocks.back().m_pItems + m_Blocks.back().m_Used;
  }

  std::vector<Block> m_Blocks;
  size_t m_NextBlockSize = FIRST_BLOCK_SIZE;
};
