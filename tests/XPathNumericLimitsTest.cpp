#include "XPathNumericLimits.h"

#include <gtest/gtest.h>

#include "TestRows.h"

using namespace XmlPlugin;
using TestRows::makeValue;

namespace {

// "e1 e2" and the kinds of e1 + e2, e1 - e2, e1 * e2, e1 div e2 and e1 mod e2
// (0 ordinary, 1 NaN, 2 Infinity, 3 -Infinity).
TEST(XPathNumericLimitsTest, ResultsOfEveryOperator) {
  // clang-format off
  TestRows::expectRows({
      {"5 3", "00000"}, {"-5 2", "00000"}, {"5 0", "00021"},
      {"5 -0", "00031"}, {"-5 0", "00031"}, {"-5 -0", "00021"},
      {"0 0", "00011"}, {"-0 -0", "00011"},
      {"5 Infinity", "23021"},  // * reads the infinity's value 0; div likewise
      {"-5 Infinity", "23031"}, {"0 Infinity", "23111"}, {"Infinity 2", "23200"},
      {"Infinity -2", "23300"}, {"Infinity -0", "23111"}, {"5 -Infinity", "32321"},
      {"-5 -Infinity", "32331"}, {"0 -Infinity", "32311"}, {"-Infinity 5", "32300"},
      {"-Infinity -2", "32300"}, {"-Infinity 0", "32311"}, {"Infinity Infinity", "21111"},
      {"Infinity -Infinity", "12111"}, {"-Infinity Infinity", "13111"},
      {"-Infinity -Infinity", "01111"},  // no rule for + : the caller adds the values
      {"NaN 2", "00000"}, {"NaN 0", "00011"}, {"NaN Infinity", "00111"},
  }, [](const std::string& i_Row) {
    const std::wstring text = TestRows::wide(i_Row);
    const auto left = makeValue(text.substr(0, text.find(L' ')));
    const auto right = makeValue(text.substr(text.find(L' ') + 1));
    std::string kinds;
    for (const wchar_t* op : {L"+", L"-", L"*", L"div", L"mod"}) {
      kinds += std::to_string(XPathNumericLimits::evaluate(left.get(), right.get(), op));
    }
    return kinds;
  });
  // clang-format on
}

TEST(XPathNumericLimitsTest, DivisionByAnInfinityThatCarriesAValue) {
  const auto five = makeValue(L"5");
  for (LimitType kind : {Infinity, NInfinity}) {
    XPathArgument divisor(3.0);
    divisor.setNumbType(kind);
    EXPECT_EQ(ZeroByInfinity, XPathNumericLimits::evaluateDiv(five.get(), &divisor)) << kind;
  }
}

}  // namespace
