// The strings of one document that are shared: equal UTF-8 bytes read twice give the same
// String, so the tree holds one buffer for all of them.
//
// An open-addressing table with linear probing; it keeps a copy of every key, and rehashing
// moves entries without touching the keys' bytes. A search gives up after a bounded number of
// slots, so names crafted to collide cost a bounded time each and are just not shared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ShortBytes.h"
#include "host/String.h"

class StringPool {
 public:
  StringPool();

  // The pooled string of the bytes: empty the first time they are seen, and then whatever the
  // caller stored in it, which it keeps until the pool goes. Where the search gives up, an
  // empty string of no entry, valid until the next call.
  String& entry(std::string_view i_Bytes);

 private:
  // A key as the table compares it: a short one by its words, a longer one by its bytes.
  struct Key {
    explicit Key(std::string_view i_Bytes);
    ShortBytes m_Short;  // of a key of at most ShortBytes::MAX_BYTES, else no bytes
    size_t m_Hash;       // never 0
  };
  struct Entry {
    size_t m_Hash;  // 0 for a free slot
    ShortBytes m_Short;
    uint32_t m_KeyOffset;
    uint32_t m_KeyLength;
    String m_Text;
  };

  bool matches(const Entry& i_Entry, const Key& i_Key, std::string_view i_Bytes) const;
  // The slot of the key's entry, or the free slot where it belongs; NO_SLOT when neither is
  // found within MAX_PROBES slots.
  size_t slotOf(const Key& i_Key, std::string_view i_Bytes) const;
  void grow();

  std::vector<Entry> m_Entries;  // a power of two of slots, at most half used
  size_t m_Used;
  std::string m_Keys;  // the bytes of every key, one after another
  String m_Unpooled;   // handed out where the search gave up
};
