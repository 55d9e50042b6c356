#include "XPathOutputElement.h"

#include <new>

namespace XmlPlugin {

namespace {

// A result of many items is freed at once, and the heap merges such a run back into large
// blocks before the next large request, so that the next result's items each took the
// heap's slow path. The kept memory is bounded: about 6 MB a thread. Under AddressSanitizer
// nothing is kept, so that it still sees every item used after it was freed.
#if defined(__SANITIZE_ADDRESS__)
const size_t KEPT_FREE_ITEMS = 0;
#else
const size_t KEPT_FREE_ITEMS = 1u << 17;
#endif

struct FreeItem {
  FreeItem* m_pNext;
};

// Plain data, so that it outlives every object of the thread: items freed by destructors
// that run after the closer's go straight back to the heap.
struct FreeItems {
  FreeItem* m_pFirst;
  size_t m_Count;
  bool m_CloserRegistered;
  bool m_Closed;
};
thread_local FreeItems t_FreeItems;

// Gives the kept memory back when the thread ends.
struct FreeItemsCloser {
  ~FreeItemsCloser() {
    t_FreeItems.m_Closed = true;
    while (t_FreeItems.m_pFirst != nullptr) {
      FreeItem* pItem = t_FreeItems.m_pFirst;
      t_FreeItems.m_pFirst = pItem->m_pNext;
      ::operator delete(pItem);
    }
    t_FreeItems.m_Count = 0;
  }
  void registerForThread() { t_FreeItems.m_CloserRegistered = true; }
};
thread_local FreeItemsCloser t_FreeItemsCloser;

}  // namespace

void* XPathOutputElement::operator new(size_t i_Size) {
  FreeItems& items = t_FreeItems;
  if (items.m_pFirst == nullptr || i_Size != sizeof(XPathOutputElement)) {
    return ::operator new(i_Size);
  }
  FreeItem* pItem = items.m_pFirst;
  items.m_pFirst = pItem->m_pNext;
  --items.m_Count;
  return pItem;
}

void XPathOutputElement::operator delete(void* i_pItem, size_t i_Size) {
  FreeItems& items = t_FreeItems;
  if (i_pItem == nullptr) {
    return;
  }
  if (items.m_Closed || items.m_Count >= KEPT_FREE_ITEMS || i_Size != sizeof(XPathOutputElement)) {
    ::operator delete(i_pItem);
    return;
  }
  if (!items.m_CloserRegistered) {
    t_FreeItemsCloser.registerForThread();
  }
  static_assert(sizeof(XPathOutputElement) >= sizeof(FreeItem), "an item holds a link");
  items.m_pFirst = new (i_pItem) FreeItem{items.m_pFirst};
  ++items.m_Count;
}

void deleteOutputElements(XPathOutputElements& io_Elements) {
  for (XPathOutputElement* element : io_Elements) {
    delete element;
  }
  io_Elements.clear();
}

bool XPathOutputElement_comparator(const XPathOutputElement*& i_First,
                                   const XPathOutputElement*& i_Second) {
  return cmp()(i_First, i_Second);
}

}  // namespace XmlPlugin
