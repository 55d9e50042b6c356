#include "XPathEngine.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "EngineAnswer.h"
#include "TestLimits.h"
#include "TestRows.h"
#include "TestTrace.h"
#include "XPathTokenizer.h"
#include "XmlCache.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

class XPathEngineTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    m_File = testing::TempDir() + "xpath_engine_test.xml";
    std::ofstream(m_File) << "<a><b>1</b><b>2</b><c x='y'>t</c></a>\n";
  }
  static void TearDownTestSuite() { XmlCache::cleanup(); }

  static std::string run(const std::string& i_XPath, const std::string& i_File = m_File) {
    return engineAnswer(i_XPath, i_File);
  }

  static std::string m_File;
};

std::string XPathEngineTest::m_File;

}  // namespace

TEST_F(XPathEngineTest, FailureLeavesOutputAsItWas) {
  const std::string tooDeep = "a" + repeated("/.", XPATH_MAX_STEP_NESTING + 1);
  const std::string selfTooDeep = "." + repeated("/.", XPATH_MAX_STEP_NESTING);
  const struct {
    std::string m_XPath;
    std::string m_File;
    TErrorCode m_Code;
  } rows[] = {{"1 +", m_File, -15105},
              {"count()", m_File, -15004},
              {"1 + 1", m_File + ".missing", -15103},
              // Past the step nesting bound, also where a function hides the path's own code.
              {tooDeep, m_File, -15106},
              {"count(" + tooDeep + ")", m_File, -15106},
              // A predicate's own failures only drop its candidate; a refusal fails the request.
              {"/a[" + selfTooDeep + "]", m_File, -15106},
              {"count(/a/b[" + selfTooDeep + "])", m_File, -15106}};
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
  const std::vector<std::string> expected = {"Parsing [1 + 1] for the XML file " + m_File,
                                             "result ok 0", " result OK, getValues to output",
                                             " result = 0"};
  EXPECT_EQ(collector.texts("XPathEngine::start"), expected);
}

// Whatever text is accepted evaluates within a 2 MiB stack; deeper nesting is refused.
TEST_F(XPathEngineTest, DeepExpressionsFitASmallStack) {
  const std::vector<TestRows::Row> rows = {
      {nested("(", ")", 200), "0:1"},
      {nested("(", ")", XPATH_MAX_NESTING), "0:1"},
      {nested("(", ")", XPATH_MAX_NESTING + 1), "-15105:"},
      {nested("-(", ")", XPATH_MAX_NESTING), "0:1"},
      {nested("-//a/b[@c=-", "]", XPATH_MAX_NESTING), "0:0"},
      {nested("substring(1,", ")", XPATH_MAX_NESTING), "0:1"},
      {nested("concat('a', ", ")", XPATH_MAX_NESTING),
       "0:" + repeated("a", XPATH_MAX_NESTING) + "1"},
      {"/a/c[" + nested("(", ")", XPATH_MAX_NESTING - 1) + "]", "0:t"},
      {"1" + repeated(" + 1", 9999), "0:10000"},
      {repeated("-", 10001) + "1", "0:-1"},
  };
  runOnSmallStack([&rows] {
    TestRows::expectRows(rows, [](const std::string& i_XPath) { return run(i_XPath); });
  });
}
