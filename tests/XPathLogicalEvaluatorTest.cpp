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

// One comparison written as in an expression: left operand, operator, right operand.
struct Row {
  const wchar_t* m_Left;
  const wchar_t* m_Op;
  const wchar_t* m_Right;
  unsigned m_Expected;
};

std::string describe(const Row& i_Row) {
  return String(i_Row.m_Left).toNarrow() + " " + String(i_Row.m_Op).toNarrow() + " " +
         String(i_Row.m_Right).toNarrow();
}

unsigned compare(const Row& i_Row) {
  const auto left = TestValues::makeValue(i_Row.m_Left);
  const auto right = TestValues::makeValue(i_Row.m_Right);
  // The right operand comes first.
  return XPathLogicalEvaluator::evaluate(right.get(), left.get(), i_Row.m_Op);
}

void expectRows(const std::vector<Row>& i_Rows) {
  for (const Row& row : i_Rows) {
    EXPECT_EQ(row.m_Expected, compare(row)) << "row: " << describe(row);
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
  ASSERT_NE(nullptr, pTable);
  EXPECT_EQ(0, std::memcmp(pTable, XPathLogicalEvaluator::tabArithm,
                           sizeof(XPathLogicalEvaluator::tabArithm)));
  dlclose(pLibrary);
}

TEST(XPathLogicalEvaluatorTest, Indexes) {
  const wchar_t* const operators[] = {L"=", L"!=", L"<", L">", L"<=", L">=", L"and", L"or"};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(i, XPathLogicalEvaluator::getOperIndex(operators[i])) << i;
  }
  EXPECT_EQ(0, XPathLogicalEvaluator::getOperIndex(L"AND"));
  EXPECT_EQ(0, XPathLogicalEvaluator::getOperIndex(L"=="));

  const std::pair<const wchar_t*, int> kinds[] = {
      {L"5", 0},      {L"NaN", 1}, {L"Infinity", 2}, {L"-Infinity", 3},
      {L"true()", 4}, {L"'a'", 5}, {L"{}", 6},
  };
  for (const auto& kind : kinds) {
    EXPECT_EQ(kind.second,
              XPathLogicalEvaluator::getTypeIndex(TestValues::makeValue(kind.first).get()))
        << String(kind.first).toNarrow();
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
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateLogicalOperation(2.0, 2.0, L">="));
}

TEST(XPathLogicalEvaluatorTest, NumbersAndSpecialNumbers) {
  expectRows({
      {L"1", L"<", L"2", 1},
      {L"2", L"<", L"1", 0},
      {L"Infinity", L">", L"5", 1},
      {L"5", L">", L"Infinity", 0},
      {L"5", L"!=", L"Infinity", 1},
      {L"Infinity", L"=", L"Infinity", 1},
      {L"-Infinity", L"=", L"-Infinity", 1},
      {L"Infinity", L"!=", L"-Infinity", 1},
      {L"NaN", L"=", L"NaN", 0},
      {L"NaN", L"!=", L"NaN", 1},
      {L"5", L"=", L"NaN", 0},
      {L"5", L"!=", L"NaN", 0},
      {L"NaN", L"or", L"5", 1},
      {L"NaN", L"or", L"0", 0},  // code 7 reads R only
      {L"5", L"or", L"NaN", 1},
      {L"0", L"or", L"NaN", 0},  // code 4
      {L"5", L"and", L"Infinity", 1},
      {L"0", L"and", L"Infinity", 0},  // code 3
      {L"Infinity", L"and", L"0", 0},
      {L"Infinity", L"and", L"3", 1},  // code 5
      {L"NaN", L"or", L"Infinity", 1},
      {L"NaN", L"<", L"Infinity", 0},
      {L"1", L"~", L"1", 1},
      {L"1", L"~", L"2", 0},  // unknown operator: "="
  });
}

TEST(XPathLogicalEvaluatorTest, ZeroByInfinityCountsAsANumber) {
  const auto zero = TestValues::special(ZeroByInfinity);
  const auto one = TestValues::makeValue(L"1");
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluate(one.get(), zero.get(), L"<"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluate(zero.get(), one.get(), L"<"));
}

TEST(XPathLogicalEvaluatorTest, Booleans) {
  expectRows({
      {L"true()", L"<", L"5", 1},  // a quoted numeric literal is a number operand too
      {L"5", L"=", L"true()", 1},
      {L"0", L"=", L"true()", 0},
      {L"-1", L">=", L"true()", 0},
      {L"-1", L"<=", L"true()", 1},  // code 6
      {L"true()", L"=", L"false()", 0},
      {L"true()", L">", L"false()", 1},  // code 2
      {L"NaN", L"=", L"true()", 0},
      {L"NaN", L"=", L"false()", 1},  // code 19
      {L"-Infinity", L"=", L"true()", 1},
      {L"-Infinity", L"=", L"false()", 0},  // code 28
      {L"true()", L"=", L"Infinity", 1},
      {L"false()", L"=", L"Infinity", 0},  // code 29
      {L"false()", L"=", L"NaN", 1},
      {L"true()", L"=", L"NaN", 0},  // code 30
  });
}

