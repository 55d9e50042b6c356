// The function registry and the core functions, run as the operator runs them.
#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "TestXml.h"
#include "XPathFunction.h"
#include "XPathFunctionCall.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;
using FunctionCall::call;

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
    {L"or", 1, false, 2, 2, 2, {}, B},
    {L"=", 2, false, 2, 2, 2, {}, B},
    {L",", 2, false, 2, 2, 2, {}, B},
    {L"+", 3, false, 2, 1, 2, {N, N}, N},
    {L"*", 4, false, 2, 2, 2, {N, N}, N},
    {L"mod", 4, false, 2, 2, 2, {N, N}, N},
    {L"position", 5, true, 0, 0, 0, {}, N},
    {L"count", 4, true, 1, 1, 1, {}, N},
    {L"last", 4, true, 0, 0, 0, {}, N},
    {L"local-name", 4, true, 0, 0, 1, {}, S},
    {L"name", 4, true, 1, 0, 1, {}, S},
    {L"string", 4, true, 0, 0, 1, {}, S},
    {L"concat", 4, true, 1, 2, -1, {S}, S},
    {L"starts-with", 1, true, 1, 1, 1, {S, S}, B},
    {L"contains", 1, true, 1, 1, 1, {S, S}, B},
    {L"substring-before", 1, true, 1, 1, 1, {S, S}, S},
    {L"substring-after", 4, true, 1, 1, 1, {S, S}, S},
    {L"substring", 1, true, 1, 2, 3, {S, N, N}, S},
    {L"string-length", 4, true, 1, 0, 1, {S}, N},
    {L"normalize-space", 4, true, 1, 0, 1, {S}, S},
    {L"translate", 4, true, 1, 3, 3, {}, S},
    {L"boolean", 4, true, 1, 1, 1, {}, B},
    {L"true", 4, true, 0, 0, 0, {}, B},
    {L"false", 4, true, 0, 0, 0, {}, B},
    {L"not", 4, true, 1, 1, 1, {}, B},
    {L"number", 4, true, 0, 0, 1, {}, N},
    {L"sum", 4, true, 1, 1, 1, {}, N},
    {L"floor", 4, true, 1, 1, 1, {N}, N},
    {L"ceiling", 4, true, 1, 1, 1, {N}, N},
    {L"round", 4, true, 1, 1, 1, {N}, N},
};

struct CallRow {
  const wchar_t* m_Name;
  std::vector<std::wstring> m_Arguments;
  const char* m_Expected;
};

std::string rowText(const CallRow& i_Row) {
  std::string text = String(i_Row.m_Name).toNarrow() + "(";
  for (const std::wstring& argument : i_Row.m_Arguments) {
    text += String(argument).toNarrow() + " ";
  }
  return text + ")";
}

void expectCalls(const std::vector<CallRow>& i_Rows, Node* i_pTree = nullptr) {
  for (const CallRow& row : i_Rows) {
    EXPECT_EQ(call(row.m_Name, row.m_Arguments, i_pTree), row.m_Expected) << rowText(row);
  }
}

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

TEST(XPathFunctionRegistryTest, ParenthesisAfterAFunctionNameIsFunctionStyle) {
  const struct {
    const wchar_t* m_Previous;
    bool m_Infix;
  } rows[] = {{L"concat", true}, {L"+", false}, {L"foo", false}, {nullptr, false}};
  for (const auto& row : rows) {
    std::unique_ptr<XPathExpression> pPrevious(
        row.m_Previous != nullptr ? new XPathExpression(String(row.m_Previous)) : nullptr);
    std::unique_ptr<XPathFunction> pOpen(XPathFunctionFactory::create(L"(", L"", pPrevious.get()));
    EXPECT_EQ(pOpen->isInfix(), row.m_Infix) << String(row.m_Previous).toNarrow();
  }
}

