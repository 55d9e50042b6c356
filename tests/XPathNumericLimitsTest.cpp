#include "XPathNumericLimits.h"

#include <gtest/gtest.h>

#include "TestValues.h"

using namespace XmlPlugin;

namespace {

struct KindRow {
  const wchar_t* m_Left;
  const wchar_t* m_Op;
  const wchar_t* m_Right;
  LimitType m_Expected;
};

void expectKinds(const std::vector<KindRow>& i_Rows) {
  for (const KindRow& row : i_Rows) {
    const auto left = TestValues::makeValue(row.m_Left);
    const auto right = TestValues::makeValue(row.m_Right);
    EXPECT_EQ(row.m_Expected, XPathNumericLimits::evaluate(left.get(), right.get(), row.m_Op))
        << "row: " << String(row.m_Left).toNarrow() << " " << String(row.m_Op).toNarrow() << " "
        << String(row.m_Right).toNarrow();
  }
}

const wchar_t* const INF = L"Infinity";
const wchar_t* const NINF = L"-Infinity";

TEST(XPathNumericLimitsTest, Addition) {
  expectKinds({
      {L"5", L"+", L"3", NumbType},
      {L"5", L"+", L"0", NumbType},
      {L"5", L"+", INF, Infinity},
      {L"-5", L"+", INF, Infinity},
      {L"0", L"+", INF, Infinity},
      {INF, L"+", L"5", Infinity},
      {INF, L"+", L"-5", Infinity},
      {INF, L"+", L"-0", Infinity},
      {L"5", L"+", NINF, NInfinity},
      {L"0", L"+", NINF, NInfinity},
      {NINF, L"+", L"-5", NInfinity},
      {NINF, L"+", L"0", NInfinity},
      {INF, L"+", INF, Infinity},
      {INF, L"+", NINF, NaN},
      {NINF, L"+", INF, NaN},
      {NINF, L"+", NINF, NumbType},  // no rule: the caller adds the stored values
      {L"NaN", L"+", L"5", NumbType},
      {L"NaN", L"+", INF, NumbType},
  });
}

TEST(XPathNumericLimitsTest, Subtraction) {
  expectKinds({
      {L"5", L"-", L"3", NumbType},
      {L"5", L"-", INF, NInfinity},
      {L"-5", L"-", INF, NInfinity},
      {L"0", L"-", INF, NInfinity},
      {INF, L"-", L"5", NInfinity},
      {INF, L"-", L"-5", NInfinity},
      {INF, L"-", L"0", NInfinity},
      {L"5", L"-", NINF, Infinity},
      {L"0", L"-", NINF, Infinity},
      {NINF, L"-", L"5", Infinity},
      {NINF, L"-", L"0", Infinity},
      {INF, L"-", INF, NaN},
      {INF, L"-", NINF, Infinity},
      {NINF, L"-", INF, NInfinity},
      {NINF, L"-", NINF, NaN},
      {L"NaN", L"-", INF, NumbType},
  });
}

TEST(XPathNumericLimitsTest, Multiplication) {
  expectKinds({
      {L"5", L"*", L"3", NumbType},   {L"5", L"*", L"0", NumbType},
      {L"2", L"*", INF, NumbType},  // the sign is read from the infinite operand's value 0
      {L"-5", L"*", INF, NumbType},   {L"0", L"*", INF, NaN},
      {INF, L"*", L"2", Infinity},    {INF, L"*", L"-2", NInfinity},
      {INF, L"*", L"0", NaN},         {L"5", L"*", NINF, NInfinity},
      {L"-5", L"*", NINF, NInfinity}, {L"0", L"*", NINF, NInfinity},
      {NINF, L"*", L"5", NInfinity},  {NINF, L"*", L"-2", NInfinity},
      {NINF, L"*", L"0", NInfinity},  {INF, L"*", INF, NaN},
      {INF, L"*", NINF, NaN},         {NINF, L"*", INF, NaN},
      {NINF, L"*", NINF, NaN},        {L"NaN", L"*", L"2", NumbType},
  });
}

TEST(XPathNumericLimitsTest, Division) {
  expectKinds({
      {L"5", L"div", L"2", NumbType},   {L"5", L"div", L"0", Infinity},
      {L"5", L"div", L"-0", NInfinity}, {L"-5", L"div", L"0", NInfinity},
      {L"-5", L"div", L"-0", Infinity}, {L"0", L"div", L"0", NaN},
      {L"-0", L"div", L"-0", NaN},      {L"5", L"div", INF, Infinity},
      {L"-5", L"div", INF, NInfinity},  {L"0", L"div", INF, NaN},
      {INF, L"div", L"5", NumbType},    {INF, L"div", L"-5", NumbType},
      {INF, L"div", L"0", NaN},         {L"5", L"div", NINF, Infinity},
      {L"-5", L"div", NINF, NInfinity}, {L"0", L"div", NINF, NaN},
      {NINF, L"div", L"5", NumbType},   {NINF, L"div", L"0", NaN},
      {INF, L"div", INF, NaN},          {INF, L"div", NINF, NaN},
      {NINF, L"div", INF, NaN},         {NINF, L"div", NINF, NaN},
      {L"NaN", L"div", L"0", NaN},      {L"NaN", L"div", L"2", NumbType},
  });
}

TEST(XPathNumericLimitsTest, DivisionByAnInfinityThatCarriesAValue) {
  const auto five = TestValues::makeValue(L"5");
  for (LimitType kind : {Infinity, NInfinity}) {
    XPathArgument divisor(3.0);
    divisor.setNumbType(kind);
    EXPECT_EQ(ZeroByInfinity, XPathNumericLimits::evaluateDiv(five.get(), &divisor)) << kind;
  }
}

TEST(XPathNumericLimitsTest, Modulo) {
  expectKinds({
      {L"5", L"mod", L"2", NumbType},
      {L"5", L"mod", L"0", NaN},
      {L"5", L"mod", L"-0", NaN},
      {L"-5", L"mod", L"0", NaN},
      {L"0", L"mod", L"0", NaN},
      {L"5", L"mod", INF, NaN},
      {INF, L"mod", L"2", NumbType},
      {INF, L"mod", L"0", NaN},
      {NINF, L"mod", L"5", NumbType},
      {NINF, L"mod", L"0", NaN},
      {INF, L"mod", NINF, NaN},
      {L"NaN", L"mod", L"2", NumbType},
  });
}

TEST(XPathNumericLimitsTest, UnknownOperatorHasNoSpecialCase) {
  expectKinds(
      {{L"5", L"^", L"0", NumbType}, {INF, L"DIV", INF, NumbType}, {L"0", L"", L"0", NumbType}});
}

TEST(XPathNumericLimitsTest, KindTests) {
  struct Row {
    const wchar_t* m_Value;
    bool m_Numb, m_NaN, m_Inf, m_NInf;
  };
  const Row rows[] = {
      {L"5", true, false, false, false},   {L"-0", true, false, false, false},
      {L"NaN", false, true, false, false}, {INF, false, false, true, false},
      {NINF, false, false, false, true},
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
