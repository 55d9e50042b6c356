#include "XPathTokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestLimits.h"
#include "TestRows.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

const TErrorCode WRONG = -15105;

struct Tokenized {
  TErrorCode code;
  std::vector<XPathExpression*> items;
  std::vector<std::unique_ptr<XPathExpression>> owned;
  // The item texts joined by single blanks.
  std::string text() const {
    std::string joined;
    for (const XPathExpression* pItem : items) {
      joined += (joined.empty() ? "" : " ") + pItem->GetExpression().toNarrow();
    }
    return joined;
  }
};

Tokenized tokenize(const std::wstring& i_XPath) {
  XPathTokenizer tokenizer{String(i_XPath)};
  Tokenized result;
  result.code = tokenizer.start();
  result.items = tokenizer.getExpressionVector();
  result.owned = tokenizer.releaseItems();
  return result;
}

}  // namespace

// Rows {xpath, "code|items"}, the item texts joined by blanks; path operands keep the blanks
// before them.
TEST(XPathTokenizerTest, AcceptsRejectsAndEmitsItemsInSourceOrder) {
  // clang-format off
  TestRows::expectRows({
      // The rejection table holds more texts that are rejected, with the reasons.
      {"child", "-15105|"}, {"1)", "-15105|"}, {"concat('a',)", "-15105|"}, {"a and", "-15105|"},
      {"text()", "0|text()"}, {"a/node()", "0|a/node()"}, {"parentNode", "0|parentNode"},
      {"child::a/@*", "0|child::a/@*"}, {"a/../b/.", "0|a/../b/."}, {"/a", "0|/a"},
      {"//a[@b='x']/text()", "0|//a[@b='x']/text()"}, {"a -b", "0|a -b"}, {"1 - 2", "0|1 - 2"},
      {"count(a) - 1", "0|count ( a ) - 1"}, {"1.5 * 2.", "0|1.5 * 2."}, {"$x", "0|$ x"},
      {"p:a/p:*", "0|p:a/p:*"},
      // Items in source order.
      {"-2", "0|( 0 - 2 )"}, {"--2", "0|2"}, {"- - -a", "0|( 0 - a )"},
      {"count(a|b)", "0|count ( a|b )"}, {"a | b|c", "0|a| b|c"},
      // Each step of a union joins to the text of the previous step without its quotes.
      {"\"'a\" | \"b'\" | c", "0|a|b| c"}, {"substring('abc', 2)", "0|substring ( 'abc' , 2 )"},
      {"concat('a', 'b') = 'ab'", "0|concat ( 'a' , 'b' ) = 'ab'"},
      {"(1 + 2) * 3", "0|( 1 + 2 ) * 3"}, {"a and b or c", "0|a and  b or  c"},
      {"1 <= 2 != 3 > 4", "0|1 <= 2 != 3 > 4"}, {"6 div 3 mod 2", "0|6 div 3 mod 2"},
      {"count(a)[1]/b", "0|count ( a ) [ 1 ] /"}, {"true()", "0|true ( )"},
      // The rest of an and-chain is lost when its first operand is not as long as " and".
      {"a=1 and b=2 and c=3", "0|a = 1 and  b = 2"},
      {"a=10 and b=2 and c=3", "0|a = 10 and  b = 2 and  c = 3"},
      // Name character classes at their range boundaries.
      {"a\u00B7", "0|a\u00B7"}, {"\u00B7a", "-15105|"}, {"a\u0387", "0|a\u0387"},
      {"\u0387a", "-15105|"}, {"\u0E45", "0|\u0E45"}, {"\u0E46", "-15105|"},
      {"a\u0E46", "0|a\u0E46"}, {"\u3007", "0|\u3007"}, {"\u3006", "-15105|"}, {"_a", "0|_a"},
      {"a/_b", "0|a/_b"}, {"a/1b", "-15105|"}, {"a/-b", "-15105|"}, {"a/.b", "-15105|"},
      {"a\u0300", "0|a\u0300"}, {"\u0300a", "-15105|"}, {"a\U00010000", "-15105|"},
  }, [](const std::string& i_XPath) {
    const Tokenized result = tokenize(TestRows::wide(i_XPath));
    return std::to_string(result.code) + "|" + result.text();
  });
  // clang-format on
}

TEST(XPathTokenizerTest, ItemsCarryNegativeZeroArgumentCountAndListMarker) {
  const Tokenized negation = tokenize(L"-0");
  ASSERT_EQ(negation.text(), "( 0 - 0 )");
  EXPECT_TRUE(negation.items[1]->isNegativeZero());
  EXPECT_FALSE(negation.items[3]->isNegativeZero());
  EXPECT_FALSE(negation.items[0]->isInfix());

  const Tokenized call = tokenize(L"substring('abc', 2)");
  ASSERT_EQ(call.code, 0);
  EXPECT_TRUE(call.items[0]->isOperator());
  EXPECT_EQ(call.items[0]->getArgumentsCount(), 2);
  EXPECT_TRUE(call.items[1]->isInfix());
  EXPECT_EQ(tokenize(L"concat('a', 'b', 'c')").items[0]->getArgumentsCount(), 3);
  EXPECT_EQ(tokenize(L"position()").items[0]->getArgumentsCount(), 0);
  // "*" as a name test is an operand, not the multiplication.
  EXPECT_FALSE(tokenize(L"count(*)").items[2]->isOperator());
}

// Nesting right at the limit and past it, and inputs that once hung or blew up (the suite's own
// timeout catches a regression).
TEST(XPathTokenizerTest, NestingLimitAndHostileInputsGiveCodes) {
  // clang-format off
  const std::vector<std::pair<std::string, TErrorCode>> rows = {
      {nested("not(", ")", XPATH_MAX_NESTING), 0},
      {nested("not(", ")", XPATH_MAX_NESTING + 1), WRONG},
      {nested("a[", "]", XPATH_MAX_NESTING), 0}, {nested("a[", "]", XPATH_MAX_NESTING + 1), WRONG},
      {"1 and sand and *", WRONG}, {"1111111111 and 1 and xand * *", WRONG},
      {nested("(", ")", 200) + repeated(")", 50), WRONG}, {repeated("(", 5000), WRONG},
      {repeated("1+", 20000) + "1", 0}, {repeated("a/", 20000) + "a", 0},
      {repeated("-", 20000) + "1", 0}, {std::string(XPATH_MAX_LENGTH, 'a'), WRONG},
      {repeated("a|", 50000) + "a", 0},
  };
  // clang-format on
  for (const auto& row : rows) {
    EXPECT_EQ(tokenize(TestRows::wide(row.first)).code, row.second) << row.first.substr(0, 30);
  }
}

TEST(XPathTokenizerTest, CharacterReplacementSweepGivesCodes) {
  const std::vector<std::wstring> queries = {L"//a[@b='x']/text()", L"count(a|b) - 1",
                                             L"substring('abc', 2) = \"bc\"",
                                             L"-(1 + 2) * 3 div $v mod child::c[last()]"};
  const std::wstring replacements = L"()[]'\"-/|*:@$., a1\u00B7\uFFFF";
  for (const std::wstring& query : queries) {
    for (size_t index = 0; index < query.size(); ++index) {
      for (wchar_t replacement : replacements) {
        std::wstring xpath = query;
        xpath[index] = replacement;
        const Tokenized result = tokenize(xpath);
        EXPECT_TRUE(result.code == 0 || result.code == WRONG) << String(xpath).toNarrow();
        EXPECT_EQ(result.code != 0, result.items.empty()) << String(xpath).toNarrow();
      }
    }
  }
}
