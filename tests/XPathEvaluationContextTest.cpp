// One request's budget, refusal and tree indexes, and what they mean for whole expressions.
#include "XPathEvaluationContext.h"

#include <gtest/gtest.h>

#include <string>

#include "EngineAnswer.h"
#include "TestLimits.h"
#include "TestXml.h"
#include "XPathExpressionsParser.h"
#include "XPathStep.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

std::string evaluate(const char* i_XPath, Node* i_pRoot, XPathEvaluationContext& io_Context) {
  XPathExpressionsParser parser{String(i_XPath)};
  return parserAnswer(parser, i_pRoot, io_Context);
}

// The work one evaluation of the expression takes.
unsigned long workOf(const char* i_XPath, Node* i_pRoot) {
  XPathEvaluationContext context;
  evaluate(i_XPath, i_pRoot, context);
  return context.getWork();
}

// <r> holding i_Count elements <i/>.
std::string flat(int i_Count) {
  return "<r>" + repeated("<i/>", i_Count) + "</r>";
}

}  // namespace

TEST(XPathEvaluationContextTest, RefusalIsSticky) {
  XPathEvaluationContext context(10);
  EXPECT_TRUE(context.admit(4));
  EXPECT_TRUE(context.admit(6));
  EXPECT_FALSE(context.isRefused());
  EXPECT_FALSE(context.admit(1));
  EXPECT_TRUE(context.isRefused());
  EXPECT_FALSE(context.admit(0));
  EXPECT_EQ(context.getWork(), 10u);
}

// The indexes answer like a scan of the children, for short lists and for long ones.
TEST(XPathEvaluationContextTest, IndexesAnswerLikeAScan) {
  for (int count : {3, 40}) {
    std::unique_ptr<Node> pTree =
        parseXml("<r>" + repeated("<i/>", count - 2) + "t" + repeated("<i/>", 2) + "</r>");
    ASSERT_NE(pTree, nullptr);
    XPathEvaluationContext context;
    Node* pText = nullptr;
    Node* pExpected = nullptr;
    EXPECT_EQ(context.firstTextChild(pTree.get(), pText), 0);
    XPathStep::getTextNode(pTree.get(), pExpected);
    ASSERT_NE(pText, nullptr) << count;
    EXPECT_EQ(pText, pExpected) << count;
    EXPECT_EQ(context.firstTextChild(nullptr, pText), HOST_ERROR_BAD_ARGUMENT);

    const NodeList* pChildren = nullptr;
    ASSERT_EQ(pTree->getChildren(&pChildren), 0);
    for (size_t place = 0; place < pChildren->size(); ++place) {
      EXPECT_EQ(context.childPosition(pTree.get(), (*pChildren)[place]), place) << count;
    }
    EXPECT_EQ(context.childPosition(pTree.get(), pTree.get()), pChildren->size()) << count;

    std::unique_ptr<XPathStep> pStep;
    ASSERT_EQ(XPathStep::get(String("i"), String("r"), mid, pStep), 0);
    Node* pChild = nullptr;
    EXPECT_EQ(context.nthChild(pTree.get(), *pStep, count, pChild), 0);
    EXPECT_EQ(pChild, (*pChildren)[pChildren->size() - 1]) << count;
    EXPECT_EQ(context.nthChild(pTree.get(), *pStep, count + 1, pChild), 0);
    EXPECT_EQ(pChild, nullptr) << count;
  }
}

TEST(XPathEvaluationContextTest, PositionOfTheJudgedCandidateNeedsNoSearch) {
  std::unique_ptr<Node> pTree = parseXml(flat(5));
  ASSERT_NE(pTree, nullptr);
  std::list<Node*> candidates;
  XPathStep::getChildrenXmlNodes(pTree.get(), candidates);
  Node* pThird = *std::next(candidates.begin(), 2);
  XPathEvaluationContext context;
  EXPECT_EQ(context.positionAmong(candidates, pThird), 3);
  EXPECT_EQ(context.positionAmong(candidates, pTree.get()), 0);
  const unsigned long searched = context.getWork();
  const XPathEvaluationContext::Candidate judged(context, candidates, pThird, 3);
  EXPECT_EQ(context.positionAmong(candidates, pThird), 3);
  EXPECT_EQ(context.getWork(), searched);
}

