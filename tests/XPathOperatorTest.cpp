// Operators: argument-count checks, parameter conversion and order, results.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "TestRows.h"
#include "XPathFunction.h"
#include "XPathOperator.h"

using namespace XmlPlugin;

namespace {

// Keeps the parameters it was handed and answers with their types and texts.
class RecordingFunction : public XPathFunction {
 public:
  TErrorCode evaluate() override {
    m_Seen.clear();
    for (const XPathExpression* pParameter : *getFunctionParameters()) {
      m_Seen += TestRows::describe(pParameter) + " ";
    }
    createOutputExpression(L"done");
    return 0;
  }
  std::string m_Seen;
};

std::string convert(std::vector<XPathDataType> i_Types,
                    const std::vector<std::wstring>& i_Arguments) {
  auto* pFunction = new RecordingFunction;
  for (XPathDataType type : i_Types) {
    pFunction->addParameterType(type);
  }
  pFunction->setArgumentsCount(-1);
  XPathOperator item(L"f", nullptr, pFunction);
  std::vector<std::unique_ptr<XPathExpression>> values;
  std::vector<XPathExpression*> arguments;
  for (auto it = i_Arguments.rbegin(); it != i_Arguments.rend(); ++it) {
    values.push_back(TestRows::makeValue(*it));
    arguments.push_back(values.back().get());
  }
  XPathEvaluationContext context;
  EXPECT_EQ(item.evaluate(arguments, context), 0);
  return pFunction->m_Seen;
}

}  // namespace

// Counts below the minimum and above the maximum (the string functions' own rows hold more);
// parameters converted and handed over last first.
TEST(XPathOperatorTest, ArgumentCountsAreCheckedAndParametersConverted) {
  // clang-format off
  TestRows::expectRows({
      {"substring('abc', 1, 1, 1)", "error:-15005"}, {"concat('a', 'b', 'c', 'd')", "string:abcd"},
      {"true()", "boolean:true"}, {"position(1, 2)", "number:1"}, {"=(1)", "error:-15005"},
      {"=(1, 1, 1)", "error:-15005"},
  }, [](const std::string& i_Call) { return TestRows::call(i_Call); });
  // clang-format on
  EXPECT_EQ(convert({}, {L"1", L"'a'"}), "string:a number:1 ");
  EXPECT_EQ(convert({StringType}, {L"1", L"true()", L"{x,y}"}), "string:x string:true string:1 ");
  EXPECT_EQ(convert({NumberType, BooleanType}, {L"'7'", L"'a'", L"{}"}),
            "boolean:false boolean:true number:7 ");
  EXPECT_EQ(convert({NumberType}, {L"-0", L"-Infinity"}), "number:-Infinity number:-0 ");
}
