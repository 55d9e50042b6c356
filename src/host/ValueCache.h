// The short values read last, kept so that a value that recurs (a flag, a unit, a code)
// shares one buffer among the nodes that bear it.
//
// The cache keeps a handle of each string (see TreeArena::handleOf), so that keeping, finding
// and evicting a value touches only the cache's own table.
//
// A table indexed by a hash of the value's UTF-8 bytes: a new value takes the place of the one
// in its slot. It starts small for small documents and grows with the values a document has,
// up to a bound that keeps it in the processor's cache however many distinct values there are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "ShortBytes.h"

class ValueCache {
 public:
  // A value's bytes as the cache compares them. Sharing values up to 16 bytes took a dense
  // document of short elements from 10.3 to 8.8 times its file size in memory; a catalogue with
  // prose stays near 5.
  using Key = ShortBytes;

  ValueCache();

  // The handle kept for the key, or null.
  const void* find(const Key& i_Key) const;
  // Keeps i_Handle for the key, in place of what shared its slot.
  void keep(const Key& i_Key, const void* i_Handle);

 private:
  struct Slot {
    Key m_Key;  // no bytes for a free slot
    const void* m_Handle = nullptr;
  };

  Slot& slotOf(const Key& i_Key) const;
  void grow();

  std::unique_ptr<Slot[]> m_Slots;
  size_t m_SlotCount;  // a power of two
  size_t m_Kept;       // values kept since the last growth
};
