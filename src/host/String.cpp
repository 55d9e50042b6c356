#include "host/String.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <functional>
#include <new>
#include <string_view>

#include "StringBuffer.h"
#include "Utf8.h"

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

namespace {

const uintptr_t PLACED_MARK = 1;

}  // namespace

String::String(Buffer* i_pPlaced)
    : m_Buffer(reinterpret_cast<Buffer*>(reinterpret_cast<uintptr_t>(i_pPlaced) | PLACED_MARK)) {}

bool String::isPlaced() const {
  return (reinterpret_cast<uintptr_t>(m_Buffer) & PLACED_MARK) != 0;
}

String::Buffer* String::buffer() const {
  return reinterpret_cast<Buffer*>(reinterpret_cast<uintptr_t>(m_Buffer) & ~PLACED_MARK);
}

String::String(const String& i_Other) : m_Buffer(i_Other.m_Buffer) {
  if (m_Buffer != nullptr && !isPlaced()) {
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
  if (m_Buffer != nullptr && !isPlaced() &&
      m_Buffer->m_References.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    Buffer::destroy(m_Buffer);
  }
  m_Buffer = nullptr;
}

void String::makeUnique(int i_ExtraCapacity) {
  const int length = this->length();
  const int needed = length + i_ExtraCapacity;
  if (m_Buffer != nullptr && !isPlaced() &&
      m_Buffer->m_References.load(std::memory_order_acquire) == 1 &&
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
  return m_Buffer == nullptr ? 0 : buffer()->m_Length;
}

wchar_t String::charAt(int i_Index) const {
  return i_Index >= 0 && i_Index < length() ? buffer()->chars()[i_Index] : L'\0';
}

const wchar_t* String::c_str() const {
  return m_Buffer == nullptr ? L"" : buffer()->chars();
}

namespace {

int position(size_t i_Found) {
  return i_Found == std::wstring_view::npos ? -1 : static_cast<int>(i_Found);
}

}  // namespace

int String::indexOf(wchar_t i_Char, int i_From) const {
  return position(view().find(i_Char, clamp(i_From, 0, length())));
}

int String::indexOf(const String& i_Text, int i_From) const {
  return position(view().find(i_Text.view(), clamp(i_From, 0, length())));
}

int String::lastIndexOf(wchar_t i_Char) const {
  return position(view().rfind(i_Char));
}

int String::lastIndexOf(const String& i_Text) const {
  return position(view().rfind(i_Text.view()));
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
  return compareTo(i_Other.view(), i_IgnoreCase);
}

int String::compareTo(const wchar_t* i_Other) const {
  return compareTo(i_Other == nullptr ? std::wstring_view() : std::wstring_view(i_Other), 0);
}

int String::compareTo(std::wstring_view i_Other, int i_IgnoreCase) const {
  const int otherLength = static_cast<int>(i_Other.size());
  const int common = std::min(length(), otherLength);
  for (int i = 0; i < common; ++i) {
    wchar_t mine = c_str()[i];
    wchar_t theirs = i_Other[i];
    if (i_IgnoreCase != 0) {
      mine = static_cast<wchar_t>(std::towlower(mine));
      theirs = static_cast<wchar_t>(std::towlower(theirs));
    }
    if (mine != theirs) {
      return mine < theirs ? -1 : 1;
    }
  }
  return length() == otherLength ? 0 : (length() < otherLength ? -1 : 1);
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
  return append(i_Text.c_str(), i_Text.length());
}

String& String::concat(const wchar_t* i_Text) {
  return i_Text == nullptr ? *this : append(i_Text, static_cast<int>(std::wcslen(i_Text)));
}

String& String::concat(wchar_t i_Char) {
  return append(&i_Char, 1);
}

String& String::append(const wchar_t* i_Text, int i_Length) {
  const std::less<const wchar_t*> before;
  if (i_Length > 0 && !before(i_Text, c_str()) && before(i_Text, c_str() + length())) {
    // Text of this very buffer would be freed by a reallocation before it is copied.
    const std::wstring copy(i_Text, i_Length);
    return append(copy.data(), i_Length);
  }
  if (i_Length > 0) {
    makeUnique(i_Length);
    std::wmemcpy(m_Buffer->chars() + m_Buffer->m_Length, i_Text, i_Length);
    m_Buffer->m_Length += i_Length;
    m_Buffer->chars()[m_Buffer->m_Length] = L'\0';
  }
  return *this;
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
  String text;
  text.assignDecimal(i_Value);
  return text;
}

void String::assignDecimal(long i_Value) {
  // Attribute lookups report numbers through this, into a string the caller may reuse: no
  // stream, no locale and, for a reused string, no allocation per call.
  // The digits are written from the last one on, straight as wide characters.
  wchar_t digits[24];
  wchar_t* const end = digits + sizeof(digits) / sizeof(digits[0]);
  wchar_t* begin = end;
  unsigned long rest =
      i_Value < 0 ? 0UL - static_cast<unsigned long>(i_Value) : static_cast<unsigned long>(i_Value);
  do {
    *--begin = static_cast<wchar_t>(L'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  if (i_Value < 0) {
    *--begin = L'-';
  }
  const int length = static_cast<int>(end - begin);
  if (m_Buffer != nullptr && !isPlaced() &&
      m_Buffer->m_References.load(std::memory_order_acquire) == 1) {
    m_Buffer->m_Length = 0;
  } else {
    release();
  }
  makeUnique(length);
  std::copy(begin, end, m_Buffer->chars());
  m_Buffer->m_Length = length;
  m_Buffer->chars()[length] = L'\0';
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
  // Names are compared against every node of a search: most differ in length or in their
  // first character.
  if (m_Buffer == i_Other.m_Buffer) {
    return true;
  }
  const int count = length();
  return count == i_Other.length() &&
         (count == 0 || (c_str()[0] == i_Other.c_str()[0] && view() == i_Other.view()));
}
