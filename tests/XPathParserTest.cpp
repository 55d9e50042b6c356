// Splitting a location-path operand into prepared paths, and a path into steps.
#include "XPathParser.h"

#include <gtest/gtest.h>

#include <string>

#include "TestRows.h"
#include "XPath.h"
#include "XPathPredicate.h"

using namespace XmlPlugin;

namespace {

// "path:count;path:count" for every prepared path.
std::string split(const std::string& i_Operand) {
  XPathEvaluationContext context;
  XPath xpath(String(i_Operand.c_str()), context);
  const TErrorCode result = xpath.splitXPath();
  std::string text = std::to_string(result) + "|";
  for (size_t i = 0; i < xpath.getPaths().size(); ++i) {
    text += (i == 0 ? "" : ";") + xpath.getPaths()[i].toNarrow() + ":" +
            std::to_string(xpath.getStepCounts()[i]);
  }
  return text;
}

const char* const AXIS_TEXT[] = {"attribute",          "child",
                                 "descendant",         "self",
                                 "descendant-or-self", "following",
                                 "preceding",          "ancestor",
                                 "ancestor-or-self",   "following-sibling",
                                 "preceding-sibling",  "parent"};
const char* const TYPE_TEXT[] = {"root", "mid", "leaf"};

// "code|type axis name predicates deep" for the step of the row "path #index".
std::string step(const std::string& i_Row) {
  const size_t mark = i_Row.rfind(" #");
  std::unique_ptr<XPathStep> pStep;
  XPathParser parser;
  const TErrorCode result = parser.getStep(String(i_Row.substr(0, mark).c_str()),
                                           std::stoul(i_Row.substr(mark + 2)), pStep);
  std::string text = std::to_string(result) + "|";
  if (pStep) {
    text += std::string(TYPE_TEXT[pStep->getStepType()]) + " " + AXIS_TEXT[pStep->getAxis()] + " " +
            pStep->getName().toNarrow();
    for (const std::unique_ptr<XPathPredicate>& pPredicate : pStep->getPredicates()) {
      text += " " + pPredicate->getExpression().toNarrow();
    }
    text += pStep->isAbsoluteDeepSearch() ? " deep" : "";
  }
  return text;
}

}  // namespace

TEST(XPathParserTest, SplitsAndPreparesPaths) {
  // clang-format off
  TestRows::expectRows({
      {"a | b", "0|a/endfunction():1;b/endfunction():1"}, {"a/b", "0|a/b/endfunction():2"},
      {"/a/b", "0|a/b/endfunction():2"}, {"//a/b", "0|//a/b/endfunction():2"},
      {"a/text()", "0|a/text():1"}, {"a/@id", "0|a/@id:1"},
      {"a/attribute::id", "0|a/attribute::id:1"},
      {"a/b[c/d='x']/e", "0|a/b[c/d='x']/e/endfunction():4"},
      {"a||b|", "0|a/endfunction():1;b/endfunction():1"},
      {"a/Text()", "0|a/Text()/endfunction():2"}, {"@id", "0|@id:0"},
      {"a/b/attribute::*", "0|a/b/attribute::*:2"}, {"a/@id/b", "0|a/@id/b/endfunction():3"},
  }, split);
  // clang-format on
}

TEST(XPathParserTest, CutsPathsIntoTokens) {
  // clang-format off
  TestRows::expectRows({
      {"a/b/c", "a,b,c"}, {"//a/b", "//a,b"},
      {"a//b/c", "a//b,c"},  // a "//" after the first step never separates
      {"a/b[c/d='x']/e", "a,b[c/d='x'],e"}, {"/a", ""}, {"", ""},
  }, [](const std::string& i_Path) {
    std::string text;
    for (const String& token : XPathParser().getTokens(String(i_Path.c_str()))) {
      text += (text.empty() ? "" : ",") + token.toNarrow();
    }
    return text;
  });
  // clang-format on
  XPathParser parser;
  EXPECT_EQ(parser.getStepCount(String("a//b/c[d/e]")), 3u);
}

TEST(XPathParserTest, BuildsSteps) {
  // clang-format off
  TestRows::expectRows({
      {"//a/b/endfunction() #0", "0|root child a deep"},
      {"//a/b/endfunction() #1", "0|mid child b"},
      {"//a/b/endfunction() #2", "0|leaf child endfunction()"}, {"//a/b/endfunction() #3", "-103|"},
      {"a/text() #1", "0|leaf child text()"}, {"a/@id #1", "0|leaf attribute id"},
      {"a/../b #1", "0|mid parent *"}, {"a/./b #1", "0|mid self *"},
      {"a/child::b #1", "0|leaf child b"}, {"a/attribute::id #1", "0|leaf attribute id"},
      {"a/foo::b #1", "0|leaf child b"},
      {"a/following-sibling::b #1", "0|leaf following-sibling b"},
      {"a[1][@x='y']/b #0", "0|root child a [1] [@x='y']"},
      {"a/b[c/d='x']/e #1", "0|mid child b [c/d='x']"}, {"a/b[1 #1", "-15101|"},
      {"a/b] #1", "-15101|"}, {"[1]/a #0", "-15101|"}, {"a/b[1]] #1", "0|leaf child b [1]"},
      {"a[b[c]] #0", "0|root child a [b[c] [c]"},  // an inner "[" ends at the outer "]"
      {"a[1][[ #0", "-15101|"}, {"a//b #0", "0|root child a//b"}, {"a/ #0", "0|root child a"},
  }, step);
  // clang-format on
}
