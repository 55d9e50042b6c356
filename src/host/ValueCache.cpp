#include "ValueCache.h"

#include <cstring>

namespace {

const size_t FIRST_SLOT_COUNT = 256;
// 2048 slots (64 KiB) kept the catalogues of the load benchmark exactly as small as 16384 slots
// did, and stay in the level-2 cache while the tree streams past: a lookup in the larger table
// missed it and took a tenth of the load time.
const size_t MAX_SLOT_COUNT = 2048;

}  // namespace

ValueCache::Key::Key(std::string_view i_Bytes) : m_Words{0, 0}, m_Length(i_Bytes.size()) {
  std::memcpy(m_Words, i_Bytes.data(), i_Bytes.size());
}

bool ValueCache::Key::operator==(const Key& i_Other) const {
  return m_Words[0] == i_Other.m_Words[0] && m_Words[1] == i_Other.m_Words[1] &&
         m_Length == i_Other.m_Length;
}

size_t ValueCache::Key::hash() const {
  // Multiplying spreads every byte into the high bits, which the final shift brings down. A
  // collision only costs sharing, so the hash need not resist crafted input.
  const uint64_t mixed =
      (m_Words[0] * 0x9E3779B97F4A7C15ull) ^ ((m_Words[1] + m_Length) * 0xC2B2AE3D27D4EB4Full);
  return static_cast<size_t>(mixed ^ (mixed >> 32));
}

ValueCache::ValueCache()
    : m_Slots(new Slot[FIRST_SLOT_COUNT]()), m_SlotCount(FIRST_SLOT_COUNT), m_Kept(0) {}

ValueCache::Slot& ValueCache::slotOf(const Key& i_Key) const {
  return m_Slots[i_Key.hash() & (m_SlotCount - 1)];
}

const void* ValueCache::find(std::string_view i_Bytes) const {
  const Key key(i_Bytes);
  const Slot& slot = slotOf(key);
  return slot.m_Key == key ? slot.m_Handle : nullptr;
}

void ValueCache::keep(std::string_view i_Bytes, const void* i_Handle) {
  const Key key(i_Bytes);
  // Many distinct values for the table's size: more of them deserve a place.
  if (2 * ++m_Kept > m_SlotCount && m_SlotCount < MAX_SLOT_COUNT) {
    grow();
  }
  Slot& slot = slotOf(key);
  slot.m_Key = key;
  slot.m_Handle = i_Handle;
}

void ValueCache::grow() {
  std::unique_ptr<Slot[]> pOld(new Slot[4 * m_SlotCount]());
  pOld.swap(m_Slots);
  const size_t oldCount = m_SlotCount;
  m_SlotCount *= 4;
  m_Kept = 0;
  for (size_t i = 0; i < oldCount; ++i) {
    if (pOld[i].m_Key.m_Length != 0) {
      slotOf(pOld[i].m_Key) = pOld[i];
    }
  }
}
