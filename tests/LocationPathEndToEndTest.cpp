// Location paths and expressions through the host tool and the loaded plug-in, over
// tests/data/paths.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "CommandRunner.h"

namespace {

struct Row {
  const char* m_File;
  const char* m_XPath;
  const char* m_Expected;  // "code|value,value"
};

const Row kRows[] = {
    // Child and deep paths, prefixed names, node().
    {"catalog.xml", "catalog/book/title", "0|Alpha,Beta,Delta"},
    {"catalog.xml", "child::catalog/child::book/title", "0|Alpha,Beta,Delta"},
    {"mixed.xml", "root/p:item/@p:kind", "0|x"},
    {"mixed.xml", "root/node()", "0|first,plain,upper,"},
    {"mixed.xml", "//deep/deep", "0|,bottom"},
    // Unions, axes and predicates.
    {"catalog.xml", "count(//title | //price)", "0|8"},
    {"catalog.xml", "//price/parent::magazine/title", "0|Gamma"},
    {"catalog.xml", "catalog/book/note/following::title", "0|Gamma,Delta"},
    {"catalog.xml", "catalog/*[last()]/title", "0|Delta"},
    {"catalog.xml", "catalog/book[@lang='de']/title", "0|Delta"},
    {"catalog.xml", "catalog/book[price > 9]/title", "0|Alpha,Beta"},
    {"catalog.xml", "catalog/book[false()]/title", "0|"},
    {"catalog.xml", "//book[note]/@id", "0|b2"},
    // Functions and comparisons over node sets.
    {"catalog.xml", "count(//price[. > 5])", "0|3"},
    {"catalog.xml", "sum(catalog/book/price)", "0|42.5"},
    {"catalog.xml", "string(catalog/book/title)", "0|Alpha"},
    {"catalog.xml", "name(catalog/*[3])", "0|magazine"},
    {"catalog.xml", "catalog/book/price = 7", "0|true"},
    {"catalog.xml", "catalog/book/@id = 'b3'", "0|true"},
    {"catalog.xml", "catalog/book[1]/title != 'Alpha'", "0|false"},
};

std::string canonical(const nlohmann::json& i_Response) {
  std::string text = std::to_string(i_Response.value("code", 1)) + "|";
  const nlohmann::json values = i_Response.value("values", nlohmann::json::array());
  for (size_t i = 0; i < values.size(); ++i) {
    text += (i == 0 ? "" : ",") + values[i].get<std::string>();
  }
  return text;
}

}  // namespace

TEST(LocationPathEndToEndTest, QueriesThroughTheTool) {
  std::string requests;
  for (const Row& row : kRows) {
    const std::string file = std::string(TEST_DATA_DIR) + "/paths/" + row.m_File;
    requests +=
        nlohmann::json{{"type", "XmlValues"}, {"file", file}, {"xpath", row.m_XPath}}.dump() + "\n";
  }
  const TestCommand::Outcome outcome = TestCommand::run(XMLQUERY_PATH, {"--batch"}, requests);
  ASSERT_EQ(outcome.m_Exit, 0) << outcome.m_Err;

  std::istringstream lines(outcome.m_Out);
  for (const Row& row : kRows) {
    std::string line;
    ASSERT_TRUE(std::getline(lines, line)) << row.m_XPath << " has no response";
    EXPECT_EQ(canonical(nlohmann::json::parse(line)), row.m_Expected)
        << row.m_File << ": " << row.m_XPath;
  }
}
