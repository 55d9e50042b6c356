// xmlquery --lint: each rule shape that the engine reads otherwise than XPath 1.0 is run
// through xmlquery with its rewrite, and both results and the warning are checked. The
// README's table of these shapes must list exactly these rows.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "CommandRunner.h"
#include "XPathLint.h"

namespace {

const std::string SERVER = EXAMPLES_DIR "/server.xml";

struct Row {
  std::string rule;
  std::string query;
  std::string result;  // what the engine answers (--json)
  std::string rewrite;
  std::string rewriteResult;
};

// clang-format off
const std::vector<Row> ROWS = {
    {"blank-before-path", "//Connector[@port > 1024 and @port < 9000]/@port", "[]",
     "//Connector[(@port > 1024) and (@port < 9000)]/@port", R"(["8080","8009","8443"])"},
    {"blank-before-path", "//policy[owner='root' and @enabled='true']/owner", "[]",
     "//policy[(owner='root') and (@enabled='true')]/owner", R"(["root"])"},
    {"blank-before-path", "//policy[@enabled='false' or owner='bob']/owner", R"(["root"])",
     "//policy[(@enabled='false') or (owner='bob')]/owner", R"(["bob","root"])"},
    {"blank-before-path", "//policy[contains( owner,'ro')]/owner", "[]",
     "//policy[contains(owner,'ro')]/owner", R"(["root","root"])"},
    {"slash-in-predicate", "//Connector[@protocol='AJP/1.3']/@port", "[]",
     "//Connector[starts-with(@protocol,'AJP')]/@port", R"(["8009"])"},
    {"slash-in-predicate", "//policy[allow/@user='root']/@enabled", "[]",
     "//allow[@user='root']/../@enabled", R"(["true"])"},
    {"and-chain", "//Connector[(@port=8443) and (@scheme='https') and (@secure='true')]/@port",
     R"(["8443"])",
     "//Connector[((@port=8443) and (@scheme='https')) and (@secure='true')]/@port", "[]"},
    {"second-predicate", "//Connector[@scheme='https'][@secure='true']/@port", "[]",
     "//Connector[(@scheme='https') and (@secure='true')]/@port", R"(["443"])"},
    {"nested-predicate", "//policy[allow[@user='root']]/owner", "[]",
     "//policy[allow/@user='root']/owner", R"(["root"])"},
    {"descendant-step", "/config//owner", "[]",
     "/config/descendant::owner", R"(["root","bob","root","alice"])"},
    {"descendant-attribute", "//@user", "[]", "//*/@user", R"(["root"])"},
    {"attribute-predicate", "//Connector/@port[.='443']", R"(["8080","8009","443","8443"])",
     "//Connector[@port='443']/@port", R"(["443"])"},
};
// clang-format on

std::string valuesOf(const std::string& i_XPath) {
  const TestCommand::Outcome outcome = TestCommand::run(XMLQUERY_PATH, {"--json", SERVER, i_XPath});
  return outcome.m_Out;
}

std::string expectedJson(const std::string& i_Values) {
  return "{\"code\":0,\"values\":" + i_Values + "}\n";
}

TEST(XPathLintTest, EachShapeWarnsAndItsRewriteWorks) {
  for (const Row& row : ROWS) {
    EXPECT_EQ(valuesOf(row.query), expectedJson(row.result)) << row.query;
    EXPECT_EQ(valuesOf(row.rewrite), expectedJson(row.rewriteResult)) << row.rewrite;
    const TestCommand::Outcome warned = TestCommand::run(XMLQUERY_PATH, {"--lint", row.query});
    EXPECT_EQ(warned.m_Exit, 1) << row.query;
    EXPECT_NE(warned.m_Out.find(": " + row.rule + ": "), std::string::npos) << row.query << "\n"
                                                                            << warned.m_Out;
    EXPECT_NE(warned.m_Out.find("\n  instead: "), std::string::npos) << warned.m_Out;
    const TestCommand::Outcome clean = TestCommand::run(XMLQUERY_PATH, {"--lint", row.rewrite});
    EXPECT_EQ(clean.m_Exit, 0) << row.rewrite << "\n" << clean.m_Out;
    EXPECT_EQ(clean.m_Out, "") << row.rewrite;
  }
}

TEST(XPathLintTest, OrdinaryQueriesGetNoWarning) {
  for (const std::string xpath :
       {"/library/book[@id=\"b2\"]/year", "count(//a) * 2 + sum(//b) div 3",
        "//Connector[@scheme='https'][2]/@port", "//a[@b = 'x' and(c)]", "//a[last()]",
        "concat('a / b', //c)"}) {
    const TestCommand::Outcome outcome = TestCommand::run(XMLQUERY_PATH, {"--lint", xpath});
    EXPECT_EQ(outcome.m_Exit, 0) << xpath << "\n" << outcome.m_Out;
  }
}

TEST(XPathLintTest, WarningShowsColumnAndCaret) {
  const TestCommand::Outcome outcome =
      TestCommand::run(XMLQUERY_PATH, {"--lint", "//a[@b='x' and @c='y']"});
  EXPECT_EQ(outcome.m_Out,
            "column 16: blank-before-path: the blank before the path `@c` inside a predicate makes "
            "the path select nothing\n"
            "  //a[@b='x' and @c='y']\n"
            "                 ^\n"
            "  instead: put the operand in parentheses: `(@c='y')`\n");
}

// Every character of each row's query replaced in turn by each of a few hostile ones: the lint
// answers, whatever the text.
TEST(XPathLintTest, AnyTextIsReadWithoutFault) {
  for (const Row& row : ROWS) {
    for (size_t index = 0; index < row.query.size(); ++index) {
      for (const char replacement : {'[', ']', '(', ')', '\'', '/', '@', ':', ' '}) {
        std::string text = row.query;
        text[index] = replacement;
        for (const XmlQuery::LintWarning& warning : XmlQuery::lintXPath(text)) {
          EXPECT_GE(warning.m_Column, 1) << text;
          EXPECT_LE(warning.m_Column, static_cast<int>(text.size())) << text;
        }
      }
    }
  }
}

// The README's rows: (rule, query, rewrite), read from the backquoted cells.
std::set<std::tuple<std::string, std::string, std::string>> readmeRows() {
  std::ifstream readme(README_PATH);
  std::set<std::tuple<std::string, std::string, std::string>> rows;
  bool inSection = false;
  std::string line;
  while (std::getline(readme, line)) {
    if (line.rfind("## ", 0) == 0) {
      inSection = line == "## How this engine's XPath differs from XPath 1.0";
    }
    const size_t rule = line.find("(`");
    if (!inSection || line.rfind("| ", 0) != 0 || rule == std::string::npos) {
      continue;
    }
    std::vector<std::string> cells;
    for (size_t from = line.find('|'), to; (to = line.find(" |", from + 1)) != std::string::npos;
         from = to + 1) {
      cells.push_back(line.substr(from + 2, to - from - 2));
    }
    const auto unquote = [](const std::string& i_Cell) {
      return i_Cell.size() >= 2 ? i_Cell.substr(1, i_Cell.size() - 2) : i_Cell;
    };
    rows.emplace(line.substr(rule + 2, line.find("`)", rule) - rule - 2), unquote(cells.at(1)),
                 unquote(cells.at(2)));
  }
  return rows;
}

TEST(XPathLintTest, ReadmeListsExactlyTheseShapes) {
  std::set<std::tuple<std::string, std::string, std::string>> expected;
  for (const Row& row : ROWS) {
    expected.emplace(row.rule, row.query, row.rewrite);
  }
  EXPECT_EQ(readmeRows(), expected);
}

}  // namespace
