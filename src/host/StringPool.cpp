#include "StringPool.h"

#include <cstdint>
#include <functional>
#include <utility>

namespace {

const size_t FIRST_SLOT_COUNT = 64;
// At most half the slots are used, so an honest search rarely looks at more than a few.
const size_t MAX_PROBES = 64;
const size_t NO_SLOT = SIZE_MAX;

}  // namespace

StringPool::StringPool() : m_Entries(FIRST_SLOT_COUNT), m_Used(0) {}

std::string_view StringPool::keyOf(const Entry& i_Entry) const {
  return std::string_view(m_Keys.data() + i_Entry.m_KeyOffset, i_Entry.m_KeyLength);
}

size_t StringPool::slotOf(size_t i_Hash, std::string_view i_Bytes) const {
  const size_t mask = m_Entries.size() - 1;
  size_t slot = i_Hash & mask;
  for (size_t probes = 0; probes <= MAX_PROBES; ++probes) {
    const Entry& candidate = m_Entries[slot];
    if (candidate.m_Hash == 0 || (candidate.m_Hash == i_Hash && keyOf(candidate) == i_Bytes)) {
      return slot;
    }
    slot = (slot + 1) & mask;
  }
  return NO_SLOT;
}

String& StringPool::entry(std::string_view i_Bytes) {
  // Zero marks a free slot, so no key hashes to it.
  const size_t hash = std::hash<std::string_view>()(i_Bytes) | 1;
  size_t slot = slotOf(hash, i_Bytes);
  if (slot != NO_SLOT && m_Entries[slot].m_Hash != 0) {
    return m_Entries[slot].m_Text;
  }
  if (2 * (m_Used + 1) > m_Entries.size()) {
    grow();
    slot = slotOf(hash, i_Bytes);
  }
  if (slot == NO_SLOT) {
    m_Unpooled = String();
    return m_Unpooled;
  }
  Entry& added = m_Entries[slot];
  added.m_Hash = hash;
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
    size_t slot = moved.m_Hash & mask;
    while (m_Entries[slot].m_Hash != 0) {
      slot = (slot + 1) & mask;
    }
    m_Entries[slot] = std::move(moved);
  }
}
