#include "XPathLogicalEvaluator.h"

#include <gtest/gtest.h>

#include <cmath>

#include "TestRows.h"
#include "TestTrace.h"

using namespace XmlPlugin;
using TestRows::makeValue;

namespace {

// A comparison as written in an expression, "left op right" (values as in TestRows.h; the right
// one may hold blanks), answered "1" or "0".
std::string compare(const std::string& i_Comparison, Node* i_pTree = nullptr) {
  const std::wstring text = TestRows::wide(i_Comparison);
  const size_t opBegin = text.find(L' ') + 1;
  const size_t opEnd = text.find(L' ', opBegin);
  const auto left = makeValue(text.substr(0, opBegin - 1), i_pTree);
  const auto right = makeValue(text.substr(opEnd + 1), i_pTree);
  // The right operand comes first.
  return std::to_string(XPathLogicalEvaluator::evaluate(
      right.get(), left.get(), String(text.substr(opBegin, opEnd - opBegin))));
}

// Numeric comparison is IEEE's; the pairwise rules below are ones the table does not reach.
TEST(XPathLogicalEvaluatorTest, RulesCalledDirectly) {
  const double nan = std::nan("");
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateLogicalOperation(nan, nan, L"="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateLogicalOperation(nan, 1.0, L"!="));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateLogicalOperation(nan, 1.0, L"<="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateLogicalOperation(-0.0, 0.0, L"="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateLogicalOperation(0.0, 2.0, L"or"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateLogicalOperation(0.0, 2.0, L"and"));
  const auto text = makeValue(L"'a'");
  const auto nodes = makeValue(L"{x}");
  const auto notANumber = makeValue(L"NaN");
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateNodeString(text.get(), nodes.get(), L"<="));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateNodeString(text.get(), nodes.get(), L">="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateNaNNode(nodes.get(), notANumber.get(), L"<"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateNodeNaN(notANumber.get(), nodes.get(), L"<"));
}

// The comments name the action codes the rows reach; "string:5" is a string that looks like a
// number, as a function's result can be.
TEST(XPathLogicalEvaluatorTest, ComparisonTable) {
  const std::unique_ptr<Node> tree = parseXml("<r><a>7</a><b><c>1</c><c>2</c></b></r>");
  ASSERT_NE(nullptr, tree);
  // clang-format off
  TestRows::expectRows({
      // Numbers and booleans.
      {"1 < 2", "1"}, {"2 < 1", "0"}, {"1 ~ 1", "1"},  // 2, as "="
      {"Infinity > 5", "1"}, {"5 > Infinity", "0"}, {"5 != Infinity", "1"},  // 0, 1
      {"Infinity = Infinity", "1"}, {"-Infinity = -Infinity", "1"}, {"Infinity != -Infinity", "1"},
      {"NaN = NaN", "0"}, {"NaN != NaN", "1"}, {"5 = NaN", "0"},
      {"5 != NaN", "0"}, {"NaN or 5", "1"}, {"NaN or 0", "0"},  // 7
      {"5 or NaN", "1"}, {"0 or NaN", "0"}, {"5 and Infinity", "1"},  // 4, 3
      {"0 and Infinity", "0"}, {"Infinity and 0", "0"}, {"Infinity and 3", "1"},  // 5
      {"NaN < Infinity", "0"}, {"true() < 5", "1"}, {"5 = true()", "1"},  // 6
      {"0 = true()", "0"}, {"-1 >= true()", "0"}, {"-1 <= true()", "1"},
      {"true() > false()", "1"}, {"NaN = true()", "0"}, {"NaN = false()", "1"},  // 2, 19
      {"-Infinity = true()", "1"}, {"-Infinity = false()", "0"}, {"true() = Infinity", "1"},  // 28
      {"false() = Infinity", "0"}, {"false() = NaN", "1"}, {"true() = NaN", "0"},  // 29, 30
      {"2 < 2", "0"}, {"ZeroByInfinity < 1", "1"}, {"1 < ZeroByInfinity", "0"},
      // Strings.
      {"5 = string:5", "1"}, {"5 < 'abc'", "0"}, {"5 and 'abc'", "1"},  // 8
      {"0 or ''", "0"}, {"string:5 = 5", "1"}, {"'abc' != 5", "0"},  // 9
      {"'abc' and 1", "1"}, {"NaN or 'x'", "1"}, {"NaN or ''", "0"},  // 10
      {"'x' and Infinity", "1"}, {"'' and Infinity", "0"}, {"'x' or NaN", "1"},  // 11, 31
      {"'' or NaN", "0"}, {"true() < string:5", "0"}, {"true() > string:5", "1"},  // 12, swapped
      {"true() < 'abc'", "0"}, {"true() = 'abc'", "1"}, {"false() = 'abc'", "0"},
      {"string:5 > true()", "1"}, {"'abc' > true()", "0"}, {"'' = false()", "1"},  // 13
      {"'abc' = 'abc'", "1"}, {"'abc' != 'abd'", "1"}, {"string:1.0 = string:1", "0"},  // 14
      {"string:2 < string:10", "1"}, {"'a' < 'b'", "0"}, {"'a' and ''", "0"},
      {"'a' or ''", "1"},
      // Node sets.
      {"2 < {1,3}", "1"}, {"5 < {1,3}", "0"}, {"1 = {abc,1}", "1"},  // 15
      {"1 != {1,abc}", "0"}, {"1 != {2,abc}", "1"}, {"{1,3} > 2", "1"},  // 16
      {"{1} > 2", "0"}, {"{abc,3} != 3", "0"}, {"{3,abc} != 2", "1"},
      {"4 = { 4 }", "1"}, {"{} < 9", "0"}, {"NaN = {1}", "0"},  // 17
      {"NaN != {1}", "1"}, {"NaN != {}", "0"}, {"{1} = NaN", "0"},  // 33, 18
      {"{1} or NaN", "1"}, {"{} or NaN", "0"}, {"Infinity > {1}", "1"},  // 20
      {"Infinity > {}", "0"}, {"Infinity != {abc}", "1"}, {"Infinity = {1}", "0"},
      {"-Infinity < {1}", "1"}, {"-Infinity < {}", "0"}, {"{1} < Infinity", "1"},  // 21, 22
      {"{} < Infinity", "0"}, {"{1} > Infinity", "0"}, {"{1} > -Infinity", "1"},  // 23
      {"{} != -Infinity", "0"}, {"{1} and -Infinity", "1"}, {"{} and -Infinity", "0"},  // 24
      {"{1} = true()", "1"}, {"{} = false()", "1"}, {"5 and {1}", "1"},  // 25
      {"0 or {}", "0"}, {"true() = {}", "0"}, {"'a' = {b,a}", "1"},  // 26
      {"'a' != {a}", "0"}, {"'a' != {a,b}", "1"}, {"'a' < {x}", "0"},
      {"'a' > {x}", "0"}, {"{a,b} = 'b'", "1"}, {"{a} != 'a'", "0"},  // 27
      {"{1,7} < string:5", "1"}, {"{7} < string:5", "0"}, {"{1,7} > string:5", "0"},
      {"{1} < 'abc'", "0"}, {"{} or 'x'", "1"}, {"{1,2} = {2,3}", "1"},  // 32
      {"{1} = {2}", "0"}, {"{a} != {a}", "0"}, {"{a,a} != {a}", "0"},
      {"{a} != {a,b}", "1"}, {"{b,a} != {b}", "1"}, {"{1,5} > {4}", "1"},
      {"{1,5} < {4}", "1"}, {"{1} > {4}", "0"}, {"{1} >= {1}", "1"}, {"{x,9} < {y,3}", "0"},
      {"{x,2} <= {y,3}", "1"}, {"{} = {}", "0"}, {"{} != {a}", "0"},
      {"{1} and {}", "0"}, {"{1} or {}", "1"}, {"{3} < 3", "0"},
      // Node string values come from the content.
      {"#a,b = string:12", "1"}, {"#a,b = string:7", "1"}, {"#a,b = string:1", "0"},
      {"#a,b > 11", "1"},
  }, [&](const std::string& i_Row) { return compare(i_Row, tree.get()); });
  // clang-format on
}

TEST(XPathLogicalEvaluatorTest, TraceTexts) {
  // clang-format off
  TestRows::expectRows({
      {"'a' = 'a'", "EQ retuns 1"}, {"'a' != 'b'", "INEQ returns 1"},
      {"string:1 < string:2", "Both string arguments are number"},
      {"true() < 'abc'", "string is NaN so result is false"},
      {"true() < 'abc'", "number evaluation"},
      {"true() = 'abc'", "boolean evaluation"}, {"5 and 'abc'", "boolean evauation"},
      {"5 = string:5", "number evauation"},
  }, [](const std::string& i_Row) {
    TraceCollector collector(3);
    compare(i_Row);
    return testing::PrintToString(collector.texts());
  }, [](const std::string& i_Actual, const std::string& i_Expected) {
    return i_Actual.find(i_Expected) != std::string::npos;
  });
  // clang-format on
}

}  // namespace
