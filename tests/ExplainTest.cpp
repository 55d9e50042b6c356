// xmlquery --explain: the account of one evaluation, through the built tool, and the engine's
// answers unchanged while an explainer watches.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "CommandRunner.h"
#include "EngineAnswer.h"
#include "XPathExplainer.h"
#include "XmlCache.h"
#include "XmlPlugin/XmlPluginExplain.h"

namespace {

const std::string SHELF = TEST_DATA_DIR "/explain/shelf.xml";

struct Row {
  std::string m_XPath;
  int m_Exit;
  std::string m_Out;  // exact standard output
};

TEST(ExplainTest, TellsTheEvaluation) {
  const std::vector<Row> rows = {
      {"count(/shelf/book[price > 10])", 0,
       "query: count(/shelf/book[price > 10])\n"
       "items: `count` `(` `/shelf/book[price > 10]` `)`\n"
       "postfix: `/shelf/book[price > 10]` `count`\n"
       "path `/shelf/book[price > 10]` from <shelf>\n"
       "  prepared `shelf/book[price > 10]/endfunction()`\n"
       "    predicate [price > 10] on 4 candidates\n"
       "      items: `price` `>` `10`\n"
       "      postfix: `price` `10` `>`\n"
       "      path `shelf/book[position()=1]/price` from <shelf>\n"
       "        prepared `shelf/book[position()=1]/price/endfunction()`\n"
       "          step 1 `shelf` kept 1 node\n"
       "          step 2 `book[position()=1]` kept 1 node\n"
       "          step 3 `price` kept 1 node\n"
       "          leaf `endfunction()` made 1 item\n"
       "        selected 1 item\n"
       "      candidate 1 <book id=\"b1\">: boolean true: kept\n"
       "      candidate 2 <book id=\"b2\">: boolean true: kept\n"
       "      candidate 3 <book id=\"b3\">: boolean false: dropped\n"
       "      ... 1 more candidate, 1 kept\n"
       "      kept 3 of 4\n"
       "    step 1 `shelf` kept 1 node\n"
       "    step 2 `book[price > 10]` kept 3 nodes\n"
       "    leaf `endfunction()` made 3 items\n"
       "  selected 3 items\n"
       "value: number 3\n"},
      // The next step is tried on the children of the excluded books too, as the account
      // tells, although only the kept book's title can reach the result.
      {"//book[@id='b2']/title", 0,
       "query: //book[@id='b2']/title\n"
       "items: `//book[@id='b2']/title`\n"
       "postfix: `//book[@id='b2']/title`\n"
       "path `//book[@id='b2']/title` from <shelf>\n"
       "  prepared `//book[@id='b2']/title/endfunction()`\n"
       "    predicate [@id='b2'] on 4 candidates\n"
       "      items: `@id` `=` `'b2'`\n"
       "      postfix: `@id` `'b2'` `=`\n"
       "      path `shelf/book[position()=1]/@id` from <shelf>\n"
       "        prepared `shelf/book[position()=1]/@id`\n"
       "          step 1 `shelf` kept 1 node\n"
       "          step 2 `book[position()=1]` kept 1 node\n"
       "          leaf `@id` made 1 item\n"
       "        selected 1 item\n"
       "      candidate 1 <book id=\"b1\">: boolean false: dropped\n"
       "      candidate 2 <book id=\"b2\">: boolean true: kept\n"
       "      candidate 3 <book id=\"b3\">: boolean false: dropped\n"
       "      ... 1 more candidate, 0 kept\n"
       "      kept 1 of 4\n"
       "    step 1 `//book[@id='b2']` kept 1 node\n"
       "    step 2 `title` kept 4 nodes\n"
       "    leaf `endfunction()` made 1 item\n"
       "  selected 1 item\n"
       "value: node set of 1 item\n"
       "  \"Emma\"\n"},
      // The lint warning comes first; the account then shows the path that fails.
      {"//@id", 0,
       "query: //@id\n"
       "lint: column 1: descendant-attribute: `//@name` selects nothing\n"
       "lint:   //@id\n"
       "lint:   ^\n"
       "lint:   instead: name the element, or any element: `//*/@id`\n"
       "items: `//@id`\n"
       "postfix: `//@id`\n"
       "path `//@id` from <shelf>\n"
       "  prepared `//@id`\n"
       "  selected 0 items, error -15006 XML_PLUGIN_ERROR_XPATH_ARGUMENTS_TYPE_ERROR\n"
       "value: node set of 0 items\n"},
      {"count(/shelf/book) + cout(//book)", 1,
       "query: count(/shelf/book) + cout(//book)\n"
       "error -15105 XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION\n"
       "XPath text rejected at column 22: unknown function `cout`\n"
       "  count(/shelf/book) + cout(//book)\n"
       "                       ^\n"},
  };
  for (const Row& row : rows) {
    const TestCommand::Outcome outcome =
        TestCommand::run(XMLQUERY_PATH, {"--explain", SHELF, row.m_XPath});
    EXPECT_EQ(outcome.m_Exit, row.m_Exit) << row.m_XPath << "\n" << outcome.m_Err;
    EXPECT_EQ(outcome.m_Out, row.m_Out) << row.m_XPath;
  }
}

// The README's example is what the tool prints for it.
TEST(ExplainTest, ReadmeExampleIsCurrent) {
  const std::string command = "$ xmlquery --explain examples/library.xml ";
  std::ifstream readme(README_PATH);
  std::string line;
  std::string query;
  while (query.empty() && std::getline(readme, line)) {
    if (line.rfind(command, 0) == 0) {
      query = line.substr(command.size() + 1, line.size() - command.size() - 2);  // unquoted
    }
  }
  std::string example;
  while (std::getline(readme, line) && line != "```") {
    example += line + "\n";
  }
  ASSERT_FALSE(query.empty());
  EXPECT_EQ(
      TestCommand::run(XMLQUERY_PATH, {"--explain", EXAMPLES_DIR "/library.xml", query}).m_Out,
      example);
}

TEST(ExplainTest, EntryRefusesNullArguments) {
  const XmlPluginExplainLine ignore = [](void*, const char*) {};
  const String shelf(SHELF.c_str());
  EXPECT_EQ(xmlPluginExplain(nullptr, L"/a", ignore, nullptr), HOST_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(xmlPluginExplain(shelf.c_str(), nullptr, ignore, nullptr), HOST_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(xmlPluginExplain(shelf.c_str(), L"/a", nullptr, nullptr), HOST_ERROR_BAD_ARGUMENT);
}

// Watching changes nothing: every kind of query gives the host the same answer with an
// explainer as without, and the explainer tells each one the grammar accepts.
TEST(ExplainTest, AnswersUnchangedWhileWatched) {
  // clang-format off
  const std::vector<std::string> queries = {
      "/shelf/book/title", "//book[2]/title | //book[@id='b4']/@id",
      "//book[price > 10][title != 'Kim']/title", "//book[count(../book[price > 20]) = 2]/@id",
      "//title[. = 'Ubik']/../price", "//price/parent::book/@id",
      "//title/ancestor::shelf/book[3]/title", "//book[position() = last()]/title",
      "concat(//book[1]/title, '-', string(count(//price)))", "1 + 2 * 3", "/shelf/book[",
      "//book[]",
  };
  // clang-format on
  for (const std::string& query : queries) {
    size_t lines = 0;
    XmlPlugin::XPathExplainer explainer([&](const std::string&) { ++lines; });
    const std::string answer = engineAnswer(query, SHELF, &explainer);
    EXPECT_EQ(answer, engineAnswer(query, SHELF)) << query;
    EXPECT_EQ(lines > 0, answer.rfind("-15105:", 0) != 0) << query << " " << answer;
  }
  XmlPlugin::XmlCache::cleanup();
}

}  // namespace
