#include "XPathNumericLimits.h"

#include <gtest/gtest.h>

#include "TestValues.h"

using namespace XmlPlugin;

namespace {

const wchar_t* const OPERATORS[] = {L"+", L"-", L"*", L"div", L"mod"};

// e1, e2 and the kinds of e1 + e2, e1 - e2, e1 * e2, e1 div e2 and e1 mod e2
// (0 ordinary, 1 NaN, 2 Infinity, 3 -Infinity).
struct KindRow {
  const wchar_t* m_Left;
  const wchar_t* m_Right;
  const char m_Expected[6];
};

const KindRow RESULTS[] = {
    // clang-format off
    // e1           e2            + - * d m
    {L"5",         L"3",         "00000"},
    {L"-5",        L"2",         "00000"},
    {L"5",         L"0",         "00021"},
    {L"5",         L"-0",        "00031"},
    {L"-5",        L"0",         "00031"},
    {L"-5",        L"-0",        "00021"},
    {L"0",         L"0",         "00011"},
    {L"-0",        L"-0",        "00011"},
    {L"5",         L"Infinity",  "23021"},  // * reads the infinity's value 0; div likewise
    {L"-5",        L"Infinity",  "23031"},
    {L"0",         L"Infinity",  "23111"},
    {L"Infinity",  L"2",         "23200"},
    {L"Infinity",  L"-2",        "23300"},
    {L"Infinity",  L"-0",        "23111"},
    {L"5",         L"-Infinity", "32321"},
    {L"-5",        L"-Infinity", "32331"},
    {L"0",         L"-Infinity", "32311"},
    {L"-Infinity", L"5",         "32300"},
    {L"-Infinity", L"-2",        "32300"},
    {L"-Infinity", L"0",         "32311"},
    {L"Infinity",  L"Infinity",  "21111"},
    {L"Infinity",  L"-Infinity", "12111"},
    {L"-Infinity", L"Infinity",  "13111"},
    {L"-Infinity", L"-Infinity", "01111"},  // no rule for + : the caller adds the values
    {L"NaN",       L"2",         "00000"},
    {L"NaN",       L"0",         "00011"},
    {L"NaN",       L"Infinity",  "00111"},
    // clang-format on
};

TEST(XPathNumericLimitsTest, ResultsOfEveryOperator) {
  for (const KindRow& row : RESULTS) {
    const auto left = TestValues::makeValue(row.m_Left);
    const auto right = TestValues::makeValue(row.m_Right);
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(row.m_Expected[i] - '0',
                XPathNumericLimits::evaluate(left.get(), right.get(), OPERATORS[i]))
          << "row: " << String(row.m_Left).toNarrow() << " " << String(OPERATORS[i]).toNarrow()
          << " " << String(row.m_Right).toNarrow();
    }
  }
}

TEST(XPathNumericLimitsTest, DivisionByAnInfinityThatCarriesAValue) {
  const auto five = TestValues::makeValue(L"5");
  for (LimitType kind : {Infinity, NInfinity}) {
    XPathArgument divisor(3.0);
    divisor.setNumbType(kind);
    EXPECT_EQ(ZeroByInfinity, XPathNumericLimits::evaluateDiv(five.get(), &divisor)) << kind;
  }
}

TEST(XPathNumericLimitsTest, UnknownOperatorHasNoSpecialCase) {
  const auto infinity = TestValues::makeValue(L"Infinity");
  const auto zero = TestValues::makeValue(L"0");
  for (const wchar_t* op : {L"^", L"DIV", L""}) {
    EXPECT_EQ(NumbType, XPathNumericLimits::evaluate(infinity.get(), zero.get(), op));
  }
}

TEST(XPathNumericLimitsTest, KindTests) {
  struct Row {
    const wchar_t* m_Value;
    bool m_Numb, m_NaN, m_Inf, m_NInf;
  };
  const Row rows[] = {
      {L"5", true, false, false, false},         {L"-0", true, false, false, false},
      {L"NaN", false, true, false, false},       {L"Infinity", false, false, true, false},
      {L"-Infinity", false, false, false, true},
  };
  for (const Row& row : rows) {
    const auto value = TestValues::makeValue(row.m_Value);
    EXPECT_EQ(row.m_Numb, XPathNumericLimits::isNumbType(value.get()))
        << String(row.m_Value).toNarrow();
    EXPECT_EQ(row.m_NaN, XPathNumericLimits::isNaN(value.get())) << String(row.m_Value).toNarrow();
    EXPECT_EQ(row.m_Inf, XPathNumericLimits::isInfinity(value.get()))
        << String(row.m_Value).toNarrow();
    EXPECT_EQ(row.m_NInf, XPathNumericLimits::isNInfinity(value.get()))
        << String(row.m_Value).toNarrow();
  }
  const auto zeroByInfinity = TestValues::special(ZeroByInfinity);
  EXPECT_FALSE(XPathNumericLimits::isNumbType(zeroByInfinity.get()));
}

}  // namespace
