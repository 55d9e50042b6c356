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
    // Child and deep paths, attributes, text() and "."
    {"catalog.xml", "catalog/book/title", "0|Alpha,Beta,Delta"},
    {"catalog.xml", "/catalog/book/title", "0|Alpha,Beta,Delta"},
    {"catalog.xml", "child::catalog/child::book/title", "0|Alpha,Beta,Delta"},
    {"catalog.xml", "//title", "0|Alpha,Beta,Gamma,Delta"},
    {"catalog.xml", "catalog/book/missing", "0|"},
    {"catalog.xml", "catalog/book/@id", "0|b1,b2,b3"},
    {"catalog.xml", "catalog/book/@*", "0|b1,en,b2,b3,de"},
    {"catalog.xml", "catalog/book/attribute::lang", "0|en,de"},
    {"catalog.xml", "catalog/book/title/text()", "0|Alpha,Beta,Delta"},
    {"catalog.xml", "catalog/magazine/title/.", "0|Gamma"},
    {"mixed.xml", "root/Item", "0|upper"},
    {"mixed.xml", "root/p:item/@p:kind", "0|x"},
    {"mixed.xml", "root/p:item/text()", "0|first"},
    {"mixed.xml", "root/node()", "0|first,plain,upper,"},
    {"mixed.xml", "//deep/deep", "0|,bottom"},
    // Unions merge in document order.
    {"catalog.xml", "catalog/book/title | catalog/magazine/title", "0|Alpha,Beta,Gamma,Delta"},
    {"catalog.xml", "count(//title | //price)", "0|8"},
    // Axes the tokenizer accepts.
    {"catalog.xml", "catalog/book/note/../title", "0|Beta"},
    {"catalog.xml", "//price/parent::magazine/title", "0|Gamma"},
    {"catalog.xml", "catalog/magazine/price/ancestor::*/title", "0|Gamma"},
    {"mixed.xml", "root/deep/deep/deep/ancestor-or-self::deep", "0|,,bottom"},
    {"catalog.xml", "catalog/descendant::price", "0|10,25.5,4,7"},
    {"catalog.xml", "catalog/book/self::book/title", "0|Alpha,Beta,Delta"},
    {"catalog.xml", "catalog/book/note/following::title", "0|Gamma,Delta"},
    {"catalog.xml", "catalog/magazine/preceding::title", "0|Alpha,Beta"},
    {"mixed.xml", "root/Item/preceding::item", "0|plain"},
    {"mixed.xml", "root/item/following-sibling::Item", "-15105|"},
    // Predicates: numbers, attributes, strings, booleans.
    {"catalog.xml", "catalog/book[2]/title", "0|Beta"},
    {"catalog.xml", "catalog/book[position() = 2]/title", "0|Beta"},
    {"catalog.xml", "catalog/*[last()]/title", "0|Delta"},
    {"catalog.xml", "catalog/book[@lang]/title", "0|Alpha,Delta"},
    {"catalog.xml", "catalog/book[@lang='de']/title", "0|Delta"},
    {"catalog.xml", "catalog/book[title='Beta']/price", "0|25.5"},
    {"catalog.xml", "catalog/book[price > 9]/title", "0|Alpha,Beta"},
    {"catalog.xml", "catalog/book[true()]/title", "0|Alpha,Beta,Delta"},
    {"catalog.xml", "catalog/book[false()]/title", "0|"},
    {"catalog.xml", "//book[note]/@id", "0|b2"},
    {"catalog.xml", "//book[@id='b2']/note", "0|old"},
    // Functions and comparisons over node sets.
    {"catalog.xml", "count(catalog/book)", "0|3"},
    {"catalog.xml", "count(//price[. > 5])", "0|3"},
    {"catalog.xml", "sum(catalog/book/price)", "0|42.5"},
    {"catalog.xml", "string(catalog/book/title)", "0|Alpha"},
    {"catalog.xml", "name(catalog/*[3])", "0|magazine"},
    {"catalog.xml", "catalog/book/price = 7", "0|true"},
    {"catalog.xml", "catalog/book/price > 30", "0|false"},
    {"catalog.xml", "catalog/book/@id = 'b3'", "0|true"},
    {"catalog.xml", "catalog/book[1]/title != 'Alpha'", "0|false"},
    // Expressions without paths.
    {"catalog.xml", "1 + 2 * 3", "0|7"},
    {"catalog.xml", "concat('a','b')", "0|ab"},
    {"catalog.xml", "1 div 0", "0|Infinity"},
    {"catalog.xml", "substring('12345', 2)", "0|2345"},
    {"catalog.xml", "true() < '5'", "0|true"},
    {"catalog.xml", "1 +", "-15105|"},
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
