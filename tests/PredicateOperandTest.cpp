// When nobody watches the evaluation, a predicate that compares two operands is decided by the
// comparison alone, and plain-step operands ("name", "@name") are read directly; traced, both
// go the general way. The two must agree everywhere, including where the anchored node is not
// the candidate itself.
#include <gtest/gtest.h>

#include <string>

#include "EngineAnswer.h"
#include "TestTrace.h"
#include "TestXml.h"

namespace {

const char* const DOCUMENT =
    "<r><g><b id='1' k='x'><v>5</v><v>7</v></b><c id='2'><v>1</v></c><b id='3'><w>2</w></b>"
    "<b k='x' id='4'><v>9</v>text</b></g>"
    "<g><b id='5'/><x:b id='6'/><b id='7' k='y'><v/></b><x:b id='8'><v>3</v></x:b>"
    "<b id='10' k=''>x</b></g>"
    "<n:g><b id='9'><v>4</v></b></n:g></r>";

// clang-format off
const char* const QUERIES[] = {
    "//b[@id='3']/@id", "//b[@k='x'][@id='4']/@id", "//b[@k='x'][v>6]/@id", "//b[@k][@id]/@id",
    "//*[@id>2]/@id", "/r/g/b[v=7]/@id", "//b[v]/@id", "//b[w<3]/@id", "//b[not(@k)]/@id",
    "//b[v!=5]/@id", "count(//b[@id>0])", "//b[@id='5' or @id='7']/@id", "//g/*[@id='6']/@id",
    "//*[v=3]/@id", "//g[b/@id='5']/b/@id", "//b[@missing='']/@id", "//b[@id=//b[@k='y']/@id]/@id",
    "//c[v]/v", "/r/g[2]/b[@id>5]/@id", "//b[v][@k='x']/v", "//b[@k = @id]/@id",
    "//b['x' = @k]/@id", "//b[. = '']/@id", "//b[v and @k]/@id", "//b[@k or w]/@id",
    "//b[@id >= '3']/@id", "//b[@id != v]/@id", "//b[1 = 1]/@id", "//b[v = 'text']/@id",
    "//*[@id = 2]/v",
    // An empty attribute compares as its element's text.
    "//b[@k='x']/@id", "//b[@k != 'y']/@id", "//*['' = @k]/@id",
};
// clang-format on

}  // namespace

TEST(PredicateOperandTest, DirectAndAnchoredReadingsAgree) {
  TestXml::TempFile file(DOCUMENT);
  ASSERT_FALSE(file.path().empty());
  for (const char* query : QUERIES) {
    const std::string direct = engineAnswer(query, file.path());
    std::string anchored;
    {
      TraceCollector traced(3);
      anchored = engineAnswer(query, file.path());
    }
    EXPECT_EQ(direct, anchored) << query;
  }
}
