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
