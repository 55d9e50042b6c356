// Compiled expressions kept by text: each run answers for its own document and context.
#include "XPathExpressionCache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "EngineAnswer.h"
#include "TestTrace.h"
#include "TestXml.h"
#include "XPathEvaluationContext.h"
#include "XmlCache.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

std::string evaluate(XPathExpressionsParser& io_Parser) {
  XPathEvaluationContext context;
  return parserAnswer(io_Parser, nullptr, context);
}

class XPathExpressionCacheTest : public testing::Test {
 protected:
  void TearDown() override {
    XmlCache::cleanup();
    XPathExpressionCache::cleanup();
  }
};

}  // namespace

TEST_F(XPathExpressionCacheTest, SameTextOverTwoDocuments) {
  const TestXml::TempFile firstFile("<a><b id='1'>x</b><b>y</b></a>");
  const TestXml::TempFile secondFile("<a><b>p</b><b id='2'>q</b><b id='3'>r</b></a>");
  const std::string &first = firstFile.path(), &second = secondFile.path();
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(engineAnswer("count(/a/b)", first), "0:2");
    EXPECT_EQ(engineAnswer("count(/a/b)", second), "0:3");
    EXPECT_EQ(engineAnswer("/a/b[@id]", first), "0:x");
    EXPECT_EQ(engineAnswer("/a/b[@id]", second), "0:q,r");
    EXPECT_EQ(engineAnswer("/a/b[position() = 2]", first), "0:y");
  }
}

TEST_F(XPathExpressionCacheTest, TextThatDoesNotCompileFailsTheSameWayEachTime) {
  const TestXml::TempFile document("<a><b/></a>");
  const std::string file = document.path();
  TraceCollector collector(1);
  const std::string wrong = std::to_string(XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION) + ":";
  EXPECT_EQ(engineAnswer("1 +", file), wrong);
  EXPECT_EQ(engineAnswer("1 +", file), wrong);
  EXPECT_EQ(engineAnswer("/a/b[1 +]", file), wrong);
  EXPECT_EQ(engineAnswer("/a/b[1 +]", file), wrong);
  const std::vector<std::string> errors = collector.texts();
  EXPECT_EQ(std::count(errors.begin(), errors.end(), "Tokenizing error"), 4);
}

TEST_F(XPathExpressionCacheTest, TextLentTwiceAtOnceRunsApart) {
  XPathExpressionCache* pCache = XPathExpressionCache::get();
  const XPathExpressionCache::Lease outer = pCache->acquire(String("concat('a', 'b')"));
  ASSERT_EQ(evaluate(*outer), "0:ab");
  {
    const XPathExpressionCache::Lease inner = pCache->acquire(String("concat('a', 'b')"));
    EXPECT_EQ(evaluate(*inner), "0:ab");
  }
  XPathOutputElements values;
  OutputElementsGuard guard(values);
  ASSERT_EQ(outer->getValues(values), 0) << "the outer run's value survives the inner one";
  EXPECT_EQ(values.front()->m_Value.toNarrow(), "ab");
}

TEST_F(XPathExpressionCacheTest, ManyTextsStayCorrectPastTheBound) {
  XPathExpressionCache* pCache = XPathExpressionCache::get();
  for (int round = 0; round < 2; ++round) {
    for (size_t i = 0; i < 2 * XPATH_CACHED_EXPRESSIONS; ++i) {
      const XPathExpressionCache::Lease parser =
          pCache->acquire(String((std::to_string(i) + " + 1").c_str()));
      EXPECT_EQ(evaluate(*parser), "0:" + std::to_string(i + 1));
    }
  }
  const std::string longText(XPATH_CACHED_TEXT_LENGTH, ' ');
  EXPECT_EQ(evaluate(*pCache->acquire(String((longText + "2 * 3").c_str()))), "0:6");
}
