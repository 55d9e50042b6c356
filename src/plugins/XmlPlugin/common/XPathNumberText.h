// Numbers to text and back, as the engine writes and reads them, without a stream per value.
#pragma once

#include <string_view>

#include "host/String.h"

namespace XmlPlugin {

// The text of a computed number as a default-configured output stream writes it in the
// classic locale (printf's "%g"): six significant digits, scientific notation when the
// decimal exponent is below -4 or at least 6, no trailing zeros or point; -0 for negative
// zero, "nan"/"inf" for the IEEE specials.
String formatNumber(double i_Value);

// The decimal text of a whole number, as String::valueOf writes it.
String formatInteger(long i_Value);

// Reads the numeral at the start of i_Text as a formatted stream extraction of a double in
// the classic locale does: blanks skipped, an optional sign, digits with at most one point,
// an optional exponent, stopping at the first character that cannot continue the numeral.
// Returns false, leaving o_Value as it was, when the numeral read is not a whole number text
// ("abc", "-", "1e"); a numeral beyond the range of a double reads as the largest finite
// value of its sign.
bool readNumber(std::wstring_view i_Text, double& o_Value);

// The whole number at the start of i_Text as wcstol reads it in base 10. Plain digits, the
// form attribute lookups report numbers in, are read without a call per text.
long readInteger(const String& i_Text);

// i_Text without the white space (iswspace) at either end, as String::trim cuts it, without a
// copy: valid while i_Text lives.
std::wstring_view trimmedView(const String& i_Text);

}  // namespace XmlPlugin
