// Operands: classification, numeric text, number formatting and reading, path anchoring.
#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "TestXml.h"
#include "XPathArgument.h"
#include "XPathEvaluationContext.h"
#include "XPathNumberText.h"

using namespace XmlPlugin;

TEST(XPathArgumentTest, Classification) {
  const struct {
    const wchar_t* m_Text;
    XPathDataType m_Type;
    double m_Number;
  } rows[] = {
      {L"'12'", NumberType, 12},   {L"\" 3.5 \"", NumberType, 3.5}, {L"12", NumberType, 12},
      {L"'abc'", StringType, 0},   {L"''", StringType, 0},          {L"abc", NodeSetType, 0},
      {L"a/b[1]", NodeSetType, 0}, {L"a|b", NodeSetType, 0},        {L"'- 5'", NumberType, 0},
  };
  XPathEvaluationContext context;
  for (const auto& row : rows) {
    XPathArgument operand(row.m_Text);
    SCOPED_TRACE(String(row.m_Text).toNarrow());
    EXPECT_EQ(operand.getDataType(), row.m_Type);
    EXPECT_EQ(operand.getNumbType(), NumbType);
    EXPECT_EQ(operand.GetExpression(), String(row.m_Text));
    if (row.m_Type == NumberType) {
      EXPECT_EQ(operand.GetExpressionNumb(), row.m_Number);
      operand.EvaluateXPath(context);  // only node-set operands evaluate
      EXPECT_TRUE(operand.getOutputNodesList().empty());
    }
  }
}

TEST(XPathArgumentTest, IsNumber) {
  const struct {
    const wchar_t* m_Text;
    int m_Expected;
  } rows[] = {
      {L"5", 1},    {L"5.", 1},  {L".5", 1},  {L"-.5", 1}, {L"- 5", 1},   {L" 12 ", 1},
      {L"-5 0", 1}, {L"", 0},    {L".", 0},   {L"-", 0},   {L"1.2.3", 0}, {L"+5", 0},
      {L"1e5", 0},  {L"5-3", 0}, {L"5 0", 0}, {L"--5", 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(XPathArgument::isNumber(row.m_Text), row.m_Expected) << String(row.m_Text).toNarrow();
  }
}

TEST(XPathArgumentTest, ComputedNumberIsFormattedLikeAStream) {
  const struct {
    double m_Value;
    const char* m_Text;
  } rows[] = {
      // clang-format off
      {3, "3"}, {0.5, "0.5"}, {1.0 / 3, "0.333333"}, {2.5, "2.5"}, {100000, "100000"},
      {1000000, "1e+06"}, {1234567, "1.23457e+06"}, {-0.0, "-0"}, {0.0001, "0.0001"},
      {0.00001, "1e-05"},
      // six significant digits, rounded to nearest (ties to even on the binary value)
      {999999.4, "999999"}, {999999.5, "1e+06"}, {123456.5, "123456"}, {0.1 + 0.2, "0.3"},
      {-1.5, "-1.5"}, {-1234567, "-1.23457e+06"}, {12.25, "12.25"}, {2000, "2000"}, {1e21, "1e+21"},
      {1e100, "1e+100"}, {123456789012.0, "1.23457e+11"}, {0.000123456789, "0.000123457"},
      {1.5e-7, "1.5e-07"}, {std::numeric_limits<double>::max(), "1.79769e+308"},
      {std::numeric_limits<double>::denorm_min(), "4.94066e-324"}, {2147483647.0, "2.14748e+09"},
      {1, "1"}, {0, "0"},
      // clang-format on
  };
  for (const auto& row : rows) {
    XPathArgument operand(row.m_Value);
    EXPECT_EQ(operand.GetExpression().toNarrow(), row.m_Text) << row.m_Value;
    EXPECT_EQ(operand.getDataType(), NumberType);
    EXPECT_FALSE(operand.isNegativeZero());
  }
}

TEST(XPathArgumentTest, WholeNumbersReadAsWcstolReadsThem) {
  const struct {
    const wchar_t* m_Text;
    long m_Value;
  } rows[] = {
      // clang-format off
      {L"0", 0}, {L"7", 7}, {L"123456789", 123456789}, {L"1234567890", 1234567890},
      {L"98765432101", 98765432101L}, {L"  42", 42}, {L"-17", -17}, {L"+5", 5}, {L"12ab", 12},
      {L"", 0}, {L"x", 0}, {L"007", 7},
      // clang-format on
  };
  for (const auto& row : rows) {
    EXPECT_EQ(readInteger(String(row.m_Text)), row.m_Value) << String(row.m_Text).toNarrow();
  }
}

TEST(XPathArgumentTest, RelativePathsAreAnchoredAtTheContextNode) {
  std::unique_ptr<Node> pTree = parseXml("<list><item><price>1</price></item></list>");
  ASSERT_NE(pTree, nullptr);
  Node* pItem = const_cast<Node*>(findElement(pTree.get(), L"item"));
  const struct {
    const wchar_t* m_Path;
    long m_Position;
    Node* m_pNode;
    const wchar_t* m_Expected;
  } rows[] = {
      // clang-format off
      {L"price", 2, pItem, L"list/item[position()=2]/price"},
      {L"price", 10, pItem, L"list/item[position()=10]/price"},
      {L"price", 2147483647, pItem, L"list/item[position()=2147483647]/price"},
      {L"price", -3, pItem, L"list/price"}, {L"price", 0, pItem, L"list/price"},
      {L"//price", 1, pItem, L"list/item[position()=1]///price"}, {L"/a/b", 2, pItem, L"list//a/b"},
      {L"", 2, pItem, L"list/"}, {L"price", 0, pTree.get(), L"price"},
      {L"price", 3, nullptr, L"price"},
      // clang-format on
  };
  for (const auto& row : rows) {
    EXPECT_EQ(XPathArgument::addPrefixToXPath(row.m_Path, row.m_Position, row.m_pNode),
              String(row.m_Expected))
        << String(row.m_Path).toNarrow() << " at " << row.m_Position;
  }
  EXPECT_EQ(XPathArgument::getXMLRootNode(pItem), pTree.get());
  EXPECT_EQ(XPathArgument::getXMLRootNode(nullptr), nullptr);
}
