#include "XPathExpressionsParser.h"

#include <gtest/gtest.h>

#include <functional>
#include <list>
#include <string>
#include <vector>

#include "TestRows.h"
#include "TestTrace.h"
#include "XPathEvaluationContext.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

std::string postfixOf(const std::string& i_XPath) {
  XPathExpressionsParser parser{String(i_XPath.c_str())};
  if (parser.getStatus() != 0) {
    return "error:" + std::to_string(parser.getStatus());
  }
  std::string text;
  for (const XPathExpression* pItem : parser.getExpressionsVector()) {
    text += (text.empty() ? "" : " ") + pItem->GetExpression().toNarrow();
  }
  return text;
}

const char* const kTypeNames[] = {"boolean", "string", "number", "nodes"};

// Evaluates with the given context; the value as one canonical string: "number:7",
// "string:ab", "boolean:true", "error:-15004".
std::function<std::string(const std::string&)> valueIn(Node* i_pStartNode = nullptr,
                                                       std::list<Node*>* i_pSiblings = nullptr) {
  return [i_pStartNode, i_pSiblings](const std::string& i_XPath) {
    XPathExpressionsParser parser{String(i_XPath.c_str())};
    parser.setSiblings(i_pSiblings);
    XPathEvaluationContext context;
    TErrorCode result = parser.runParser(i_pStartNode, context);
    XPathOutputElements values;
    OutputElementsGuard guard(values);
    if (result == 0) {
      result = parser.getValues(values);
    }
    if (result != 0) {
      return "error:" + std::to_string(result);
    }
    std::string text = kTypeNames[parser.getXPathOutputType()];
    for (size_t i = 0; i < values.size(); ++i) {
      text += (i == 0 ? ":" : ",") + values[i]->hostValue().toNarrow();
    }
    return text;
  };
}

}  // namespace

TEST(XPathExpressionsParserTest, ConvertsToPostfix) {
  // clang-format off
  TestRows::expectRows({
      {"1 + 2 * 3", "1 2 3 * +"}, {"(1 + 2) * 3", "1 2 + 3 *"}, {"8 - 3 - 2", "8 3 - 2 -"},
      {"2 < 3 = 1", "2 3 < 1 ="}, {"6 div 2 mod 4 * 5", "6 2 div 4 mod 5 *"},
      // Deliberately one level for "and" and "or", taken left to right.
      {"1 or 0 and 0", "1 0 or 0 and"}, {"1 = 1 or 2 + 3 > 4", "1 1 = 2 3 + 4 > or"},
      {"concat('a', 'b') = 'ab'", "'a' 'b' concat 'ab' ="},
      {"concat('x','y','z')", "'x' 'y' 'z' concat"},
      {"concat(1 + 2, concat('a', 'b'))", "1 2 + 'a' 'b' concat concat"}, {"((((7))))", "7"},
      {"-2", "0 2 -"}, {"count()", "count"},
      // substring binds more loosely than "+", so "+" leaves the stack before it.
      {"1 + substring('12345', 2)", "1 + '12345' 2 substring"}, {"1 +", "error:-15105"},
  }, postfixOf);
  // clang-format on
}

TEST(XPathExpressionsParserTest, EvaluatesPostfixAndReportsFailures) {
  // clang-format off
  TestRows::expectRows({
      {"1 + 2 * 3", "number:7"}, {"(1 + 2) * 3", "number:9"}, {"8 - 3 - 2", "number:3"},
      {"2 < 3 = 1", "boolean:true"}, {"concat('a', 'b') = 'ab'", "boolean:true"},
      {"concat('x','y','z')", "string:xyz"}, {"'abc'", "string:abc"}, {"-0", "number:0"},
      {"--2", "number:2"},
      // "+" leaves the stack before substring and fails alone; the top value is the result.
      {"1 + substring('12345', 2)", "string:2345"},
      // A failing operator pushes nothing and evaluation goes on: the code is that of the last
      // operator evaluated, and -15004 when no value is left, whatever the operators reported.
      {"concat(count(), 'b', 'c')", "string:bc"}, {"count()[1]", "error:-15005"},
      {"count()", "error:-15004"}, {"concat('a')", "error:-15004"},
      {"translate('abc', 'a', 'b')", "error:-15004"}, {"local-name()", "error:-15004"},
      {"count('a')", "error:-15004"}, {"1 +", "error:-15105"},
  }, valueIn());
  // clang-format on
}

TEST(XPathExpressionsParserTest, HandsContextToEveryItem) {
  Node parent(ElementNode, String("a"), 0, nullptr, nullptr);
  Node first(ElementNode, String("b"), 1, nullptr, &parent);
  Node second(ElementNode, String("b"), 2, nullptr, &parent);
  std::list<Node*> siblings = {&first, &second, &first};
  TestRows::expectRows({{"position()", "number:2"},
                        {"last()", "number:3"},
                        {"position() + 1 = last()", "boolean:true"}},
                       valueIn(&second, &siblings));
}

TEST(XPathExpressionsParserTest, OperatorFailureIsTracedAtItsLevel) {
  TraceCollector collector(1);
  EXPECT_EQ(valueIn()("count()"), "error:-15004");
  EXPECT_EQ(valueIn()("1 +"), "error:-15105");
  // The reasons for rule authors are records of their own.
  const std::vector<std::string> expected = {"XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR",
                                             "XPATH error, localStack.size() = 0",
                                             "Tokenizing error"};
  EXPECT_EQ(collector.texts(), expected);
}

// Nothing to shape before an evaluation; after one, the values are appended.
TEST(XPathExpressionsParserTest, GetValuesAppendsOnceEvaluated) {
  XPathExpressionsParser parser{String("concat('a', 'b')")};
  XPathOutputElements values;
  OutputElementsGuard guard(values);
  EXPECT_EQ(parser.getValues(values), XML_PLUGIN_ERROR_XPATH_PARSER_ERROR);
  EXPECT_EQ(parser.calculateBooleanOutput(values), XML_PLUGIN_ERROR_XPATH_PARSER_ERROR);
  EXPECT_TRUE(values.empty());
  XPathEvaluationContext context;
  ASSERT_EQ(parser.runParser(nullptr, context), 0);
  values.push_back(new XPathOutputElement());
  ASSERT_EQ(parser.getValues(values), 0);
  ASSERT_EQ(values.size(), 2u);
  EXPECT_EQ(values[1]->m_Value.toNarrow(), "ab");
  EXPECT_EQ(values[1]->m_Node, nullptr);
  EXPECT_TRUE(values[1]->m_NodeText.isEmpty());
}
