#include "ValueCache.h"

namespace {

const size_t FIRST_SLOT_COUNT = 256;
// 2048 slots (64 KiB) kept the catalogues of the load benchmark exactly as small as 16384 slots
// did, and stay in the level-2 cache while the tree streams past: a lookup in the larger table
// missed it and took a tenth of the load time.
const size_t MAX_SLOT_COUNT = 2048;

}  // namespace

ValueCache::ValueCache()
    : m_Slots(new Slot[FIRST_SLOT_COUNT]()), m_SlotCount(FIRST_SLOT_COUNT), m_Kept(0) {}

ValueCache::Slot& ValueCache::slotOf(const Key& i_Key) const {
  return m_Slots[i_Key.hash() & (m_SlotCount - 1)];
}

const void* ValueCache::find(const Key& i_Key) const {
  const Slot& slot = slotOf(i_Key);
  return slot.m_Key == i_Key ? slot.m_Handle : nullptr;
}

void ValueCache::keep(const Key& i_Key, const void* i_Handle) {
  // Many distinct values for the table's size: more of them deserve a place.
  if (2 * ++m_Kept > m_SlotCount && m_SlotCount < MAX_SLOT_COUNT) {
    grow();
  }
  Slot& slot = slotOf(i_Key);
  slot.m_Key = i_Key;
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
