// Typed values: quote stripping, the conversions, copying and the item factory.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "TestRows.h"
#include "XPathArgument.h"
#include "XPathExpression.h"

using namespace XmlPlugin;

TEST(XPathExpressionTest, CutQuota) {
  const struct {
    const wchar_t* m_Text;
    const wchar_t* m_Expected;
  } rows[] = {
      {L"'abc'", L"abc"}, {L"\"a'b\"", L"a'b"}, {L"'abc\"", L"'abc\""}, {L"abc", L"abc"},
      {L"", L""},         {L"'", L""},          {L"''", L""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(XPathExpression::CutQuota(row.m_Text), String(row.m_Expected))
        << String(row.m_Text).toNarrow();
  }
}

TEST(XPathExpressionTest, SetExpressionNumbReadsTheLeadingNumeral) {
  const struct {
    const wchar_t* m_Text;
    double m_Expected;
  } rows[] = {
      // clang-format off
      {L"12abc", 12}, {L"' 2.5 '", 2.5}, {L"-.5", -0.5}, {L"abc", 7},
      {L"1e400", std::numeric_limits<double>::max()},
      {L"-1e400", -std::numeric_limits<double>::max()}, {L"1e-400", 0}, {L"  -7.5e1x", -75},
      {L"+3", 3}, {L"5.", 5}, {L"0.1", 0.1}, {L"1e", 7}, {L"-", 7}, {L"- 5", 7}, {L"-5 3", -5},
      {L".", 7}, {L"00012", 12},
      {L"123456789012345678901234567890", 123456789012345678901234567890.0},
      {L"0.30000000000000004", 0.30000000000000004},
      {L"4.94066e-324", std::numeric_limits<double>::denorm_min()}, {L"inf", 7}, {L"nan", 7},
      {L"0x10", 0},
      // Plain integers, read without the C library up to fifteen digits.
      {L"2000", 2000}, {L"-42", -42}, {L"999999999999999", 999999999999999.0},
      {L"-9999999999999999", -9999999999999999.0}, {L"12345678901234567", 12345678901234567.0},
      // clang-format on
  };
  for (const auto& row : rows) {
    XPathExpression value(7.0);
    value.SetExpressionNumb(row.m_Text);
    EXPECT_EQ(value.GetExpressionNumb(), row.m_Expected) << String(row.m_Text).toNarrow();
    EXPECT_EQ(value.GetExpression(), String()) << "the text is not changed";
  }
  XPathExpression negativeZero(7.0);
  negativeZero.SetExpressionNumb(L"-0");
  EXPECT_TRUE(negativeZero.GetExpressionNumb() == 0.0 &&
              std::signbit(negativeZero.GetExpressionNumb()));
}

TEST(XPathExpressionTest, Conversions) {
  const struct {
    const wchar_t* m_Value;
    double m_Number;
    int m_Bool;
    const char* m_String;
  } rows[] = {
      // clang-format off
      {L"'0'", 0, 1, "0"}, {L"0", 0, 0, "0"}, {L"-0", 0, 0, "0"}, {L"2.5", 2.5, 1, "2.5"},
      {L"NaN", 0, 0, "NaN"}, {L"-Infinity", 0, 1, "-Infinity"}, {L"Infinity", 0, 1, "Infinity"},
      {L"'abc'", 0, 1, "abc"}, {L"''", 0, 0, ""}, {L"{a,b,c}", 3, 1, ""}, {L"{}", 0, 0, ""},
      {L"true()", 1, 1, "1"}, {L"false()", 0, 0, "0"},
      // clang-format on
  };
  for (const auto& row : rows) {
    std::unique_ptr<XPathExpression> pValue = TestRows::makeValue(row.m_Value);
    SCOPED_TRACE(String(row.m_Value).toNarrow());
    EXPECT_EQ(pValue->GetExpressionNumb(), row.m_Number);
    EXPECT_EQ(pValue->GetExpressionBool(), row.m_Bool);
    EXPECT_EQ(pValue->GetExpressionString().toNarrow(), row.m_String);
  }
  // The kind overrides the text of a number.
  XPathArgument value(L"42");
  value.setNumbType(NInfinity);
  EXPECT_EQ(value.GetExpressionString(), String(L"-Infinity"));
  value.setDataType(StringType);
  EXPECT_EQ(value.GetExpressionString(), String(L"42"));
}

TEST(XPathExpressionTest, CopyKeepsTheValueAndOwnsItsContext) {
  std::unique_ptr<XPathExpression> pSource = TestRows::makeValue(L"{a,b}");
  pSource->setRootPosition(3);
  Node node(ElementNode, L"e", 4, nullptr, nullptr);
  std::list<Node*> siblings{&node};
  pSource->setStartNode(&node);
  pSource->setSiblings(&siblings);

  XPathExpression copy(*pSource);
  EXPECT_EQ(copy.getDataType(), NodeSetType);
  EXPECT_EQ(copy.getRootPosition(), 3);
  EXPECT_TRUE(copy.getOutputNodesList().empty());
  ASSERT_NE(copy.getStartNode(), &node);
  EXPECT_EQ(copy.getStartNode()->m_Name, String(L"e"));
  EXPECT_EQ(*copy.getSiblings(), siblings);

  XPathExpression target(L"'x'");
  target = copy;
  EXPECT_EQ(target.GetExpression(), String());
  EXPECT_EQ(target.getStartNode()->m_Index, 4);
}
