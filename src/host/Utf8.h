// UTF-8 <-> wide-character conversion shared by String and the XML reader.
#pragma once

#include <cstddef>
#include <string>

namespace HostUtf8 {

// Writes the characters encoded in i_Bytes to o_pText, which has room for i_Size of them (no
// sequence gives more characters than it has bytes), and their count to o_Count. Invalid
// sequences are replaced as by appendDecoded, with the same result.
bool decode(const char* i_Bytes, size_t i_Size, wchar_t* o_pText, size_t& o_Count);

// Appends the characters encoded in i_Bytes to io_Text. An invalid or truncated sequence,
// an overlong form, a surrogate or a code point past U+10FFFF appends U+FFFD instead.
// Returns false when anything was replaced.
bool appendDecoded(const char* i_Bytes, size_t i_Size, std::wstring& io_Text);

// Appends the UTF-8 encoding of i_Size wide characters to io_Bytes; a value that is not a
// Unicode scalar value is encoded as U+FFFD.
void appendEncoded(const wchar_t* i_Text, size_t i_Size, std::string& io_Bytes);

}  // namespace HostUtf8
