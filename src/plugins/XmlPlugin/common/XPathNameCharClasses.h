// The character classes of XML 1.0 (Appendix B) that XPath names are made of.
//
// The tables behind these tests are generated from libxml2 by
// scripts/generate_name_char_tables.py. Only the Basic Multilingual Plane has members:
// any other value, and 0, is in no class.
#pragma once

namespace XmlPlugin {

class XPathNameCharClasses {
 public:
  static bool isBaseChar(wchar_t i_Char);
  static bool isIdeographic(wchar_t i_Char);
  static bool isCombiningChar(wchar_t i_Char);
  static bool isDigit(wchar_t i_Char);
  static bool isExtender(wchar_t i_Char);
};

}  // namespace XmlPlugin
