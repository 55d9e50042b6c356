// The storage of one document's tree: nodes, child lists, attribute maps and the characters of
// every string, placed one after another in large blocks that are freed together.
//
// Nothing placed here is destroyed one by one, which makes a tree quick to build and to free:
// only objects whose destructor would do no more than release strings placed here may be
// created. A placed string starts with a reference count that no number of copies can bring
// back to zero, so nobody frees it on its own; copies of it are valid while the arena lives.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "host/String.h"

class TreeArena {
 public:
  TreeArena();
  ~TreeArena();
  TreeArena(const TreeArena&) = delete;
  TreeArena& operator=(const TreeArena&) = delete;

  // A new object made from the arguments; it lives, never destroyed, as long as the arena.
  template <typename T, typename... Args>
  T* create(Args&&... i_Args) {
    return new (allocate(sizeof(T), alignof(T))) T(std::forward<Args>(i_Args)...);
  }

  // i_Count new default-made objects in adjacent places; returns the first of them.
  template <typename T>
  T* createMany(size_t i_Count) {
    T* pFirst = static_cast<T*>(allocate(i_Count * sizeof(T), alignof(T)));
    for (size_t i = 0; i < i_Count; ++i) {
      new (pFirst + i) T();
    }
    return pFirst;
  }

  // Copies of i_Count items in adjacent places; returns the first of them.
  template <typename T>
  T* copy(const T* i_pItems, size_t i_Count) {
    T* pFirst = static_cast<T*>(allocate(i_Count * sizeof(T), alignof(T)));
    for (size_t i = 0; i < i_Count; ++i) {
      new (pFirst + i) T(i_pItems[i]);
    }
    return pFirst;
  }

  // The text of the UTF-8 bytes, its characters placed here. False when the bytes are not
  // valid UTF-8; o_Text then holds them with U+FFFD in place of each invalid sequence.
  bool decode(std::string_view i_Bytes, String& o_Text);

  // A string placed here as a plain pointer, and a copy of it made from that pointer. The
  // copy is not counted, which no placed string needs: keeping and sharing values while a
  // tree is built then touches neither the string nor its characters.
  static const void* handleOf(const String& i_Placed) { return i_Placed.m_Buffer; }
  static String fromHandle(const void* i_Handle);

  // Gives the unused end of the last block back to the system where it can (a mapped block);
  // nothing more may be placed afterwards.
  void trim();

  // Bytes of the blocks taken so far: what the tree holds.
  size_t bytes() const { return m_Bytes; }

 private:
  struct Block {
    void* m_pMemory;
    size_t m_Size;
    bool m_Mapped;  // mapped rather than taken from the heap
  };

  void* allocate(size_t i_Size, size_t i_Alignment);
  void addBlock(size_t i_MinimumSize);

  std::vector<Block> m_Blocks;
  char* m_pNext = nullptr;
  char* m_pEnd = nullptr;
  size_t m_NextBlockSize;
  size_t m_Bytes = 0;
};
