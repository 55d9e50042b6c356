#include "host/String.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <new>
#include <string_view>

#include "Utf8.h"

// Header of a shared character buffer; the characters follow it in the same allocation.
struct String::Buffer {
  std::atomic<int> m_References;
  int m_Length;
  int m_Capacity;

  wchar_t* chars() { return reinterpret_cast<wchar_t*>(this + 1); }

  static Buffer* create(const wchar_t* i_Text, int i_Length, int i_Capacity) {
    void* pMemory =
        ::operator new(sizeof(Buffer) + (static_cast<size_t>(i_Capacity) + 1) * sizeof(wchar_t));
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

namespace {

int clamp(int i_Value, int i_Low, int i_High) {
  return std::max(i_Low, std::min(i_Value, i_High));
}

}  // namespace

String::String() : m_Buffer(nullptr) {}

String::String(const char* i_Narrow) : m_Buffer(nullptr) {
  if (i_Narrow != nullptr && *i_Narrow != '\0') {
    std::wstring wide;
    HostUtf8::appendDecoded(i_Narrow, std::strlen(i_Narrow), wide);
    *this = String(wide);
  }
}

String::String(const wchar_t* i_Wide)
    : String(i_Wide, i_Wide == nullptr ? 0 : static_cast<int>(std::wcslen(i_Wide))) {}

String::String(const wchar_t* i_Wide, int i_Length) : m_Buffer(nullptr) {
  if (i_Wide != nullptr && i_Length > 0) {
    m_Buffer = Buffer::create(i_Wide, i_Length, i_Length);
  }
}

String::String(const std::wstring& i_Wide)
    : String(i_Wide.data(), static_cast<int>(i_Wide.size())) {}

String::String(const String& i_Other) : m_Buffer(i_Other.m_Buffer) {
  if (m_Buffer != nullptr) {
    m_Buffer->m_References.fetch_add(1, std::memory_order_relaxed);
  }
}

String::String(String&& i_Other) noexcept : m_Buffer(i_Other.m_Buffer) {
  i_Other.m_Buffer = nullptr;
}

String& String::operator=(const String& i_Other) {
  String copy(i_Other);
  std::swap(m_Buffer, copy.m_Buffer);
  return *this;
}

String& String::operator=(String&& i_Other) noexcept {
  std::swap(m_Buffer, i_Other.m_Buffer);
  return *this;
}

String::~String() {
  release();
}

void String::release() {
  if (m_Buffer != nullptr && m_Buffer->m_References.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    Buffer::destroy(m_Buffer);
  }
  m_Buffer = nullptr;
}

void String::makeUnique(int i_ExtraCapacity) {
  const int length = this->length();
  const int needed = length + i_ExtraCapacity;
  if (m_Buffer != nullptr && m_Buffer->m_References.load(std::memory_order_acquire) == 1 &&
      m_Buffer->m_Capacity >= needed) {
    return;
  }
  // Doubling keeps a run of appends amortised constant time per character.
  const int capacity = std::max(needed, 2 * length);
  Buffer* pBuffer = Buffer::create(c_str(), length, capacity);
  release();
  m_Buffer = pBuffer;
}

int String::length() const {
  return m_Buffer == nullptr ? 0 : m_Buffer->m_Length;
}

wchar_t String::charAt(int i_Index) const {
  return i_Index >= 0 && i_Index < length() ? m_Buffer->chars()[i_Index] : L'\0';
}

const wchar_t* String::c_str() const {
  return m_Buffer == nullptr ? L"" : m_Buffer->chars();
}

int String::indexOf(wchar_t i_Char, int i_From) const {
  return indexOf(String(&i_Char, 1), i_From);
}

int String::indexOf(const String& i_Text, int i_From) const {
  const std::wstring_view text(c_str(), length());
  const size_t found =
      text.find(std::wstring_view(i_Text.c_str(), i_Text.length()), clamp(i_From, 0, length()));
  return found == std::wstring_view::npos ? -1 : static_cast<int>(found);
}

int String::lastIndexOf(wchar_t i_Char) const {
  return lastIndexOf(String(&i_Char, 1));
}

int String::lastIndexOf(const String& i_Text) const {
  const std::wstring_view text(c_str(), length());
  const size_t found = text.rfind(std::wstring_view(i_Text.c_str(), i_Text.length()));
  return found == std::wstring_view::npos ? -1 : static_cast<int>(found);
}

bool String::startsWith(const String& i_Prefix, int i_Start) const {
  const int start = clamp(i_Start, 0, length());
  return length() - start >= i_Prefix.length() &&
         std::wmemcmp(c_str() + start, i_Prefix.c_str(), i_Prefix.length()) == 0;
}

bool String::endsWith(const String& i_Suffix) const {
  return length() >= i_Suffix.length() && startsWith(i_Suffix, length() - i_Suffix.length());
}

int String::compareTo(const String& i_Other, int i_IgnoreCase) const {
  const int common = std::min(length(), i_Other.length());
  for (int i = 0; i < common; ++i) {
    wchar_t mine = c_str()[i];
    wchar_t theirs = i_Other.c_str()[i];
    if (i_IgnoreCase != 0) {
      mine = static_cast<wchar_t>(std::towlower(mine));
      theirs = static_cast<wchar_t>(std::towlower(theirs));
    }
    if (mine != theirs) {
      return mine < theirs ? -1 : 1;
    }
  }
  return length() == i_Other.length() ? 0 : (length() < i_Other.length() ? -1 : 1);
}

int String::compareTo(const wchar_t* i_Other) const {
  return compareTo(String(i_Other));
}

String String::substring(int i_Begin) const {
  return substring(i_Begin, length() - 1);
}

String String::substring(int i_Begin, int i_EndInclusive) const {
  const int begin = clamp(i_Begin, 0, length());
  const int end = clamp(i_EndInclusive, -1, length() - 1);
  if (begin == 0 && end == length() - 1) {
    return *this;
  }
  return end < begin ? String() : String(c_str() + begin, end - begin + 1);
}

String& String::concat(const String& i_Text) {
  if (m_Buffer == nullptr) {
    return *this = i_Text;
  }
  // Keeps a reference so that appending a string to itself reads a live buffer.
  const String text(i_Text);
  const int extra = text.length();
  if (extra > 0) {
    makeUnique(extra);
    std::wmemcpy(m_Buffer->chars() + m_Buffer->m_Length, text.c_str(), extra);
    m_Buffer->m_Length += extra;
    m_Buffer->chars()[m_Buffer->m_Length] = L'\0';
  }
  return *this;
}

String& String::concat(const wchar_t* i_Text) {
  return concat(String(i_Text));
}

String& String::concat(wchar_t i_Char) {
  return concat(String(&i_Char, 1));
}

String& String::trim() {
  int begin = 0;
  int end = length() - 1;
  while (begin <= end && std::iswspace(charAt(begin))) {
    ++begin;
  }
  while (end >= begin && std::iswspace(charAt(end))) {
    --end;
  }
  return *this = substring(begin, end);
}

String String::valueOf(long i_Value) {
  return String(std::to_wstring(i_Value));
}

std::string String::toNarrow() const {
  std::string narrow;
  HostUtf8::appendEncoded(c_str(), length(), narrow);
  return narrow;
}

std::wstring String::toWide() const {
  return std::wstring(c_str(), length());
}

bool String::operator==(const String& i_Other) const {
  return m_Buffer == i_Other.m_Buffer || compareTo(i_Other) == 0;
}
