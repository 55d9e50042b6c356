#include "TreeArena.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <new>

#include "StringBuffer.h"
#include "Utf8.h"

namespace {

// Blocks double from a size that keeps a small document small to 2 MiB, which makes a large
// document's blocks few. From there on they are mapped, so that the end of the last one that the
// tree does not use goes back to the system, and populated when mapped: a page fault costs
// microseconds on this project's virtual machines, and filling the 2 MiB at once took the
// 10 MB catalogue of the load benchmark from 187 to 153 ms.
//
// Huge pages for the mapped blocks (MADV_HUGEPAGE, aligned to 2 MiB) were measured twice. In the
// load benchmark, which frees each tree just before the next load, they took the 10 MB catalogue
// from 108 to 88 ms (56 MiB filled in 2.5 instead of 18 ms). Loading a catalogue into a fresh
// process they made 10 MB 5% faster and 48 MB 25% slower, and in the second measurement 48 MB up
// to 0.4 s slower: these virtual machines hand free 2 MiB runs back to their host, so a huge
// page is mostly memory that the host must fault in again, which small pages taken from
// recently freed memory are not. They are not asked for.
const size_t FIRST_BLOCK_SIZE = 4 * 1024;
const size_t LARGEST_BLOCK_SIZE = 2 * 1024 * 1024;

}  // namespace

TreeArena::TreeArena() : m_NextBlockSize(FIRST_BLOCK_SIZE) {}

TreeArena::~TreeArena() {
  for (const Block& block : m_Blocks) {
    if (block.m_Mapped) {
      munmap(block.m_pMemory, block.m_Size);
    } else {
      ::operator delete(block.m_pMemory);
    }
  }
}

void TreeArena::addBlock(size_t i_MinimumSize) {
  m_Blocks.reserve(m_Blocks.size() + 1);
  Block block{nullptr, std::max(m_NextBlockSize, i_MinimumSize), false};
  if (block.m_Size >= LARGEST_BLOCK_SIZE) {
    void* pMapped = mmap(nullptr, block.m_Size, PROT_READ | PROT_WRITE,
                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    block.m_Mapped = pMapped != MAP_FAILED;
    block.m_pMemory = block.m_Mapped ? pMapped : nullptr;
  }
  if (!block.m_Mapped) {
    block.m_pMemory = ::operator new(block.m_Size);
  }
  m_Blocks.push_back(block);
  m_pNext = static_cast<char*>(block.m_pMemory);
  m_pEnd = m_pNext + block.m_Size;
  m_Bytes += block.m_Size;
  m_NextBlockSize = std::min(2 * m_NextBlockSize, LARGEST_BLOCK_SIZE);
}

void* TreeArena::allocate(size_t i_Size, size_t i_Alignment) {
  const size_t misalignment = reinterpret_cast<uintptr_t>(m_pNext) % i_Alignment;
  size_t padding = misalignment == 0 ? 0 : i_Alignment - misalignment;
  if (m_pNext == nullptr || static_cast<size_t>(m_pEnd - m_pNext) < padding + i_Size) {
    // A new block starts aligned for every type placed here.
    addBlock(i_Size);
    padding = 0;
  }
  void* pPlace = m_pNext + padding;
  m_pNext += padding + i_Size;
  return pPlace;
}

void TreeArena::trim() {
  if (m_Blocks.empty() || !m_Blocks.back().m_Mapped) {
    return;
  }
  Block& last = m_Blocks.back();
  const uintptr_t pageSize = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
  char* pUnused = reinterpret_cast<char*>((reinterpret_cast<uintptr_t>(m_pNext) + pageSize - 1) &
                                          ~(pageSize - 1));
  char* pStart = static_cast<char*>(last.m_pMemory);
  if (pUnused < pStart + last.m_Size && munmap(pUnused, pStart + last.m_Size - pUnused) == 0) {
    m_Bytes -= static_cast<size_t>(pStart + last.m_Size - pUnused);
    last.m_Size = static_cast<size_t>(pUnused - pStart);
  }
  m_pNext = m_pEnd = pStart + last.m_Size;
}

bool TreeArena::decode(std::string_view i_Bytes, String& o_Text) {
  if (i_Bytes.empty()) {
    o_Text = String();
    return true;
  }
  // Room for as many characters as bytes, the most they can give; the rest is handed back.
  void* pMemory = allocate(String::Buffer::bytesFor(i_Bytes.size()), alignof(String::Buffer));
  String::Buffer* pBuffer = new (pMemory) String::Buffer{{String::Buffer::PLACED}, 0, 0};
  size_t count = 0;
  const bool valid = HostUtf8::decode(i_Bytes.data(), i_Bytes.size(), pBuffer->chars(), count);
  pBuffer->chars()[count] = L'\0';
  pBuffer->m_Length = static_cast<int>(count);
  pBuffer->m_Capacity = static_cast<int>(count);
  m_pNext = reinterpret_cast<char*>(pBuffer->chars() + count + 1);
  o_Text = String(pBuffer);
  return valid;
}

String TreeArena::fromHandle(const void* i_Handle) {
  return String(static_cast<String::Buffer*>(const_cast<void*>(i_Handle)));
}
