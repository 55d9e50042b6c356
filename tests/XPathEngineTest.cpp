#include "XPathEngine.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "EngineAnswer.h"
#include "TestLimits.h"
#include "TestRows.h"
#include "TestTrace.h"
#include "TestXml.h"
#include "XPathTokenizer.h"
#include "XmlCache.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

const TestXml::TempFile FILE_A("<a><b>1</b><b>2</b><c x='y'>t</c></a>\n");

class XPathEngineTest : public testing::Test {
 protected:
  static void TearDownTestSuite() { XmlCache::cleanup(); }
  static std::string run(const std::string& i_XPath) {
    return engineAnswer(i_XPath, FILE_A.path());
  }
};

}  // namespace

TEST_F(XPathEngineTest, FailureLeavesOutputAsItWas) {
  const std::string file = FILE_A.path();
  const std::string tooDeep = "a" + repeated("/.", XPATH_MAX_STEP_NESTING + 1);
  const std::string selfTooDeep = "." + repeated("/.", XPATH_MAX_STEP_NESTING);
  const struct {
    std::string m_XPath;
    std::string m_File;
    TErrorCode m_Code;
  } rows[] = {
      // clang-format off
      {"1 +", file, -15105}, {"count()", file, -15004}, {"1 + 1", file + ".missing", -15103},
      // Past the step nesting bound, also where a function hides the path's own code.
      {tooDeep, file, -15106}, {"count(" + tooDeep + ")", file, -15106},
      // A predicate's own failures only drop its candidate; a refusal fails the request.
      {"/a[" + selfTooDeep + "]", file, -15106}, {"count(/a/b[" + selfTooDeep + "])", file, -15106},
      // clang-format on
  };
  for (const auto& row : rows) {
    XPathOutputElements values;
    OutputElementsGuard guard(values);
    values.push_back(new XPathOutputElement());
    EXPECT_EQ(XPathEngine().start(String(row.m_XPath.c_str()), String(row.m_File.c_str()), values),
              row.m_Code)
        << row.m_XPath.substr(0, 40);
    EXPECT_EQ(values.size(), 1u) << row.m_XPath.substr(0, 40);
  }
}

TEST_F(XPathEngineTest, TracesTheRoad) {
  TraceCollector collector(3);
  run("1 + 1");
  const std::vector<std::string> expected = {"Parsing [1 + 1] for the XML file " + FILE_A.path(),
                                             "result ok 0", " result OK, getValues to output",
                                             " result = 0"};
  EXPECT_EQ(collector.texts("XPathEngine::start"), expected);
}

// Whatever text is accepted evaluates within a 2 MiB stack; deeper nesting is refused.
TEST_F(XPathEngineTest, DeepExpressionsFitASmallStack) {
  // clang-format off
  const std::vector<TestRows::Row> rows = {
      {nested("(", ")", 200), "0:1"}, {nested("(", ")", XPATH_MAX_NESTING), "0:1"},
      {nested("(", ")", XPATH_MAX_NESTING + 1), "-15105:"},
      {nested("-(", ")", XPATH_MAX_NESTING), "0:1"},
      {nested("-//a/b[@c=-", "]", XPATH_MAX_NESTING), "0:0"},
      {nested("substring(1,", ")", XPATH_MAX_NESTING), "0:1"},
      {nested("concat('a', ", ")", XPATH_MAX_NESTING),
       "0:" + repeated("a", XPATH_MAX_NESTING) + "1"},
      {"/a/c[" + nested("(", ")", XPATH_MAX_NESTING - 1) + "]", "0:t"},
      {"1" + repeated(" + 1", 9999), "0:10000"}, {repeated("-", 10001) + "1", "0:-1"},
  };
  // clang-format on
  runOnSmallStack([&rows] {
    TestRows::expectRows(rows, [](const std::string& i_XPath) { return run(i_XPath); });
  });
}

// The memory of freed items is kept by each thread and given back when the thread ends: items
// made on a thread of their own, freed there or after it ended, answer alike.
TEST_F(XPathEngineTest, RequestsOnAThreadOfTheirOwnAnswerAlike) {
  std::string onThread;
  XPathOutputElements keptPastThread;
  OutputElementsGuard guard(keptPastThread);
  std::thread worker([&] {
    for (int i = 0; i < 3; ++i) {
      onThread = run("/a/b");
    }
    EXPECT_EQ(XPathEngine().start(String("/a/c/@x"), String(FILE_A.path().c_str()), keptPastThread),
              0);
  });
  worker.join();
  EXPECT_EQ(onThread, "0:1,2");
  EXPECT_EQ(answerText(0, keptPastThread), "0:y");
  EXPECT_EQ(run("/a/b"), "0:1,2");
}

// A search in depth applies a predicate step's name test while listing the children; that
// verdict (b and a pass "*") must not stand in for the next step's name test.
TEST_F(XPathEngineTest, NameTestsBelongToTheirStep) {
  const TestXml::TempFile file(
      "<r><a x='1'><b x='2'><c>t</c></b><c>v</c></a><b x='1'><c>w</c></b></r>");
  // clang-format off
  const std::vector<TestRows::Row> rows = {
      {"//*[@x]/self::c/c", "0:v,w"}, {"//*[@x]/self::a/c", "0:v,w"}, {"//*[@x]/c", "0:t,v,w"},
      {"count(//b[1]/self::c)", "0:0"}, {"count(//a[1]/self::b)", "0:0"},
  };
  // clang-format on
  TestRows::expectRows(
      rows, [&](const std::string& i_XPath) { return engineAnswer(i_XPath, file.path()); });
}

// The items of count()'s argument are only counted; other operands of the same request, and
// the paths inside its predicates, still read their texts.
TEST_F(XPathEngineTest, CountedOperandsLeaveOtherOperandsTheirTexts) {
  // clang-format off
  const std::vector<TestRows::Row> rows = {
      {"concat(count(/a/b), '-', /a/b)", "0:2-1"}, {"count(/a/b[. = '2']) + count(//b)", "0:3"},
      {"count(/a/*[. = 't'])", "0:1"}, {"/a/b[count(../b) = 2]", "0:1,2"},
      {"count(/a/b) = /a/b[1]", "0:false"}, {"count(/a/b) = /a/b[2]", "0:true"},
  };
  // clang-format on
  TestRows::expectRows(rows, [](const std::string& i_XPath) { return run(i_XPath); });
}
