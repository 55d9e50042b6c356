// Why a text is rejected: each run of a rejected text writes one reason record with the
// column where recognition stopped and what was found there.
#include "XPathRejection.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestTrace.h"
#include "XPathEvaluationContext.h"
#include "XPathExpressionsParser.h"
#include "XPathTokenizer.h"
#include "XmlPlugin/XmlPluginReasons.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

// The reasons a run of i_XPath gave.
std::vector<std::string> reasonsFor(const std::wstring& i_XPath) {
  TraceCollector collector(1);
  XPathExpressionsParser parser{String(i_XPath)};
  XPathEvaluationContext context;
  parser.runParser(nullptr, context);
  return collector.texts(XML_PLUGIN_REASON_FUNCTION);
}

struct Row {
  std::wstring xpath;
  int column;  // 0: accepted, no reason
  std::string reason;
};

TEST(XPathRejectionTest, EachRejectedTextSaysWhereAndWhy) {
  const std::wstring deep =
      std::wstring(XPATH_MAX_NESTING + 1, L'(') + L"1" + std::wstring(XPATH_MAX_NESTING + 1, L')');
  const std::string minus = "a blank and `-` after the name `price` continue the name: write ";
  const std::string digit = "a number starts with a digit: write ";
  // clang-format off
  const std::vector<Row> rows = {
      {L"cout(a)", 1, "unknown function `cout`"},
      {L"count(a) + cout (b)", 12, "unknown function `cout`"},
      {L"//a/following-sibling::b", 5, "axis `following-sibling::` is not supported"},
      {L"//a/descendant-or-self::node()", 5, "axis `descendant-or-self::` is not supported"},
      {L"a/foo::b", 3, "unknown axis `foo::`"}, {L"//comment()", 3, "`comment()` is not supported"},
      {L"//processing-instruction('x')", 3, "`processing-instruction()` is not supported"},
      {L"id('x')", 1, "function `id` is not supported"},
      {L"//a[1]]", 7, "unbalanced bracket: `]` closes nothing"},
      {L"//a[@b='x'", 4, "unbalanced bracket: `[` is not closed"},
      {L"//a['x]'", 4, "unbalanced bracket: `[` is not closed"},
      {L"count((a)", 6, "unbalanced bracket: `(` is not closed"},
      {L"//a[(1])", 7, "unbalanced bracket: `]` does not close the `(` at column 5"},
      {L"'abc", 1, "the quote `'` is not closed"}, {L"   ", 1, "the text is blank"},
      {L"", 1, "the text is blank"}, {L"price - 1", 9, minus + "`(price) - 1`"},
      {L"count(item) > price -  2", 24, minus + "`(price) - 2`"},
      {L".5", 1, digit + "`0.5`"}, {L"count(a) div .25", 14, digit + "`0.25`"},
      {L"a b", 3, "unexpected `b`"}, {L"1 +", 3, "unexpected `+`"}, {L"/", 1, "unexpected `/`"},
      {deep, XPATH_MAX_NESTING + 1,
       "the text nests parentheses, argument lists and predicates deeper than 256 levels"},
      {std::wstring(XPATH_MAX_LENGTH + 1, L'a'), XPATH_MAX_LENGTH + 1,
       "the text is longer than 1048576 characters"},
      {L"count(//a[@b='x'])", 0, ""}, {L"//a/text()", 0, ""}, {L"a/ancestor-or-self::b", 0, ""},
  };
  // clang-format on
  for (const Row& row : rows) {
    const std::string expected =
        "XPath text rejected at column " + std::to_string(row.column) + ": " + row.reason;
    EXPECT_EQ(reasonsFor(row.xpath),
              row.column == 0 ? std::vector<std::string>() : std::vector<std::string>{expected})
        << String(row.xpath.substr(0, 40)).toNarrow();
  }
}

TEST(XPathRejectionTest, EveryRunOfACompiledTextGivesItsReason) {
  // A compiled text is kept and run again for the next request: that one needs its reason too.
  XPathExpressionsParser parser{String(L"cout(a)")};
  for (int run = 0; run < 2; ++run) {
    TraceCollector collector(1);
    XPathEvaluationContext context;
    EXPECT_EQ(parser.runParser(nullptr, context), XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION);
    EXPECT_EQ(collector.texts(XML_PLUGIN_REASON_FUNCTION),
              std::vector<std::string>{"XPath text rejected at column 1: unknown function `cout`"});
  }
}

}  // namespace
