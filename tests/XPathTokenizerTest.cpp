#include "XPathTokenizer.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <chrono>
#include <string>
#include <vector>

#include "XPathOperator.h"
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

std::wstring repeat(const std::wstring& i_Text, int i_Count) {
  std::wstring text;
  for (int index = 0; index < i_Count; ++index) {
    text += i_Text;
  }
  return text;
}

// i_Depth nested parentheses, argument lists or predicates around "1".
std::wstring nested(const std::wstring& i_Open, const std::wstring& i_Close, int i_Depth) {
  return repeat(i_Open, i_Depth) + L"1" + repeat(i_Close, i_Depth);
}

struct Row {
  std::wstring xpath;
  TErrorCode code;
  std::string items;  // texts joined by blanks; path operands keep the blanks before them
};

void expectRows(const std::vector<Row>& i_Rows) {
  for (const Row& row : i_Rows) {
    const Tokenized result = tokenize(row.xpath);
    EXPECT_EQ(result.code, row.code) << String(row.xpath).toNarrow();
    EXPECT_EQ(result.text(), row.items) << String(row.xpath).toNarrow();
  }
}

}  // namespace

TEST(XPathTokenizerTest, AcceptsAndRejects) {
  expectRows({
      {L"/", WRONG, ""},
      {L"", WRONG, ""},
      {L"   ", WRONG, ""},
      {L"comment()", WRONG, ""},
      {L"processing-instruction()", WRONG, ""},
      {L"descendant-or-self::node()", WRONG, ""},
      {L"following-sibling::a", WRONG, ""},
      {L"child", WRONG, ""},
      {L".5", WRONG, ""},
      {L"price - 1", WRONG, ""},
      {L"(1", WRONG, ""},
      {L"1)", WRONG, ""},
      {L"'abc", WRONG, ""},
      {L"concat('a',)", WRONG, ""},
      {L"a and", WRONG, ""},
      {L"text()", 0, "text()"},
      {L"a/node()", 0, "a/node()"},
      {L"parentNode", 0, "parentNode"},
      {L"child::a/@*", 0, "child::a/@*"},
      {L"a/../b/.", 0, "a/../b/."},
      {L"/a", 0, "/a"},
      {L"//a[@b='x']/text()", 0, "//a[@b='x']/text()"},
      {L"a -b", 0, "a -b"},
      {L"1 - 2", 0, "1 - 2"},
      {L"count(a) - 1", 0, "count ( a ) - 1"},
      {L"1.5 * 2.", 0, "1.5 * 2."},
      {L"$x", 0, "$ x"},
      {L"p:a/p:*", 0, "p:a/p:*"},
  });
}

TEST(XPathTokenizerTest, EmitsItemsInSourceOrder) {
  expectRows({
      {L"-2", 0, "( 0 - 2 )"},
      {L"--2", 0, "2"},
      {L"- - -a", 0, "( 0 - a )"},
      {L"count(a|b)", 0, "count ( a|b )"},
      {L"a | b|c", 0, "a| b|c"},
      // Each step of a union joins to the text of the previous step without its quotes.
      {L"\"'a\" | \"b'\" | c", 0, "a|b| c"},
      {L"substring('abc', 2)", 0, "substring ( 'abc' , 2 )"},
      {L"concat('a', 'b') = 'ab'", 0, "concat ( 'a' , 'b' ) = 'ab'"},
      {L"(1 + 2) * 3", 0, "( 1 + 2 ) * 3"},
      {L"a and b or c", 0, "a and  b or  c"},
      {L"1 <= 2 != 3 > 4", 0, "1 <= 2 != 3 > 4"},
      {L"6 div 3 mod 2", 0, "6 div 3 mod 2"},
      {L"count(a)[1]/b", 0, "count ( a ) [ 1 ] /"},
      {L"true()", 0, "true ( )"},
      // The rest of an and-chain is lost when its first operand is not as long as " and".
      {L"a=1 and b=2 and c=3", 0, "a = 1 and  b = 2"},
      {L"a=10 and b=2 and c=3", 0, "a = 10 and  b = 2 and  c = 3"},
  });
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

TEST(XPathTokenizerTest, NameCharacterClassesAtRangeBoundaries) {
  expectRows({
      {L"a\u00B7", 0, "a\u00B7"},
      {L"\u00B7a", WRONG, ""},
      {L"a\u0387", 0, "a\u0387"},
      {L"\u0387a", WRONG, ""},
      {L"\u0E45", 0, "\u0E45"},
      {L"\u0E46", WRONG, ""},
      {L"a\u0E46", 0, "a\u0E46"},
      {L"\u3007", 0, "\u3007"},
      {L"\u3006", WRONG, ""},
      {L"_a", 0, "_a"},
      {L"a/_b", 0, "a/_b"},
      {L"a/1b", WRONG, ""},
      {L"a/-b", WRONG, ""},
      {L"a/.b", WRONG, ""},
      {L"a\u0300", 0, "a\u0300"},
      {L"\u0300a", WRONG, ""},
      {L"a\U00010000", WRONG, ""},
  });
}

TEST(XPathTokenizerTest, NestingIsBoundedRightAtTheLimit) {
  const std::vector<std::pair<std::wstring, std::wstring>> brackets = {
      {L"(", L")"}, {L"not(", L")"}, {L"a[", L"]"}};
  for (const auto& bracket : brackets) {
    const std::string name = String(bracket.first).toNarrow();
    EXPECT_EQ(tokenize(nested(bracket.first, bracket.second, XPATH_MAX_NESTING)).code, 0) << name;
    EXPECT_EQ(tokenize(nested(bracket.first, bracket.second, XPATH_MAX_NESTING + 1)).code, WRONG)
        << name;
  }
}

TEST(XPathTokenizerTest, DeepestExpressionsRunOnTwoMebibyteStack) {
  struct Job {
    std::wstring xpath;
    TErrorCode code;
  };
  std::vector<Job> jobs = {{nested(L"-(", L")", XPATH_MAX_NESTING), 1},
                           {nested(L"-//a/b[@c=-", L"]", XPATH_MAX_NESTING), 1},
                           {nested(L"substring(1,", L")", XPATH_MAX_NESTING), 1}};
  for (Job& job : jobs) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 2 * 1024 * 1024);
    pthread_t thread;
    auto run = [](void* io_pJob) -> void* {
      Job* pJob = static_cast<Job*>(io_pJob);
      pJob->code = tokenize(pJob->xpath).code;
      return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &job), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(job.code, 0) << String(job.xpath.substr(0, 20)).toNarrow();
  }
}

TEST(XPathTokenizerTest, HostileInputsEndQuickly) {
  const std::vector<std::wstring> inputs = {
      L"1 and sand and *",
      L"1111111111 and 1 and xand * *",
      nested(L"(", L")", 200) + repeat(L")", 50),
      repeat(L"(", 5000),
      repeat(L"1+", 20000) + L"1",
      repeat(L"a/", 20000) + L"a",
      repeat(L"-", 20000) + L"1",
      std::wstring(XPATH_MAX_LENGTH, L'a'),
      repeat(L"a|", 50000) + L"a",
  };
  const std::vector<TErrorCode> codes = {WRONG, WRONG, WRONG, WRONG, 0, 0, 0, WRONG, 0};
  for (size_t index = 0; index < inputs.size(); ++index) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(tokenize(inputs[index]).code, codes[index]) << index;
    // Generous for sanitizer builds on a loaded machine; a hang or an exponential blow-up
    // takes far longer.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30)) << index;
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
