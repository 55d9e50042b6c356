#include "StringPool.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace {

const size_t FIRST_SLOT_COUNT = 64;
// At most half the slots are used, so an honest search rarely looks at more than a few.
const size_t MAX_PROBES = 64;
const size_t NO_SLOT = SIZE_MAX;

// The first slot tried for a hash. Every hash is odd, so its lowest bit would leave the even
// slots to collisions.
size_t homeOf(size_t i_Hash, size_t i_Mask) {
  return (i_Hash >> 1) & i_Mask;
}

}  // namespace

StringPool::StringPool() : m_Entries(FIRST_SLOT_COUNT), m_Used(0) {}

StringPool::Key::Key(std::string_view i_Bytes) {
  // Zero marks a free slot, so no key hashes to it. Names are mostly short: their hash takes a
  // few instructions instead of a pass over the bytes.
  if (i_Bytes.size() <= ShortBytes::MAX_BYTES && !i_Bytes.empty()) {
    m_Short = ShortBytes(i_Bytes);
    m_Hash = m_Short.hash() | 1;
  } else {
    m_Hash = std::hash<std::string_view>()(i_Bytes) | 1;
  }
}

bool StringPool::matches(const Entry& i_Entry, const Key& i_Key, std::string_view i_Bytes) const {
  if (i_Entry.m_Hash != i_Key.m_Hash || !(i_Entry.m_Short == i_Key.m_Short)) {
    return false;
  }
  return i_Key.m_Short.m_Length != 0 ||
         std::string_view(m_Keys.data() + i_Entry.m_KeyOffset, i_Entry.m_KeyLength) == i_Bytes;
}

size_t StringPool::slotOf(const Key& i_Key, std::string_view i_Bytes) const {
  const size_t mask = m_Entries.size() - 1;
  size_t slot = homeOf(i_Key.m_Hash, mask);
  for (size_t probes = 0; probes <= MAX_PROBES; ++probes) {
    const Entry& candidate = m_Entries[slot];
    if (candidate.m_Hash == 0 || matches(candidate, i_Key, i_Bytes)) {
      return slot;
    }
    slot = (slot + 1) & mask;
  }
  return NO_SLOT;
}

String& StringPool::entry(std::string_view i_Bytes) {
  const Key key(i_Bytes);
  // A name is mostly found in the first slot tried: looked at here, without the search's call.
  Entry& home = m_Entries[homeOf(key.m_Hash, m_Entries.size() - 1)];
  if (matches(home, key, i_Bytes)) {
    return home.m_Text;
  }
  size_t slot = slotOf(key, i_Bytes);
  if (slot != NO_SLOT && m_Entries[slot].m_Hash != 0) {
    return m_Entries[slot].m_Text;
  }
  if (2 * (m_Used + 1) > m_Entries.size()) {
    grow();
    slot = slotOf(key, i_Bytes);
  }
  if (slot == NO_SLOT) {
    m_Unpooled = String();
    return m_Unpooled;
  }
  Entry& added = m_Entries[slot];
  added.m_Hash = key.m_Hash;
  added.m_Short = key.m_Short;
  added.m_KeyOffset = static_cast<uint32_t>(m_Keys.size());
  added.m_KeyLength = static_cast<uint32_t>(i_Bytes.size());
  m_Keys.append(i_Bytes);
  ++m_Used;
  return added.m_Text;
}

void StringPool::grow() {
  std::vector<Entry> old(2 * m_Entries.size());
  old.swap(m_Entries);
  const size_t mask = m_Entries.size() - 1;
  for (Entry& moved : old) {
    if (moved.m_Hash == 0) {
      continue;
    }
    size_t slot = homeOf(moved.m_Hash, mask);
    while (m_Entries[slot].m_Hash != 0) {
      slot = (slot + 1) & mask;
    }
    m_Entries[slot] = std::move(moved);
  }
}
