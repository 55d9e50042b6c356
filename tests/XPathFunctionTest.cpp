// The function registry and the core functions, run as the operator runs them.
#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "TestRows.h"
#include "XPathFunction.h"

using namespace XmlPlugin;
using TestRows::call;

namespace {

struct RegistryRow {
  const wchar_t* m_Token;
  int m_Priority;
  bool m_Infix;
  int m_Count;
  int m_Min;
  int m_Max;
  std::vector<XPathDataType> m_Types;
  XPathDataType m_Return;
};

const XPathDataType B = BooleanType, S = StringType, N = NumberType;

const RegistryRow kRegistry[] = {
    // clang-format off
    {L"or", 1, false, 2, 2, 2, {}, B}, {L"=", 2, false, 2, 2, 2, {}, B},
    {L",", 2, false, 2, 2, 2, {}, B}, {L"+", 3, false, 2, 1, 2, {N, N}, N},
    {L"*", 4, false, 2, 2, 2, {N, N}, N}, {L"mod", 4, false, 2, 2, 2, {N, N}, N},
    {L"position", 5, true, 0, 0, 0, {}, N}, {L"count", 4, true, 1, 1, 1, {}, N},
    {L"last", 4, true, 0, 0, 0, {}, N}, {L"local-name", 4, true, 0, 0, 1, {}, S},
    {L"name", 4, true, 1, 0, 1, {}, S}, {L"string", 4, true, 0, 0, 1, {}, S},
    {L"concat", 4, true, 1, 2, -1, {S}, S}, {L"starts-with", 1, true, 1, 1, 1, {S, S}, B},
    {L"contains", 1, true, 1, 1, 1, {S, S}, B}, {L"substring-before", 1, true, 1, 1, 1, {S, S}, S},
    {L"substring-after", 4, true, 1, 1, 1, {S, S}, S},
    {L"substring", 1, true, 1, 2, 3, {S, N, N}, S}, {L"string-length", 4, true, 1, 0, 1, {S}, N},
    {L"normalize-space", 4, true, 1, 0, 1, {S}, S}, {L"translate", 4, true, 1, 3, 3, {}, S},
    {L"boolean", 4, true, 1, 1, 1, {}, B}, {L"true", 4, true, 0, 0, 0, {}, B},
    {L"false", 4, true, 0, 0, 0, {}, B}, {L"not", 4, true, 1, 1, 1, {}, B},
    {L"number", 4, true, 0, 0, 1, {}, N}, {L"sum", 4, true, 1, 1, 1, {}, N},
    {L"floor", 4, true, 1, 1, 1, {N}, N}, {L"ceiling", 4, true, 1, 1, 1, {N}, N},
    {L"round", 4, true, 1, 1, 1, {N}, N},
    // clang-format on
};

}  // namespace

TEST(XPathFunctionRegistryTest, EveryRowEquipsItsFunction) {
  for (const RegistryRow& row : kRegistry) {
    // Operators do not look at the next token; function names need "(".
    std::unique_ptr<XPathFunction> pFunction(
        XPathFunctionFactory::create(row.m_Token, L"(", nullptr));
    ASSERT_NE(pFunction, nullptr) << String(row.m_Token).toNarrow();
    SCOPED_TRACE(String(row.m_Token).toNarrow());
    EXPECT_EQ(pFunction->getPriority(), row.m_Priority);
    EXPECT_EQ(pFunction->isInfix(), row.m_Infix);
    EXPECT_EQ(pFunction->getArgumentsCount(), row.m_Count);
    EXPECT_EQ(pFunction->getMinArgumentsCount(), row.m_Min);
    EXPECT_EQ(pFunction->getMaxArgumentsCount(), row.m_Max);
    EXPECT_EQ(pFunction->getParametersType(), row.m_Types);
    EXPECT_EQ(pFunction->GetReturnType(), row.m_Return);
    EXPECT_EQ(pFunction->getExpression(), String(row.m_Token));
  }
}

