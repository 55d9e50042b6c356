#include "Utf8.h"

#include <cstdint>
#include <cstring>

namespace HostUtf8 {
namespace {

const wchar_t REPLACEMENT = 0xFFFD;

bool isScalarValue(uint32_t i_Code) {
  return i_Code <= 0x10FFFF && (i_Code < 0xD800 || i_Code > 0xDFFF);
}

// Length of the multi-byte sequence that starts with i_Lead and the smallest code point it
// may hold; 0 for a byte that cannot start one.
int sequenceLength(unsigned char i_Lead, uint32_t& o_Minimum) {
  if ((i_Lead & 0xE0) == 0xC0) {
    o_Minimum = 0x80;
    return 2;
  }
  if ((i_Lead & 0xF0) == 0xE0) {
    o_Minimum = 0x800;
    return 3;
  }
  if ((i_Lead & 0xF8) == 0xF0) {
    o_Minimum = 0x10000;
    return 4;
  }
  return 0;
}

// Whether the eight bytes from i_pBytes are all ASCII.
bool areAscii8(const unsigned char* i_pBytes) {
  uint64_t word = 0;
  std::memcpy(&word, i_pBytes, sizeof(word));
  return (word & 0x8080808080808080ull) == 0;
}

}  // namespace

bool decode(const char* i_Bytes, size_t i_Size, wchar_t* o_pText, size_t& o_Count) {
  const unsigned char* pBytes = reinterpret_cast<const unsigned char*>(i_Bytes);
  wchar_t* pOut = o_pText;
  bool valid = true;
  size_t position = 0;
  while (position < i_Size) {
    if (pBytes[position] < 0x80) {
      // ASCII, the bulk of most text, eight bytes at a time where they all are.
      if (position + 8 <= i_Size && areAscii8(pBytes + position)) {
        for (int i = 0; i < 8; ++i) {
          pOut[i] = static_cast<wchar_t>(pBytes[position + i]);
        }
        pOut += 8;
        position += 8;
      } else {
        *pOut++ = static_cast<wchar_t>(pBytes[position++]);
      }
      continue;
    }
    uint32_t minimum = 0;
    const int length = sequenceLength(pBytes[position], minimum);
    if (length == 0 || position + length > i_Size) {
      *pOut++ = REPLACEMENT;
      valid = false;
      ++position;
      continue;
    }
    uint32_t code = pBytes[position] & (0x7F >> length);
    int continuation = 1;
    for (; continuation < length; ++continuation) {
      const unsigned char byte = pBytes[position + continuation];
      if ((byte & 0xC0) != 0x80) {
        break;
      }
      code = (code << 6) | (byte & 0x3F);
    }
    if (continuation < length || code < minimum || !isScalarValue(code)) {
      *pOut++ = REPLACEMENT;
      valid = false;
      position += continuation;
      continue;
    }
    *pOut++ = static_cast<wchar_t>(code);
    position += length;
  }
  o_Count = static_cast<size_t>(pOut - o_pText);
  return valid;
}

bool appendDecoded(const char* i_Bytes, size_t i_Size, std::wstring& io_Text) {
  // Written in place: no sequence gives more characters than it has bytes.
  const size_t start = io_Text.size();
  io_Text.resize(start + i_Size);
  size_t count = 0;
  const bool valid = decode(i_Bytes, i_Size, &io_Text[start], count);
  io_Text.resize(start + count);
  return valid;
}

void appendEncoded(const wchar_t* i_Text, size_t i_Size, std::string& io_Bytes) {
  for (size_t i = 0; i < i_Size; ++i) {
    uint32_t code = static_cast<uint32_t>(i_Text[i]);
    if (!isScalarValue(code)) {
      code = REPLACEMENT;
    }
    if (code < 0x80) {
      io_Bytes.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
      io_Bytes.push_back(static_cast<char>(0xC0 | (code >> 6)));
      io_Bytes.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
      io_Bytes.push_back(static_cast<char>(0xE0 | (code >> 12)));
      io_Bytes.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
      io_Bytes.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
      io_Bytes.push_back(static_cast<char>(0xF0 | (code >> 18)));
      io_Bytes.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
      io_Bytes.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
      io_Bytes.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
  }
}

}  // namespace HostUtf8
