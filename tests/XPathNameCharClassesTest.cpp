#include "XPathNameCharClasses.h"

#include <gtest/gtest.h>
#include <libxml/chvalid.h>

using namespace XmlPlugin;

namespace {

struct CharClass {
  const char* name;
  bool (*ours)(wchar_t);
  int (*libxml2)(unsigned int);
};

const CharClass CLASSES[] = {
    {"BaseChar", &XPathNameCharClasses::isBaseChar, &xmlIsBaseChar},
    {"Ideographic", &XPathNameCharClasses::isIdeographic, &xmlIsIdeographic},
    {"CombiningChar", &XPathNameCharClasses::isCombiningChar, &xmlIsCombining},
    {"Digit", &XPathNameCharClasses::isDigit, &xmlIsDigit},
    {"Extender", &XPathNameCharClasses::isExtender, &xmlIsExtender},
};

}  // namespace

TEST(XPathNameCharClassesTest, EveryBmpCodePointAgreesWithLibxml2) {
  for (const CharClass& charClass : CLASSES) {
    int mismatches = 0;
    for (unsigned int code = 0; code <= 0xFFFF; ++code) {
      const bool expected = charClass.libxml2(code) != 0;
      if (charClass.ours(static_cast<wchar_t>(code)) != expected && ++mismatches <= 5) {
        ADD_FAILURE() << charClass.name << " U+" << std::hex << code << " expected " << expected;
      }
    }
    EXPECT_EQ(mismatches, 0) << charClass.name;
  }
}

TEST(XPathNameCharClassesTest, OutsideTheBmpIsInNoClass) {
  for (const CharClass& charClass : CLASSES) {
    for (wchar_t code : {wchar_t(0), wchar_t(0x10000), wchar_t(0x2F800), wchar_t(-1)}) {
      EXPECT_FALSE(charClass.ours(code)) << charClass.name << " " << static_cast<long>(code);
    }
  }
}

TEST(XPathNameCharClassesTest, BoundaryCharacters) {
  struct Row {
    wchar_t code;
    bool base, ideographic, combining, digit, extender;
  };
  const Row rows[] = {
      {L'A', true, false, false, false, false},    {L'0', false, false, false, true, false},
      {0x00B7, false, false, false, false, true},  {0x0387, false, false, false, false, true},
      {0x0E45, true, false, false, false, false},  {0x0E46, false, false, false, false, true},
      {0x3006, false, false, false, false, false}, {0x3007, false, true, false, false, false},
      {0x0300, false, false, true, false, false},  {0xD7A3, true, false, false, false, false},
      {0xD7A4, false, false, false, false, false}, {0x0F29, false, false, false, true, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(XPathNameCharClasses::isBaseChar(row.code), row.base) << std::hex << row.code;
    EXPECT_EQ(XPathNameCharClasses::isIdeographic(row.code), row.ideographic)
        << std::hex << row.code;
    EXPECT_EQ(XPathNameCharClasses::isCombiningChar(row.code), row.combining)
        << std::hex << row.code;
    EXPECT_EQ(XPathNameCharClasses::isDigit(row.code), row.digit) << std::hex << row.code;
    EXPECT_EQ(XPathNameCharClasses::isExtender(row.code), row.extender) << std::hex << row.code;
  }
}
