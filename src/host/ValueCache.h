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
#include <string_view>

class ValueCache {
 public:
  // Longest value kept, in bytes. Sharing values up to 16 bytes took a dense document of short
  // elements from 10.3 to 8.8 times its file size in memory; a catalogue with prose stays near 5.
  static constexpr size_t MAX_BYTES = 16;

  ValueCache();

  // The handle kept for the bytes (1 to MAX_BYTES of them), or null.
  const void* find(std::string_view i_Bytes) const;
  // Keeps i_Handle for the bytes, in place of what shared its slot.
  void keep(std::string_view i_Bytes, const void* i_Handle);

 private:
  // A value's bytes, zero-padded into two words, and their count: compared without a call.
  struct Key {
    uint64_t m_Words[2];
    size_t m_Length;  // 0 for a free slot

    explicit Key(std::string_view i_Bytes);
    Key() : m_Words{0, 0}, m_Length(0) {}
    bool operator==(const Key& i_Other) const;
    size_t hash() const;
  };
  struct Slot {
    Key m_Key;
    const void* m_Handle = nullptr;
  };

  Slot& slotOf(const Key& i_Key) const;
  void grow();

  std::unique_ptr<Slot[]> m_Slots;
  size_t m_SlotCount;  // a power of two
  size_t m_Kept;       // values kept since the last growth
};
