// The shared character buffer behind String, for the host code that places buffers itself.
#pragma once

#include <atomic>
#include <cstddef>
#include <cwchar>
#include <new>

#include "host/String.h"

// Header of a shared character buffer; the characters follow it in the same allocation.
struct String::Buffer {
  // The count of a buffer that a tree placed in its storage, which frees it with the tree:
  // strings over it are marked and never count, and no count reaches zero from here.
  static const int PLACED = 1 << 30;

  std::atomic<int> m_References;
  int m_Length;
  int m_Capacity;

  wchar_t* chars() { return reinterpret_cast<wchar_t*>(this + 1); }

  // Bytes of a buffer for i_Capacity characters and the terminating zero.
  static size_t bytesFor(size_t i_Capacity) {
    return sizeof(Buffer) + (i_Capacity + 1) * sizeof(wchar_t);
  }

  static Buffer* create(const wchar_t* i_Text, int i_Length, int i_Capacity) {
    void* pMemory = ::operator new(bytesFor(static_cast<size_t>(i_Capacity)));
    Buffer* pBuffer = new (pMemory) Buffer{{1}, i_Length, i_Capacity};
    std::wmemcpy(pBuffer->chars(), i_Text, static_cast<size_t>(i_Length));
    pBuffer->chars()[i_Length] = L'\0';
    return pBuffer;
  }

  static void destroy(Buffer* i_pBuffer) {
    i_pBuffer->~Buffer();
    ::operator delete(i_pBuffer);
  }
};
