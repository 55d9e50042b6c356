// Location paths compiled once per operand: a relative path inside a predicate is prepared
// once per candidate name and parent name, and each candidate only hands in its position.
#include "XPathCompiledPath.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "EngineAnswer.h"
#include "TestRows.h"
#include "TestTrace.h"
#include "TestXml.h"
#include "XPathExpressionCache.h"
#include "XmlCache.h"

using namespace XmlPlugin;

namespace {

class CompiledPathTest : public testing::Test {
 protected:
  void TearDown() override {
    XmlCache::cleanup();
    XPathExpressionCache::cleanup();
  }
};

// Candidates of several names under several parents, so that one operand is anchored in
// several ways; positions past the first show that each candidate's own position is used.
const char* const MIXED =
    "<r><a><b id='1'>x</b><c id='2'>y</c><b id='3'>z</b></a>"
    "<d><b id='4'>w</b><b>v</b><c id='6'><b id='7'>u</b></c></d></r>";

}  // namespace

TEST_F(CompiledPathTest, RelativePathsInPredicatesAnswerPerCandidate) {
  const TestXml::TempFile file(MIXED);
  // clang-format off
  const std::vector<TestRows::Row> rows = {
      {"//b[@id='3']", "0:z"}, {"//b[@id]", "0:x,z,w,u"}, {"//*[@id > 2]", "0:z,w,,u"},
      {"/r/d/b[not(@id)]", "0:v"}, {"//b[../@id = 6]", "0:u"}, {"//b[. = 'z']", "0:z"},
      {"//b[@id != '\x01']", "0:x,z,w,u"},
      // The engine's own answers where anchoring meets a second step or a union.
      {"/r/*/b[@id = 3 or @id = 4]", "0:z"}, {"count(/r/*[b/@id > 3])", "0:1"},
      {"count(//c[b/@id = 7]/@id)", "0:0"}, {"count(//*[b])", "0:3"},
      {"count(//b[@id | @lang])", "0:0"},
  };
  // clang-format on
  for (int round = 0; round < 2; ++round) {
    TestRows::expectRows(
        rows, [&](const std::string& i_XPath) { return engineAnswer(i_XPath, file.path()); });
  }
}

TEST_F(CompiledPathTest, ManyCandidateNamesKeepTheirOwnAnchors) {
  // More element names than anchored forms kept per operand.
  std::string xml = "<r>";
  std::string expected = "0:";
  for (int name = 0; name < 40; ++name) {
    const std::string tag = "e" + std::to_string(name);
    xml += "<" + tag + " k='" + std::to_string(name % 3) + "'>" + tag + "</" + tag + ">";
    if (name % 3 == 1) {
      expected += (expected.size() > 2 ? "," : "") + tag;
    }
  }
  const TestXml::TempFile file(xml + "</r>");
  EXPECT_EQ(engineAnswer("/r/*[@k = 1]", file.path()), expected);
  EXPECT_EQ(engineAnswer("/r/*[@k = 1]", file.path()), expected);
}

TEST_F(CompiledPathTest, AnOperandOutlivesTheDocumentItWasAnchoredIn) {
  const TestXml::TempFile first(MIXED);
  EXPECT_EQ(engineAnswer("//b[@id='4']", first.path()), "0:w");
  XmlCache::cleanup();
  const TestXml::TempFile second("<r><d><b id='4'>q</b></d></r>");
  EXPECT_EQ(engineAnswer("//b[@id='4']", second.path()), "0:q");
}

TEST_F(CompiledPathTest, TracesShowThePathAsAnchoredForTheCandidate) {
  const TestXml::TempFile file(MIXED);
  TraceCollector collector(3);
  EXPECT_EQ(engineAnswer("/r/a/b[@id = 3]", file.path()), "0:z");
  const std::vector<std::string> expected = {"XPath query = /r/a/b[@id = 3]",
                                             "XPath query = a/b[position()=1]/@id",
                                             "XPath query = a/b[position()=2]/@id"};
  EXPECT_EQ(collector.texts("XPath::XPath"), expected);
}

TEST(CompiledPathSplitTest, AnchorMarkStandsForThePositionInTheText) {
  const XPathCompiledPath path(String(L"a/b[position()=\x01]/@id | c"));
  EXPECT_EQ(path.getStatus(), 0);
  EXPECT_EQ(path.getText(12), String(L"a/b[position()=12]/@id | c"));
  EXPECT_EQ(path.getPaths().size(), 2u);
  const std::vector<String> steps = {String(L"a"), String(L"b[position()=\x01]"), String(L"@id")};
  EXPECT_EQ(path.getTokens(0), steps);
  EXPECT_FALSE(path.isAbsolute());
  EXPECT_TRUE(XPathCompiledPath(String(L"/a/b")).isAbsolute());
  EXPECT_FALSE(XPathCompiledPath(String(L"//a/b")).isAbsolute());
}
