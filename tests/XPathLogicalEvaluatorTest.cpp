#include "XPathLogicalEvaluator.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <type_traits>

#include "TestValues.h"
#include "TestXml.h"
#include "host/Trace.h"

using namespace XmlPlugin;

namespace {

// A comparison as written in an expression, "left op right" (operands as in TestValues.h; the
// right operand may hold spaces), and its answer.
struct Row {
  const wchar_t* m_Comparison;
  unsigned m_Expected;
};

unsigned compare(const std::wstring& i_Comparison) {
  const size_t opBegin = i_Comparison.find(L' ') + 1;
  const size_t opEnd = i_Comparison.find(L' ', opBegin);
  const auto left = TestValues::makeValue(i_Comparison.substr(0, opBegin - 1));
  const auto right = TestValues::makeValue(i_Comparison.substr(opEnd + 1));
  // The right operand comes first.
  return XPathLogicalEvaluator::evaluate(right.get(), left.get(),
                                         i_Comparison.substr(opBegin, opEnd - opBegin));
}

void expectRows(const std::vector<Row>& i_Rows) {
  for (const Row& row : i_Rows) {
    EXPECT_EQ(row.m_Expected, compare(row.m_Comparison))
        << "row: " << String(row.m_Comparison).toNarrow();
  }
}

TEST(XPathLogicalEvaluatorTest, TableShape) {
  typedef decltype(XPathLogicalEvaluator::tabArithm) Table;
  EXPECT_EQ(7u, (std::extent_v<Table, 0>));
  EXPECT_EQ(7u, (std::extent_v<Table, 1>));
  EXPECT_EQ(8u, (std::extent_v<Table, 2>));
  EXPECT_EQ(392u * sizeof(int32_t), sizeof(Table));
}

TEST(XPathLogicalEvaluatorTest, TableIsExportedByThePlugin) {
  void* pLibrary = dlopen(XMLPLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(nullptr, pLibrary) << dlerror();
  const void* pTable = dlsym(pLibrary, "_ZN9XmlPlugin21XPathLogicalEvaluator9tabArithmE");
  EXPECT_NE(nullptr, pTable);
  if (pTable != nullptr) {
    EXPECT_EQ(0, std::memcmp(pTable, XPathLogicalEvaluator::tabArithm,
                             sizeof(XPathLogicalEvaluator::tabArithm)));
  }
  dlclose(pLibrary);
}

TEST(XPathLogicalEvaluatorTest, Indexes) {
  const wchar_t* const operators[] = {L"=", L"!=", L"<", L">", L"<=", L">=", L"and", L"or"};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(i, XPathLogicalEvaluator::getOperIndex(operators[i])) << i;
  }
  EXPECT_EQ(0, XPathLogicalEvaluator::getOperIndex(L"AND"));

  const wchar_t* const kinds[] = {L"5",      L"NaN", L"Infinity", L"-Infinity",
                                  L"true()", L"'a'", L"{}"};
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(i, XPathLogicalEvaluator::getTypeIndex(TestValues::makeValue(kinds[i]).get())) << i;
  }
  EXPECT_EQ(-1, XPathLogicalEvaluator::getTypeIndex(TestValues::special(ZeroByInfinity).get()));
}

