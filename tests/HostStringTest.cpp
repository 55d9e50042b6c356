#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>

#include "host/String.h"
#include "host/StringMap.h"

namespace {

struct SubstringRow {
  const wchar_t* text;
  int begin;
  int end;  // inclusive; INT_MIN: to the end
  const wchar_t* expected;
};

TEST(HostString, SubstringHasInclusiveEndAndClamps) {
  const SubstringRow rows[] = {
      // clang-format off
      {L"abcdef", 1, 3, L"bcd"}, {L"abcdef", 0, 0, L"a"}, {L"abcdef", 2, 3, L"cd"},
      {L"abcdef", -5, 2, L"abc"}, {L"abcdef", 4, 99, L"ef"}, {L"abcdef", 3, 2, L""},
      {L"abcdef", 6, 9, L""}, {L"abcdef", 2, -7, L""}, {L"", 0, 0, L""},
      {L"abcdef", 2, INT_MIN, L"cdef"}, {L"abcdef", -1, INT_MIN, L"abcdef"},
      {L"abcdef", 9, INT_MIN, L""},
      // clang-format on
  };
  for (const SubstringRow& row : rows) {
    const String text(row.text);
    const String actual =
        row.end == INT_MIN ? text.substring(row.begin) : text.substring(row.begin, row.end);
    EXPECT_STREQ(row.expected, actual.c_str())
        << "\"" << text.toNarrow() << "\" [" << row.begin << ", " << row.end << "]";
  }
}

struct SearchRow {
  const wchar_t* text;
  const wchar_t* sought;  // one character searches by character
  int from;               // INT_MIN: lastIndexOf
  int expected;
};

TEST(HostString, IndexOfAndLastIndexOf) {
  const SearchRow rows[] = {
      {L"abcabc", L"b", 0, 1},       {L"abcabc", L"b", 2, 4},        {L"abcabc", L"b", -3, 1},
      {L"abcabc", L"b", 99, -1},     {L"abcabc", L"z", 0, -1},       {L"abcabc", L"ca", 0, 2},
      {L"abcabc", L"abc", 1, 3},     {L"abcabc", L"", 3, 3},         {L"abcabc", L"abcd", 0, -1},
      {L"abcabc", L"b", INT_MIN, 4}, {L"abcabc", L"ab", INT_MIN, 3}, {L"abcabc", L"x", INT_MIN, -1},
      {L"", L"a", INT_MIN, -1},
  };
  for (const SearchRow& row : rows) {
    const String text(row.text);
    const String sought(row.sought);
    int actual = 0;
    if (row.from == INT_MIN) {
      actual = sought.length() == 1 ? text.lastIndexOf(sought.charAt(0)) : text.lastIndexOf(sought);
    } else {
      actual = sought.length() == 1 ? text.indexOf(sought.charAt(0), row.from)
                                    : text.indexOf(sought, row.from);
    }
    EXPECT_EQ(row.expected, actual) << "\"" << text.toNarrow() << "\" seeking \""
                                    << sought.toNarrow() << "\" from " << row.from;
  }
}

TEST(HostString, PrefixSuffixCharAtAndCompare) {
  const String text(L"prefix:name");
  EXPECT_TRUE(text.startsWith(String(L"prefix")));
  EXPECT_TRUE(text.startsWith(String(L"name"), 7));
  EXPECT_FALSE(text.startsWith(String(L"name"), 8));
  EXPECT_FALSE(text.startsWith(String(L"x"), 99));
  EXPECT_TRUE(text.endsWith(String(L":name")));
  EXPECT_FALSE(String(L"me").endsWith(String(L"name")));
  EXPECT_EQ(L'p', text.charAt(0));
  EXPECT_EQ(L'\0', text.charAt(-1));
  EXPECT_EQ(L'\0', text.charAt(text.length()));
  EXPECT_LT(String(L"abc").compareTo(String(L"abd")), 0);
  EXPECT_GT(String(L"abd").compareTo(String(L"abc")), 0);
  EXPECT_LT(String(L"ab").compareTo(String(L"abc")), 0);
  EXPECT_EQ(0, String(L"ABC").compareTo(String(L"abc"), 1));
  EXPECT_NE(0, String(L"ABC").compareTo(String(L"abc"), 0));
  EXPECT_EQ(0, String(L"abc").compareTo(L"abc"));
  EXPECT_EQ(0, String().compareTo(static_cast<const wchar_t*>(nullptr)));
  EXPECT_TRUE(String(L"a") < String(L"b"));
  EXPECT_TRUE(String(L"x") == String("x"));
  EXPECT_TRUE(String(L"x") != String(L"y"));
}

TEST(HostString, ConcatAndTrimChangeOnlyTheirOwnCopy) {
  String text(L"ab");
  const String copy(text);
  text.concat(String(L"cd")).concat(L"e").concat(L'f');
  EXPECT_STREQ(L"abcdef", text.c_str());
  EXPECT_STREQ(L"ab", copy.c_str());
  text.concat(text);
  EXPECT_STREQ(L"abcdefabcdef", text.c_str());
  text.concat(text.c_str() + 10);
  EXPECT_STREQ(L"abcdefabcdefef", text.c_str());
  String padded(L" \t x y \n");
  const String before(padded);
  EXPECT_STREQ(L"x y", padded.trim().c_str());
  EXPECT_STREQ(L" \t x y \n", before.c_str());
  String blank(L" \n ");
  EXPECT_TRUE(blank.trim().isEmpty());
}

TEST(HostString, Conversions) {
  EXPECT_STREQ(L"-42", String::valueOf(-42).c_str());
  EXPECT_STREQ(L"0", String::valueOf(0).c_str());
  EXPECT_STREQ(L"1234567890", String::valueOf(1234567890).c_str());
  EXPECT_STREQ(L"-9223372036854775808", String::valueOf(std::numeric_limits<long>::min()).c_str());
  EXPECT_STREQ(L"9223372036854775807", String::valueOf(std::numeric_limits<long>::max()).c_str());
  EXPECT_STREQ(L"", String(static_cast<const char*>(nullptr)).c_str());
  EXPECT_STREQ(L"", String(static_cast<const wchar_t*>(nullptr)).c_str());
  EXPECT_STREQ(L"abc", String(L"abcdef", 3).c_str());
  const String unicode("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");  // e-acute, euro, emoji
  EXPECT_EQ(3, unicode.length());
  EXPECT_EQ(L'\x20AC', unicode.charAt(1));
  EXPECT_EQ("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", unicode.toNarrow());
  EXPECT_STREQ(L"a\uFFFDb", String("a\377b").c_str());      // invalid byte
  EXPECT_STREQ(L"\xFFFD", String("\xED\xA0\x80").c_str());  // encoded surrogate
  EXPECT_STREQ(L"\xFFFD", String("\xC0\xAF").c_str());      // overlong form
  EXPECT_EQ(L"x", String(std::wstring(L"x")).toWide());
}

}  // namespace

// A lookup writes the number into the caller's string, reusing its buffer only when nothing
// else shares it, and never leaves digits of a longer number behind.
TEST(HostString, LookupsWriteNumbersIntoTheCallersString) {
  const String names[] = {String(L"a")};
  const String values[] = {String(L"v")};
  String value;
  String number(L"text");
  const String shared(number);
  ASSERT_EQ(0, StringMap(names, values, 1, 1234567).getEntry(String(L"a"), value, number));
  EXPECT_STREQ(L"1234567", number.c_str());
  EXPECT_STREQ(L"text", shared.c_str());
  ASSERT_EQ(0, StringMap(names, values, 1, 5).getEntry(String(L"a"), value, number));
  EXPECT_STREQ(L"5", number.c_str());
  EXPECT_EQ(1, number.length());
  ASSERT_EQ(0, StringMap(names, values, 1, INT_MAX).getEntry(String(L"a"), value, number));
  EXPECT_STREQ(L"2147483647", number.c_str());
  EXPECT_STREQ(L"v", value.c_str());
}