TEST(XPathLogicalEvaluatorTest, Strings) {
  expectRows({
      {L"5", L"=", L"'5'", 1},          {L"5", L"<", L"'abc'", 0},  // code 8
      {L"5", L"and", L"'abc'", 1},      {L"0", L"or", L"''", 0},
      {L"'5'", L"=", L"5", 1},          {L"'abc'", L"!=", L"5", 0},  // code 9
      {L"'abc'", L"and", L"1", 1},      {L"NaN", L"or", L"'x'", 1},
      {L"NaN", L"or", L"''", 0},                                          // code 10
      {L"'x'", L"and", L"Infinity", 1}, {L"''", L"and", L"Infinity", 0},  // code 11
      {L"true()", L"<", L"'5'", 0},     {L"true()", L">", L"'5'", 1},     // code 12, exchanged
      {L"true()", L"<", L"'abc'", 0},   {L"true()", L"=", L"'abc'", 1},
      {L"false()", L"=", L"'abc'", 0},  {L"'5'", L">", L"true()", 1},
      {L"'abc'", L">", L"true()", 0},  // code 13
      {L"''", L"=", L"false()", 1},     {L"'abc'", L"=", L"'abc'", 1},
      {L"'abc'", L"!=", L"'abd'", 1},  // code 14
      {L"'1.0'", L"=", L"'1'", 0},      {L"'2'", L"<", L"'10'", 1},
      {L"'a'", L"<", L"'b'", 0},        {L"'a'", L"and", L"''", 0},
      {L"'a'", L"or", L"''", 1},        {L"'x'", L"or", L"NaN", 1},
      {L"''", L"or", L"NaN", 0},  // code 31
  });
}

TEST(XPathLogicalEvaluatorTest, NodeSetsAgainstValues) {
  expectRows({
      {L"2", L"<", L"{1,3}", 1},         {L"5", L"<", L"{1,3}", 0},  // code 15
      {L"1", L"=", L"{abc,1}", 1},       {L"1", L"!=", L"{1,abc}", 0},
      {L"1", L"!=", L"{2,abc}", 1},      {L"{1,3}", L">", L"2", 1},
      {L"{1}", L">", L"2", 0},  // code 16
      {L"{abc,3}", L"!=", L"3", 0},      {L"{3,abc}", L"!=", L"2", 1},
      {L"{ 4 }", L"=", L"4", 1},         {L"{}", L"<", L"9", 0},
      {L"NaN", L"=", L"{1}", 0},         {L"NaN", L"!=", L"{1}", 1},  // codes 17, 33
      {L"NaN", L"!=", L"{}", 0},         {L"{1}", L"=", L"NaN", 0},
      {L"{1}", L"or", L"NaN", 1},  // code 18
      {L"{}", L"or", L"NaN", 0},         {L"Infinity", L">", L"{1}", 1},
      {L"Infinity", L">", L"{}", 0},  // code 20
      {L"Infinity", L"!=", L"{abc}", 1}, {L"Infinity", L"=", L"{1}", 0},
      {L"-Infinity", L"<", L"{1}", 1},   {L"-Infinity", L"<", L"{}", 0},  // code 21
      {L"{1}", L"<", L"Infinity", 1},    {L"{}", L"<", L"Infinity", 0},   // code 22
      {L"{1}", L">", L"Infinity", 0},    {L"{1}", L">", L"-Infinity", 1},
      {L"{}", L"!=", L"-Infinity", 0},                                      // code 23
      {L"{1}", L"and", L"-Infinity", 1}, {L"{}", L"and", L"-Infinity", 0},  // code 24
      {L"{1}", L"=", L"true()", 1},      {L"{}", L"=", L"false()", 1},
      {L"5", L"and", L"{1}", 1},         {L"0", L"or", L"{}", 0},  // code 25
      {L"true()", L"=", L"{}", 0},       {L"'a'", L"=", L"{b,a}", 1},
      {L"'a'", L"!=", L"{a}", 0},                                    // code 26
      {L"'a'", L"!=", L"{a,b}", 1},      {L"'a'", L"<", L"{x}", 0},  // the table answers 0
      {L"'a'", L">", L"{x}", 0},         {L"{a,b}", L"=", L"'b'", 1},
      {L"{a}", L"!=", L"'a'", 0},  // code 27
      {L"{1,7}", L"<", L"'5'", 1},       {L"{7}", L"<", L"'5'", 0},
      {L"{1,7}", L">", L"'5'", 0},       {L"{1}", L"<", L"'abc'", 0},
      {L"{}", L"or", L"'x'", 1},
  });
}