TEST(XPathFunctionRegistryTest, NamesNeedAnOpeningParenthesis) {
  EXPECT_EQ(std::unique_ptr<XPathFunction>(XPathFunctionFactory::create(L"count", L"/", nullptr)),
            nullptr);
  EXPECT_EQ(std::unique_ptr<XPathFunction>(XPathFunctionFactory::create(L"Count", L"(", nullptr)),
            nullptr);
  EXPECT_EQ(std::unique_ptr<XPathFunction>(XPathFunctionFactory::create(L"foo", L"(", nullptr)),
            nullptr);
}

TEST(XPathFunctionTest, CoreFunctionsAndOperators) {
  // clang-format off
  TestRows::expectRows({
      // String functions.
      {"string(12)", "string:12"}, {"string(-Infinity)", "string:-Infinity"},
      {"string(true())", "string:true"}, {"string({a,b})", "string:a"},
      {"concat('a', 1, true(), NaN)", "string:a1trueNaN"}, {"concat('a')", "error:-15005"},
      {"starts-with('abc', '')", "boolean:true"}, {"starts-with('abc', 'b')", "boolean:false"},
      {"starts-with('abc')", "error:-15005"}, {"contains('abc', '')", "boolean:true"},
      {"contains(1, 1)", "boolean:true"}, {"contains('abc', 'x')", "boolean:false"},
      {"substring-before('abc', 'b')", "string:a"}, {"substring-before('abc', 'a')", "string:"},
      {"substring-after('abc', 'b')", "string:c"}, {"substring-after('abc', 'x')", "string:"},
      {"substring-after('abc')", "error:-15005"}, {"substring('12345', 2)", "string:2345"},
      {"substring('12345', 0)", "string:12345"}, {"substring('12345', 1.5, 2.6)", "string:234"},
      {"substring('12345', 0, 3)", "string:12"}, {"substring('12345', NaN)", "string:"},
      {"substring('12345', -Infinity)", "string:"},
      {"substring('12345', -Infinity, Infinity)", "string:12345"},
      {"substring('12345', 2, -Infinity)", "string:2345"},
      {"substring('12345', 2, NaN)", "string:"}, {"substring('12345', 1e300, -1e300)", "string:"},
      {"substring('12345', -1e300, 1e300)", "string:"}, {"substring('abc')", "error:-15005"},
      {"string-length('abcd')", "number:4"}, {"string-length(1.5)", "number:3"},
      {"normalize-space('  a   b  ')", "string:a b"},
      {"normalize-space('a\t\tb')", "string:a\t\tb"}, {"translate('abc', 'a', 'b')", "error:-102"},
      {"translate('abc')", "error:-15005"},
      // Node-set, boolean and number functions.
      {"count({a,b,c})", "number:3"}, {"count({})", "number:0"}, {"count('a')", "none"},
      {"count()", "error:-15005"}, {"local-name()", "error:-102"}, {"boolean('')", "boolean:false"},
      {"boolean('0')", "boolean:true"}, {"boolean(0)", "boolean:false"},
      {"boolean({})", "boolean:false"}, {"boolean(false())", "boolean:false"},
      {"not(NaN)", "boolean:true"}, {"not(-Infinity)", "boolean:false"},
      {"number('abc')", "number:NaN"}, {"number('12')", "number:12"},
      {"number({12,x})", "number:12"}, {"number({x})", "number:NaN"},
      {"number(true())", "number:1"}, {"number(-Infinity)", "number:-Infinity"},
      {"number(-0)", "number:-0"}, {"number()", "number:NaN"}, {"sum({1,2.5})", "number:3.5"},
      {"sum({1,x})", "number:NaN"}, {"sum('4')", "number:4"}, {"floor(-1.5)", "number:-2"},
      {"ceiling(1.2)", "number:2"}, {"ceiling(NaN)", "number:NaN"}, {"round(2.5)", "number:3"},
      {"round(-2.5)", "number:-2"}, {"round(-2.6)", "number:-3"}, {"round(-0.5)", "number:0"},
      {"round(-0.4)", "number:0"}, {"round(100000000000000000000)", "number:2.14748e+09"},
      {"round(Infinity)", "number:Infinity"},
      // Operators ask the special-number rules first.
      {"1 + 2", "number:3"}, {"-0 - 0", "number:-0"}, {"-0 - -0", "number:-0"},
      {"-0 + -0", "number:0"}, {"Infinity - 5", "number:-Infinity"}, {"-(5)", "error:-15005"},
      {"1 div 0", "number:Infinity"}, {"0 div 0", "number:NaN"}, {"1 div 3", "number:0.333333"},
      {"5 mod 0", "number:NaN"}, {"5 mod 0.5", "number:NaN"}, {"5.5 mod 2", "number:1"},
      {"-5 mod 2", "number:-1"}, {"-1e300 mod -1", "number:0"},
      // Overflow becomes the special number, not an IEEE infinity.
      {"1e308 * 10", "number:Infinity"}, {"-1e308 * 10", "number:-Infinity"},
      {"+('3', {4,x})", "number:7"}, {"1 = 1", "boolean:true"}, {"2 < 1", "boolean:false"},
      {"true() < '5'", "boolean:true"}, {"1 and 0", "boolean:false"}, {"1 or 0", "boolean:true"},
  }, [](const std::string& i_Call) { return call(i_Call); });
  // clang-format on
}

