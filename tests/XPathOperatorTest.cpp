// Operators: argument-count checks, parameter conversion and order, results.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "XPathFunction.h"
#include "XPathFunctionCall.h"
#include "XPathOperator.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;
using FunctionCall::call;

namespace {

// Keeps the parameters it was handed and answers with their types and texts.
class RecordingFunction : public XPathFunction {
 public:
  TErrorCode evaluate() override {
    m_Seen.clear();
    for (const XPathExpression* pParameter : *getFunctionParameters()) {
      m_Seen += FunctionCall::describe(pParameter) + " ";
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
    values.push_back(FunctionCall::makeValue(*it));
    arguments.push_back(values.back().get());
  }
  XPathEvaluationContext context;
  EXPECT_EQ(item.evaluate(arguments, context), 0);
  return pFunction->m_Seen;
}

}  // namespace

TEST(XPathOperatorTest, ArgumentCountsAreCheckedAsUnsigned) {
  const struct {
    const wchar_t* m_Name;
    std::vector<std::wstring> m_Arguments;
    const char* m_Expected;
  } rows[] = {
      {L"substring", {L"'abc'", L"2"}, "string:bc"},
      {L"substring", {L"'abc'"}, "error:-15005"},
      {L"substring", {L"'abc'", L"1", L"1", L"1"}, "error:-15005"},
      {L"concat", {L"'a'", L"'b'", L"'c'", L"'d'"}, "string:abcd"},
      {L"concat", {L"'a'"}, "error:-15005"},
      {L"true", {}, "boolean:true"},
      {L"position", {L"1", L"2"}, "number:1"},
      {L"=", {L"1"}, "error:-15005"},
      {L"=", {L"1", L"1", L"1"}, "error:-15005"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(call(row.m_Name, row.m_Arguments), row.m_Expected) << String(row.m_Name).toNarrow();
  }
}

TEST(XPathOperatorTest, ParametersAreConvertedAndHandedOverLastFirst) {
  EXPECT_EQ(convert({}, {L"1", L"'a'"}), "string:a number:1 ");
  EXPECT_EQ(convert({StringType}, {L"1", L"true()", L"{x,y}"}), "string:x string:true string:1 ");
  EXPECT_EQ(convert({NumberType, BooleanType}, {L"'7'", L"'a'", L"{}"}),
            "boolean:false boolean:true number:7 ");
  EXPECT_EQ(convert({NumberType}, {L"-0", L"-Infinity"}), "number:-Infinity number:-0 ");
}

TEST(XPathOperatorTest, DelegatesToItsFunction) {
  std::unique_ptr<XPathExpression> pItem(XPathExpression::create(L"substring", L"(", nullptr));
  EXPECT_TRUE(pItem->isOperator());
  EXPECT_EQ(pItem->getPriority(), 1);
  EXPECT_TRUE(pItem->isInfix());
  EXPECT_EQ(pItem->getArgumentsCount(), 1);
  static_cast<XPathOperator*>(pItem.get())->setArgumentsCount(3);
  EXPECT_EQ(pItem->getArgumentsCount(), 3);
  EXPECT_EQ(pItem->getOutputArgument(), nullptr);
}

TEST(XPathOperatorTest, FailingFunctionLeavesNoResult) {
  std::unique_ptr<XPathExpression> pItem(XPathExpression::create(L"local-name", L"(", nullptr));
  XPathEvaluationContext context;
  EXPECT_EQ(pItem->evaluate({}, context), HOST_ERROR_NOT_SUPPORTED);
  EXPECT_EQ(pItem->getOutputArgument(), nullptr);
}