TEST(XPathLogicalEvaluatorTest, PairwiseRulesTheTableDoesNotReach) {
  const auto text = TestValues::makeValue(L"'a'");
  const auto nodes = TestValues::makeValue(L"{x}");
  const auto none = TestValues::makeValue(L"{}");
  const auto nan = TestValues::makeValue(L"NaN");
  const auto minusInfinity = TestValues::makeValue(L"-Infinity");
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateNodeString(text.get(), nodes.get(), L"<="));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateNodeString(text.get(), none.get(), L"<"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateNodeString(text.get(), nodes.get(), L">="));
  EXPECT_EQ(1u, XPathLogicalEvaluator::evaluateNaNNode(nodes.get(), nan.get(), L"<"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateNodeNaN(nan.get(), nodes.get(), L"<"));
  EXPECT_EQ(0u, XPathLogicalEvaluator::evaluateNInfNode(nodes.get(), minusInfinity.get(), L"<"));
}

TEST(XPathLogicalEvaluatorTest, TwoNodeSets) {
  expectRows({
      {L"{1,2}", L"=", L"{2,3}", 1},
      {L"{1}", L"=", L"{2}", 0},
      {L"{a}", L"!=", L"{a}", 0},
      {L"{a,a}", L"!=", L"{a}", 0},
      {L"{a}", L"!=", L"{a,b}", 1},
      {L"{b,a}", L"!=", L"{b}", 1},
      {L"{1,5}", L">", L"{4}", 1},
      {L"{1}", L">", L"{4}", 0},
      {L"{1}", L">=", L"{1}", 1},
      {L"{x,9}", L"<", L"{y,3}", 0},
      {L"{x,2}", L"<=", L"{y,3}", 1},
      {L"{x}", L"<", L"{y}", 0},
      {L"{}", L"=", L"{}", 0},
      {L"{}", L"!=", L"{a}", 0},
      {L"{1}", L"and", L"{}", 0},
      {L"{1}", L"or", L"{}", 1},
  });
}

TEST(XPathLogicalEvaluatorTest, NodeStringValuesComeFromContent) {
  const std::unique_ptr<Node> tree = parseXml("<r><a>7</a><b><c>1</c><c>2</c></b></r>");
  ASSERT_NE(nullptr, tree);
  TestValues::NodeSetValue nodes;
  nodes.addNode(const_cast<Node*>(findElement(tree.get(), L"a")));
  nodes.addNode(const_cast<Node*>(findElement(tree.get(), L"b")));
  const struct {
    const wchar_t* m_Op;
    const wchar_t* m_Other;
    unsigned m_Expected;
  } rows[] = {{L"=", L"'12'", 1}, {L"=", L"'7'", 1}, {L">", L"11", 1}, {L">", L"12", 0}};
  for (const auto& row : rows) {
    const auto other = TestValues::makeValue(row.m_Other);
    EXPECT_EQ(row.m_Expected, XPathLogicalEvaluator::evaluate(other.get(), &nodes, row.m_Op))
        << String(row.m_Op).toNarrow() << " " << String(row.m_Other).toNarrow();
  }
}

TEST(XPathLogicalEvaluatorTest, TraceTexts) {
  const int level = Tracer::getInstance(TRACE_COMPONENT).getLevel();
  std::wstring texts;
  Tracer::setLevel(3);
  Tracer::setListener([&](const TraceRecord& i_Record) { texts += i_Record.text + L"\n"; });
  const struct {
    Row m_Row;
    const wchar_t* m_Text;
  } rows[] = {
      {{L"'a'", L"=", L"'a'", 1}, L"EQ retuns 1"},
      {{L"'a'", L"!=", L"'b'", 1}, L"INEQ returns 1"},
      {{L"'1'", L"<", L"'2'", 1}, L"Both string arguments are number"},
      {{L"true()", L"<", L"'abc'", 0}, L"string is NaN so result is false"},
      {{L"true()", L"=", L"'abc'", 1}, L"boolean evaluation"},
      {{L"5", L"and", L"'abc'", 1}, L"boolean evauation"},
      {{L"5", L"=", L"'5'", 1}, L"number evauation"},
  };
  for (const auto& row : rows) {
    texts.clear();
    EXPECT_EQ(row.m_Row.m_Expected, compare(row.m_Row)) << describe(row.m_Row);
    EXPECT_NE(std::wstring::npos, texts.find(row.m_Text)) << describe(row.m_Row);
  }
  Tracer::setListener(Tracer::Listener());
  Tracer::setLevel(level);
}

}  // namespace