TEST(XPathFunctionTest, FunctionsOverATree) {
  std::unique_ptr<Node> pTree =
      parseXml("<list><item>a<b>1</b>c</item><item id='7'>2</item><empty/></list>");
  ASSERT_NE(pTree, nullptr);
  Node* pItem = TestRows::findNode(pTree.get(), L"item");
  Node* pEmpty = TestRows::findNode(pTree.get(), L"empty");
  std::list<Node*> siblings = {pItem, pEmpty};
  // Rows "context: call", the context being the tree's root, an item or the empty element.
  const auto run = [&](const std::string& i_Row) {
    const std::string context = i_Row.substr(0, i_Row.find(':'));
    Node* pContext = context == "item" ? pItem : context == "empty" ? pEmpty : pTree.get();
    return call(i_Row.substr(i_Row.find(':') + 2), pTree.get(),
                context == "none" ? nullptr : pContext, &siblings);
  };
  // clang-format off
  TestRows::expectRows({
      {"none: string(#item)", "string:a1c"}, {"item: string()", "string:a1c"},
      {"none: string()", "string:"}, {"item: string-length()", "number:3"},
      {"empty: normalize-space()", "string:"}, {"none: number(#b)", "number:1"},
      {"none: sum(#b)", "number:1"}, {"none: name(#empty)", "string:empty"},
      {"item: name()", "string:item"}, {"none: name({})", "string:"},
      {"empty: position()", "number:2"}, {"empty: last()", "number:2"},
      {"root: position()", "number:1"}, {"root: last()", "number:1"},
  }, run);
  // clang-format on
  siblings.pop_back();
  EXPECT_EQ(run("empty: position()"), "none");
}

TEST(XPathFunctionTest, TextOfAVeryDeepTreeIsGatheredWithoutRecursion) {
  const int depth = 200000;
  std::vector<std::unique_ptr<Node>> nodes;
  std::vector<std::unique_ptr<NodeList>> lists;
  std::vector<Node*> slots(depth);
  StringMap attributes;
  Node* pParent = nullptr;
  for (int i = 0; i < depth; ++i) {
    const bool text = i == depth - 1;
    nodes.push_back(std::make_unique<Node>(text ? TextNode : ElementNode, text ? L"x" : L"e", i,
                                           &attributes, pParent));
    if (pParent != nullptr) {
      slots[i] = nodes.back().get();
      lists.push_back(std::make_unique<NodeList>(&slots[i], 1));
      pParent->setChildren(lists.back().get());
    }
    pParent = nodes.back().get();
  }
  String text;
  XPathFunction_string::getTextFromNode(nodes.front().get(), text);
  EXPECT_EQ(text, String(L"x"));
}