TEST(XPathFunctionTest, StringFunctions) {
  expectCalls({
      {L"string", {L"12"}, "string:12"},
      {L"string", {L"-Infinity"}, "string:-Infinity"},
      {L"string", {L"true()"}, "string:true"},
      {L"string", {L"{a,b}"}, "string:a"},
      {L"concat", {L"'a'", L"1", L"true()", L"NaN"}, "string:a1trueNaN"},
      {L"concat", {L"'a'"}, "error:-15005"},
      {L"starts-with", {L"'abc'", L"''"}, "boolean:true"},
      {L"starts-with", {L"'abc'", L"'b'"}, "boolean:false"},
      {L"starts-with", {L"'abc'"}, "error:-15005"},
      {L"contains", {L"'abc'", L"''"}, "boolean:true"},
      {L"contains", {L"1", L"1"}, "boolean:true"},
      {L"contains", {L"'abc'", L"'x'"}, "boolean:false"},
      {L"substring-before", {L"'abc'", L"'b'"}, "string:a"},
      {L"substring-before", {L"'abc'", L"'a'"}, "string:"},
      {L"substring-after", {L"'abc'", L"'b'"}, "string:c"},
      {L"substring-after", {L"'abc'", L"'x'"}, "string:"},
      {L"substring-after", {L"'abc'"}, "error:-15005"},
      {L"substring", {L"'12345'", L"2"}, "string:2345"},
      {L"substring", {L"'12345'", L"0"}, "string:12345"},
      {L"substring", {L"'12345'", L"1.5", L"2.6"}, "string:234"},
      {L"substring", {L"'12345'", L"0", L"3"}, "string:12"},
      {L"substring", {L"'12345'", L"NaN"}, "string:"},
      {L"substring", {L"'12345'", L"-Infinity"}, "string:"},
      {L"substring", {L"'12345'", L"-Infinity", L"Infinity"}, "string:12345"},
      {L"substring", {L"'12345'", L"2", L"-Infinity"}, "string:2345"},
      {L"substring", {L"'12345'", L"2", L"NaN"}, "string:"},
      {L"substring", {L"'12345'", L"1e300", L"-1e300"}, "string:"},
      {L"substring", {L"'12345'", L"-1e300", L"1e300"}, "string:"},
      {L"substring", {L"'abc'"}, "error:-15005"},
      {L"string-length", {L"'abcd'"}, "number:4"},
      {L"string-length", {L"1.5"}, "number:3"},
      {L"normalize-space", {L"'  a   b  '"}, "string:a b"},
      {L"normalize-space", {L"'a\t\tb'"}, "string:a\t\tb"},
      {L"translate", {L"'abc'", L"'a'", L"'b'"}, "error:-102"},
      {L"translate", {L"'abc'"}, "error:-15005"},
  });
}

TEST(XPathFunctionTest, NodeSetBooleanAndNumberFunctions) {
  expectCalls({
      {L"count", {L"{a,b,c}"}, "number:3"},
      {L"count", {L"{}"}, "number:0"},
      {L"count", {L"'a'"}, "none"},
      {L"count", {}, "error:-15005"},
      {L"local-name", {}, "error:-102"},
      {L"boolean", {L"''"}, "boolean:false"},
      {L"boolean", {L"'0'"}, "boolean:true"},
      {L"boolean", {L"0"}, "boolean:false"},
      {L"boolean", {L"{}"}, "boolean:false"},
      {L"boolean", {L"false()"}, "boolean:false"},
      {L"not", {L"NaN"}, "boolean:true"},
      {L"not", {L"-Infinity"}, "boolean:false"},
      {L"number", {L"'abc'"}, "number:NaN"},
      {L"number", {L"'12'"}, "number:12"},
      {L"number", {L"{12,x}"}, "number:12"},
      {L"number", {L"{x}"}, "number:NaN"},
      {L"number", {L"true()"}, "number:1"},
      {L"number", {L"-Infinity"}, "number:-Infinity"},
      {L"number", {L"-0"}, "number:-0"},
      {L"number", {}, "number:NaN"},
      {L"sum", {L"{1,2.5}"}, "number:3.5"},
      {L"sum", {L"{1,x}"}, "number:NaN"},
      {L"sum", {L"'4'"}, "number:4"},
      {L"floor", {L"-1.5"}, "number:-2"},
      {L"ceiling", {L"1.2"}, "number:2"},
      {L"ceiling", {L"NaN"}, "number:NaN"},
      {L"round", {L"2.5"}, "number:3"},
      {L"round", {L"-2.5"}, "number:-2"},
      {L"round", {L"-2.6"}, "number:-3"},
      {L"round", {L"-0.5"}, "number:0"},
      {L"round", {L"-0.4"}, "number:0"},
      {L"round", {L"100000000000000000000"}, "number:2.14748e+09"},
      {L"round", {L"Infinity"}, "number:Infinity"},
  });
}

