// Up to 16 bytes held in two words and their count, so that equal byte strings compare and hash
// in a few instructions, without a call and without reading past their end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

struct ShortBytes {
  static constexpr size_t MAX_BYTES = 16;

  // i_Bytes: 1 to MAX_BYTES of them. Two reads that may overlap cover every byte; with the count
  // kept, equal words still mean equal bytes.
  explicit ShortBytes(std::string_view i_Bytes) : m_Words{0, 0}, m_Length(i_Bytes.size()) {
    const char* p = i_Bytes.data();
    const size_t n = i_Bytes.size();
    if (n >= 8) {
      m_Words[0] = load<uint64_t>(p);
      m_Words[1] = load<uint64_t>(p + n - 8);
    } else if (n >= 4) {
      m_Words[0] = load<uint32_t>(p) | (static_cast<uint64_t>(load<uint32_t>(p + n - 4)) << 32);
    } else if (n > 0) {
      m_Words[0] = static_cast<unsigned char>(p[0]) | static_cast<unsigned char>(p[n / 2]) << 8 |
                   static_cast<unsigned char>(p[n - 1]) << 16;
    }
  }
  ShortBytes() : m_Words{0, 0}, m_Length(0) {}

  bool operator==(const ShortBytes& i_Other) const {
    return m_Words[0] == i_Other.m_Words[0] && m_Words[1] == i_Other.m_Words[1] &&
           m_Length == i_Other.m_Length;
  }

  // Two rounds of multiplying and folding the high bits down, so that the low bits, which pick
  // a slot, depend on every byte. A collision only costs a comparison or sharing, so the hash
  // need not resist crafted input.
  size_t hash() const {
    uint64_t mixed = (m_Words[0] + m_Length) * 0x9E3779B97F4A7C15ull;
    mixed = (mixed ^ (mixed >> 29) ^ m_Words[1]) * 0xC2B2AE3D27D4EB4Full;
    return static_cast<size_t>(mixed ^ (mixed >> 32));
  }

  uint64_t m_Words[2];
  size_t m_Length;  // 0 for no bytes

 private:
  template <typename Word>
  static Word load(const char* i_pBytes) {
    Word word;
    std::memcpy(&word, i_pBytes, sizeof(word));
    return word;
  }
};