TEST(XPathLogicalEvaluatorTest, NumericComparisonIsIeee) {
  const double nan = std::nan("");
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateLogicalOperation(nan, nan, L"="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateLogicalOperation(nan, 1.0, L"!="));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateLogicalOperation(nan, 1.0, L"<="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateLogicalOperation(-0.0, 0.0, L"="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateLogicalOperation(0.0, 2.0, L"or"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateLogicalOperation(0.0, 2.0, L"and"));
}

// The comments name the action codes the rows reach.
TEST(XPathLogicalEvaluatorTest, NumbersAndBooleans) {
  // clang-format off
  expectRows({
      {L"1 < 2", 1},               {L"2 < 1", 0},                 {L"1 ~ 1", 1},  // 2, as "="
      {L"Infinity > 5", 1},        {L"5 > Infinity", 0},          {L"5 != Infinity", 1},  // 0, 1
      {L"Infinity = Infinity", 1}, {L"-Infinity = -Infinity", 1}, {L"Infinity != -Infinity", 1},
      {L"NaN = NaN", 0},           {L"NaN != NaN", 1},            {L"5 = NaN", 0},
      {L"5 != NaN", 0},            {L"NaN or 5", 1},              {L"NaN or 0", 0},  // 7
      {L"5 or NaN", 1},            {L"0 or NaN", 0},              {L"5 and Infinity", 1},  // 4, 3
      {L"0 and Infinity", 0},      {L"Infinity and 0", 0},        {L"Infinity and 3", 1},  // 5
      {L"NaN < Infinity", 0},      {L"true() < 5", 1},            {L"5 = true()", 1},  // 6
      {L"0 = true()", 0},          {L"-1 >= true()", 0},          {L"-1 <= true()", 1},
      {L"true() > false()", 1},    {L"NaN = true()", 0},          {L"NaN = false()", 1},  // 2, 19
      {L"-Infinity = true()", 1},  {L"-Infinity = false()", 0},   {L"true() = Infinity", 1},  // 28
      {L"false() = Infinity", 0},  {L"false() = NaN", 1},         {L"true() = NaN", 0},  // 29, 30
  });
  // clang-format on
}

TEST(XPathLogicalEvaluatorTest, ZeroByInfinityCountsAsANumber) {
  const auto zero = TestValues::special(ZeroByInfinity);
  const auto one = TestValues::makeValue(L"1");
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluate(one.get(), zero.get(), L"<"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluate(zero.get(), one.get(), L"<"));
}

TEST(XPathLogicalEvaluatorTest, Strings) {
  // clang-format off
  expectRows({
      {L"5 = '5'", 1},          {L"5 < 'abc'", 0},       {L"5 and 'abc'", 1},  // 8
      {L"0 or ''", 0},          {L"'5' = 5", 1},         {L"'abc' != 5", 0},  // 9
      {L"'abc' and 1", 1},      {L"NaN or 'x'", 1},      {L"NaN or ''", 0},  // 10
      {L"'x' and Infinity", 1}, {L"'' and Infinity", 0}, {L"'x' or NaN", 1},  // 11, 31
      {L"'' or NaN", 0},        {L"true() < '5'", 0},    {L"true() > '5'", 1},  // 12, exchanged
      {L"true() < 'abc'", 0},   {L"true() = 'abc'", 1},  {L"false() = 'abc'", 0},
      {L"'5' > true()", 1},     {L"'abc' > true()", 0},  {L"'' = false()", 1},  // 13
      {L"'abc' = 'abc'", 1},    {L"'abc' != 'abd'", 1},  {L"'1.0' = '1'", 0},  // 14
      {L"'2' < '10'", 1},       {L"'a' < 'b'", 0},       {L"'a' and ''", 0},
      {L"'a' or ''", 1},
  });
  // clang-format on
}

TEST(XPathLogicalEvaluatorTest, NodeSets) {
  // clang-format off
  expectRows({
      {L"2 < {1,3}", 1},       {L"5 < {1,3}", 0},         {L"1 = {abc,1}", 1},  // 15
      {L"1 != {1,abc}", 0},    {L"1 != {2,abc}", 1},      {L"{1,3} > 2", 1},  // 16
      {L"{1} > 2", 0},         {L"{abc,3} != 3", 0},      {L"{3,abc} != 2", 1},
      {L"4 = { 4 }", 1},       {L"{} < 9", 0},            {L"NaN = {1}", 0},  // 17
      {L"NaN != {1}", 1},      {L"NaN != {}", 0},         {L"{1} = NaN", 0},  // 33, 18
      {L"{1} or NaN", 1},      {L"{} or NaN", 0},         {L"Infinity > {1}", 1},  // 20
      {L"Infinity > {}", 0},   {L"Infinity != {abc}", 1}, {L"Infinity = {1}", 0},
      {L"-Infinity < {1}", 1}, {L"-Infinity < {}", 0},    {L"{1} < Infinity", 1},  // 21, 22
      {L"{} < Infinity", 0},   {L"{1} > Infinity", 0},    {L"{1} > -Infinity", 1},  // 23
      {L"{} != -Infinity", 0}, {L"{1} and -Infinity", 1}, {L"{} and -Infinity", 0},  // 24
      {L"{1} = true()", 1},    {L"{} = false()", 1},      {L"5 and {1}", 1},  // 25
      {L"0 or {}", 0},         {L"true() = {}", 0},       {L"'a' = {b,a}", 1},  // 26
      {L"'a' != {a}", 0},      {L"'a' != {a,b}", 1},      {L"'a' < {x}", 0},
      {L"'a' > {x}", 0},       {L"{a,b} = 'b'", 1},       {L"{a} != 'a'", 0},  // 27
      {L"{1,7} < '5'", 1},     {L"{7} < '5'", 0},         {L"{1,7} > '5'", 0},
      {L"{1} < 'abc'", 0},     {L"{} or 'x'", 1},         {L"{1,2} = {2,3}", 1},  // 32
      {L"{1} = {2}", 0},       {L"{a} != {a}", 0},        {L"{a,a} != {a}", 0},
      {L"{a} != {a,b}", 1},    {L"{b,a} != {b}", 1},      {L"{1,5} > {4}", 1},
      {L"{1} > {4}", 0},       {L"{1} >= {1}", 1},        {L"{x,9} < {y,3}", 0},
      {L"{x,2} <= {y,3}", 1},  {L"{} = {}", 0},           {L"{} != {a}", 0},
      {L"{1} and {}", 0},      {L"{1} or {}", 1},
  });
  // clang-format on
}

TEST(XPathLogicalEvaluatorTest, PairwiseRulesTheTableDoesNotReach) {
  const auto text = TestValues::makeValue(L"'a'");
  const auto nodes = TestValues::makeValue(L"{x}");
  const auto nan = TestValues::makeValue(L"NaN");
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateNodeString(text.get(), nodes.get(), L"<="));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateNodeString(text.get(), nodes.get(), L">="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateNaNNode(nodes.get(), nan.get(), L"<"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateNodeNaN(nan.get(), nodes.get(), L"<"));
}

TEST(XPathLogicalEvaluatorTest, NodeStringValuesComeFromContent) {
  const std::unique_ptr<Node> tree = parseXml("<r><a>7</a><b><c>1</c><c>2</c></b></r>");
  ASSERT_NE(nullptr, tree);
  TestValues::NodeSetValue nodes;
  nodes.addNode(const_cast<Node*>(findElement(tree.get(), L"a")));
  nodes.addNode(const_cast<Node*>(findElement(tree.get(), L"b")));
  const std::pair<const wchar_t*, unsigned> rows[] = {{L"'12'", 1}, {L"'7'", 1}, {L"'1'", 0}};
  for (const auto& row : rows) {
    const auto text = TestValues::makeValue(row.first);
    EXPECT_EQ(row.second, XPathLogicalEvaluator::evaluate(text.get(), &nodes, L"="))
        << String(row.first).toNarrow();
  }
  const auto eleven = TestValues::makeValue(L"11");
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluate(eleven.get(), &nodes, L">"));
}

TEST(XPathLogicalEvaluatorTest, TraceTexts) {
  const int level = Tracer::getInstance(TRACE_COMPONENT).getLevel();
  std::wstring texts;
  Tracer::setLevel(3);
  Tracer::setListener([&](const TraceRecord& i_Record) { texts += i_Record.text + L"\n"; });
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"'a' = 'a'", L"EQ retuns 1"},
      {L"'a' != 'b'", L"INEQ returns 1"},
      {L"'1' < '2'", L"Both string arguments are number"},
      {L"true() < 'abc'", L"string is NaN so result is false"},
      {L"true() < 'abc'", L"number evaluation"},
      {L"true() = 'abc'", L"boolean evaluation"},
      {L"5 and 'abc'", L"boolean evauation"},
      {L"5 = '5'", L"number evauation"},
  };
  for (const auto& row : rows) {
    texts.clear();
    compare(row.first);
    EXPECT_NE(std::wstring::npos, texts.find(row.second)) << String(row.first).toNarrow();
  }
  Tracer::setListener(Tracer::Listener());
  Tracer::setLevel(level);
}

}  // namespace