// Every path operand and every predicate of a request draws on the one budget.
TEST(XPathEvaluationContextTest, OperandsAndPredicatesShareOneBudget) {
  std::unique_ptr<Node> pTree = parseXml(flat(50));
  ASSERT_NE(pTree, nullptr);
  const struct {
    const char* m_One;
    const char* m_Three;
    const char* m_Expected;
  } rows[] = {
      {"count(/r/i)", "count(/r/i) + count(/r/i) + count(/r/i)", "0:150"},
      {"count(/r/i[1 = 1])", "count(/r/i[1 = 1] | /r/i[2 = 2] | /r/i[3 = 3])", "0:50"},
      {"count(/r[count(i) = 50])", "count(/r[count(i) + count(i) + count(i) = 150])", "0:1"},
  };
  for (const auto& row : rows) {
    const unsigned long one = workOf(row.m_One, pTree.get());
    const unsigned long three = workOf(row.m_Three, pTree.get());
    EXPECT_GE(three, 2 * one) << row.m_Three;
    XPathEvaluationContext enough(three);
    EXPECT_EQ(evaluate(row.m_Three, pTree.get(), enough), row.m_Expected) << row.m_Three;
    XPathEvaluationContext tooLittle(three - one);
    EXPECT_EQ(evaluate(row.m_Three, pTree.get(), tooLittle), "-15106:") << row.m_Three;
  }
}

// Requests that visited a number of nodes quadratic (or exponential) in the document's size
// before the budget stopped them answer now, and those whose answer itself is quadratic are
// refused once the budget is spent.
TEST(XPathEvaluationContextTest, WideDocumentsAnswerWithinTheBudget) {
  std::unique_ptr<Node> pTree = parseXml(flat(1000));
  ASSERT_NE(pTree, nullptr);
  const char* const rows[][2] = {
      // clang-format off
      {"count(/r/i/ancestor::r)", "0:1"}, {"count(/r/i/..)", "0:1"}, {"count(/r/i[last()])", "0:1"},
      {"count(//i[ancestor::r])", "0:1000"}, {"count(/r/i[position() mod 250 = 0])", "0:4"},
      {"count(//./../././.././../.)", "0:1001"},
      {".-.-//.././.././././../././.././././../././././../././.././././././.-..-.", "0:0"},
      // clang-format on
  };
  for (const auto& row : rows) {
    XPathEvaluationContext context;
    EXPECT_EQ(evaluate(row[0], pTree.get(), context), row[1]) << row[0];
    EXPECT_LT(context.getWork(), XPATH_MAX_STEP_EVALUATIONS / 4) << row[0];
  }
  // 1000 * 999 / 2 preceding siblings to make items of.
  XPathEvaluationContext context(1000000);
  EXPECT_EQ(evaluate("count(/r/i[preceding-sibling::i])", pTree.get(), context), "-15106:");
}

// Blanks around "=" change nothing: the position is looked up, not searched for.
TEST(XPathEvaluationContextTest, PositionPredicatesWithBlanks) {
  std::unique_ptr<Node> pTree = parseXml("<r><i>1</i><j>2</j><i>3</i><i>4</i><j>5</j></r>");
  ASSERT_NE(pTree, nullptr);
  const char* const rows[][2] = {
      {"/r/i[position()=2]", "0:3"},          {"/r/i[position() = 2]", "0:3"},
      {"/r/i[ position()= 2 ]", "0:3"},       {"/r/*[position()  =  5]", "0:5"},
      {"/r/i[position() = 4]", "0:"},         {"count(/r/*[position() = 0])", "0:0"},
      {"/r/i[position() = 2]/../j", "0:2,5"}, {"/r/i[position()=2][@x]", "0:"},
  };
  for (const auto& row : rows) {
    XPathEvaluationContext context;
    EXPECT_EQ(evaluate(row[0], pTree.get(), context), row[1]) << row[0];
  }
}