TEST(XPathFunctionTest, OperatorsAskTheSpecialNumberRulesFirst) {
  expectCalls({
      {L"+", {L"1", L"2"}, "number:3"},
      {L"-", {L"-0", L"0"}, "number:-0"},
      {L"-", {L"-0", L"-0"}, "number:-0"},
      {L"+", {L"-0", L"-0"}, "number:0"},
      {L"-", {L"Infinity", L"5"}, "number:-Infinity"},
      {L"-", {L"5"}, "error:-15005"},
      {L"div", {L"1", L"0"}, "number:Infinity"},
      {L"div", {L"0", L"0"}, "number:NaN"},
      {L"div", {L"1", L"3"}, "number:0.333333"},
      {L"mod", {L"5", L"0"}, "number:NaN"},
      {L"mod", {L"5", L"0.5"}, "number:NaN"},
      {L"mod", {L"5.5", L"2"}, "number:1"},
      {L"mod", {L"-5", L"2"}, "number:-1"},
      {L"mod", {L"-1e300", L"-1"}, "number:0"},
      // Overflow becomes the special number, not an IEEE infinity.
      {L"*", {L"10000000000000000000" + std::wstring(289, L'0'), L"10"}, "number:Infinity"},
      {L"*", {L"-10000000000000000000" + std::wstring(289, L'0'), L"10"}, "number:-Infinity"},
      {L"+", {L"'3'", L"{4,x}"}, "number:7"},
      {L"=", {L"1", L"1"}, "boolean:true"},
      {L"<", {L"2", L"1"}, "boolean:false"},
      {L"<", {L"true()", L"'5'"}, "boolean:true"},
      {L"and", {L"1", L"0"}, "boolean:false"},
      {L"or", {L"1", L"0"}, "boolean:true"},
  });
}

TEST(XPathFunctionTest, FunctionsOverATree) {
  std::unique_ptr<Node> pTree =
      parseXml("<list><item>a<b>1</b>c</item><item id='7'>2</item><empty/></list>");
  ASSERT_NE(pTree, nullptr);
  Node* pItem = FunctionCall::findNode(pTree.get(), L"item");
  Node* pEmpty = FunctionCall::findNode(pTree.get(), L"empty");
  EXPECT_EQ(call(L"string", {L"#item"}, pTree.get()), "string:a1c");
  EXPECT_EQ(call(L"string", {}, nullptr, pItem), "string:a1c");
  EXPECT_EQ(call(L"string", {}, nullptr, nullptr), "string:");
  EXPECT_EQ(call(L"string-length", {}, nullptr, pItem), "number:3");
  EXPECT_EQ(call(L"normalize-space", {}, nullptr, pEmpty), "string:");
  EXPECT_EQ(call(L"number", {L"#b"}, pTree.get()), "number:1");
  EXPECT_EQ(call(L"sum", {L"#b"}, pTree.get()), "number:1");
  EXPECT_EQ(call(L"name", {L"#empty"}, pTree.get()), "string:empty");
  EXPECT_EQ(call(L"name", {}, nullptr, pItem), "string:item");
  EXPECT_EQ(call(L"name", {L"{}"}), "string:");

  std::list<Node*> siblings = {pItem, pEmpty};
  EXPECT_EQ(call(L"position", {}, nullptr, pEmpty, &siblings), "number:2");
  EXPECT_EQ(call(L"last", {}, nullptr, pEmpty, &siblings), "number:2");
  EXPECT_EQ(call(L"position", {}, nullptr, pTree.get(), &siblings), "number:1");
  EXPECT_EQ(call(L"last", {}, nullptr, pTree.get(), &siblings), "number:1");
  siblings.pop_back();
  EXPECT_EQ(call(L"position", {}, nullptr, pEmpty, &siblings), "none");
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
