#include "XPathNumberText.h"

#include <locale.h>
#include <stdlib.h>

#include <charconv>
#include <cmath>
#include <cwctype>
#include <limits>
#include <string>

#include "host/WideChar.h"

namespace XmlPlugin {

namespace {

bool isClassicSpace(wchar_t i_Character) {
  return i_Character == L' ' || (i_Character >= L'\t' && i_Character <= L'\r');
}

bool isDigit(wchar_t i_Character) {
  return i_Character >= L'0' && i_Character <= L'9';
}

// The characters a stream extraction of a double gathers before it converts them: a sign,
// then digits, one point before any exponent, and an exponent mark (with its sign) once a
// digit was seen.
std::string gatherNumeral(const wchar_t* i_pBegin, const wchar_t* i_pEnd) {
  const wchar_t* p = i_pBegin;
  while (p != i_pEnd && isClassicSpace(*p)) {
    ++p;
  }
  std::string numeral;
  if (p != i_pEnd && (*p == L'+' || *p == L'-')) {
    numeral += static_cast<char>(*p++);
  }
  bool digit = false;
  bool point = false;
  bool exponent = false;
  for (; p != i_pEnd; ++p) {
    if (isDigit(*p)) {
      numeral += static_cast<char>(*p);
      digit = true;
    } else if (*p == L'.' && !point && !exponent) {
      numeral += '.';
      point = true;
    } else if ((*p == L'e' || *p == L'E') && digit && !exponent) {
      numeral += 'e';
      exponent = true;
      if (p + 1 != i_pEnd && (p[1] == L'+' || p[1] == L'-')) {
        numeral += static_cast<char>(*++p);
      }
    } else {
      break;
    }
  }
  return numeral;
}

// The C library's conversion in the classic locale whatever the process locale is, which is
// what the stream extraction ends in.
locale_t classicLocale() {
  static const locale_t s_Locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  return s_Locale;
}

}  // namespace

String formatNumber(double i_Value) {
  // Every comparison makes a 0 or a 1, a predicate one per candidate: those texts are shared.
  static const String s_Zero(L"0");
  static const String s_One(L"1");
  if (i_Value == 1.0) {
    return s_One;
  }
  if (i_Value == 0.0 && !std::signbit(i_Value)) {
    return s_Zero;
  }
  char narrow[32];
  const std::to_chars_result written =
      std::to_chars(narrow, narrow + sizeof(narrow), i_Value, std::chars_format::general, 6);
  wchar_t wide[sizeof(narrow)];
  const int length = static_cast<int>(written.ptr - narrow);
  for (int i = 0; i < length; ++i) {
    wide[i] = static_cast<wchar_t>(narrow[i]);
  }
  return String(wide, length);
}

String formatInteger(long i_Value) {
  return String::valueOf(i_Value);
}

namespace {

// A text of only a minus sign and up to fifteen digits, read as the C library would read it:
// such an integer is exact in a double. Most numbers in documents are written so.
bool readPlainInteger(std::wstring_view i_Text, double& o_Value) {
  const bool negative = !i_Text.empty() && i_Text[0] == L'-';
  const size_t first = negative ? 1 : 0;
  if (i_Text.size() == first || i_Text.size() - first > 15) {
    return false;
  }
  long long value = 0;
  for (size_t at = first; at < i_Text.size(); ++at) {
    if (!isDigit(i_Text[at])) {
      return false;
    }
    value = value * 10 + (i_Text[at] - L'0');
  }
  o_Value = negative ? -static_cast<double>(value) : static_cast<double>(value);
  return true;
}

}  // namespace

bool readNumber(std::wstring_view i_Text, double& o_Value) {
  if (readPlainInteger(i_Text, o_Value)) {
    return true;
  }
  const std::string numeral = gatherNumeral(i_Text.data(), i_Text.data() + i_Text.size());
  if (numeral.empty()) {
    return false;
  }
  char* pEnd = nullptr;
  const double value = strtod_l(numeral.c_str(), &pEnd, classicLocale());
  if (pEnd != numeral.c_str() + numeral.size()) {
    return false;
  }
  o_Value = std::isinf(value) ? std::copysign(std::numeric_limits<double>::max(), value) : value;
  return true;
}

std::wstring_view trimmedView(const String& i_Text) {
  const std::wstring_view text(i_Text.c_str(), static_cast<size_t>(i_Text.length()));
  size_t begin = 0;
  size_t end = text.size();
  while (begin < end && std::iswspace(static_cast<wint_t>(text[begin])) != 0) {
    ++begin;
  }
  while (end > begin && std::iswspace(static_cast<wint_t>(text[end - 1])) != 0) {
    --end;
  }
  return text.substr(begin, end - begin);
}

long readInteger(const String& i_Text) {
  // Nine digits at most: the value stays within a long on every platform.
  const wchar_t* pText = i_Text.c_str();
  long value = 0;
  int digits = 0;
  for (; digits < 10 && pText[digits] >= L'0' && pText[digits] <= L'9'; ++digits) {
    value = value * 10 + (pText[digits] - L'0');
  }
  return digits > 0 && digits < 10 && pText[digits] == L'\0' ? value : i_wcstol(pText, nullptr, 10);
}

}  // namespace XmlPlugin
