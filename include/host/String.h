// The host's wide-character string.
//
// Copies share one immutable, reference-counted character buffer, so copying a
// String (a node name handed to every node that bears it, a value passed by value)
// costs no allocation; a modifying operation gives the string its own buffer first.
// All indexes are 0-based. Indexes out of range are clamped, never undefined
// behaviour: charAt past the end answers 0, substring clamps both ends.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

class String {
 public:
  String();
  String(const char* i_Narrow);   // UTF-8 (plain ASCII in practice); null gives ""
  String(const wchar_t* i_Wide);  // null gives ""
  String(const wchar_t* i_Wide, int i_Length);
  String(const std::wstring& i_Wide);
  String(const String& i_Other);
  String(String&& i_Other) noexcept;
  String& operator=(const String& i_Other);
  String& operator=(String&& i_Other) noexcept;
  ~String();

  int length() const;
  bool isEmpty() const { return length() == 0; }
  wchar_t charAt(int i_Index) const;  // 0 when out of range

  // -1 when absent; a negative start counts as 0.
  int indexOf(wchar_t i_Char, int i_From = 0) const;
  int indexOf(const String& i_Text, int i_From = 0) const;
  int lastIndexOf(wchar_t i_Char) const;
  int lastIndexOf(const String& i_Text) const;

  bool startsWith(const String& i_Prefix, int i_Start = 0) const;
  bool endsWith(const String& i_Suffix) const;

  // <0, 0 or >0 like wcscmp; i_IgnoreCase non-zero compares case-insensitively.
  int compareTo(const String& i_Other, int i_IgnoreCase = 0) const;
  int compareTo(const wchar_t* i_Other) const;  // 0 when equal; null counts as ""

  String substring(int i_Begin) const;                      // to the end
  String substring(int i_Begin, int i_EndInclusive) const;  // end index INCLUSIVE

  // Appending, in place; each returns *this.
  String& concat(const String& i_Text);
  String& concat(const wchar_t* i_Text);
  String& concat(wchar_t i_Char);

  // Removes leading and trailing white space (iswspace) in place; returns *this.
  String& trim();

  static String valueOf(long i_Value);  // decimal text

  const wchar_t* c_str() const;  // always zero-terminated, valid while the String lives
  std::string toNarrow() const;  // UTF-8
  std::wstring toWide() const;

  bool operator==(const String& i_Other) const;
  bool operator!=(const String& i_Other) const { return !(*this == i_Other); }
  bool operator<(const String& i_Other) const { return compareTo(i_Other) < 0; }

 private:
  struct Buffer;
  // Strings whose buffers are placed in a document's storage are made there.
  friend class TreeArena;
  // Attribute lookups write numbers into the caller's string.
  friend class StringMap;
  // A string over a buffer placed there: marked in its pointer, so that copying and
  // destroying it touch neither the buffer nor its count.
  explicit String(Buffer* i_pPlaced);
  bool isPlaced() const;
  Buffer* buffer() const;  // m_Buffer without the mark
  void release();
  void makeUnique(int i_ExtraCapacity);
  std::wstring_view view() const { return std::wstring_view(c_str(), length()); }
  String& append(const wchar_t* i_Text, int i_Length);
  // Replaces the text by the decimal text of i_Value, in the string's own buffer when it has
  // one large enough that nothing else shares.
  void assignDecimal(long i_Value);
  int compareTo(std::wstring_view i_Other, int i_IgnoreCase) const;
  Buffer* m_Buffer;  // null for the empty string; its lowest bit marks a placed buffer
};
