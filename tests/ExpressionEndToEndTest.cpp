// Expressions without location paths, through the host tool and the loaded plug-in.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

namespace {

struct Row {
  const char* m_XPath;
  int m_Code;
  const char* m_Value;
};

std::ostream& operator<<(std::ostream& io_Stream, const Row& i_Row) {
  return io_Stream << "[" << i_Row.m_XPath << "]";
}

const Row kRows[] = {
    {"1 + 2 * 3", 0, "7"},       {"concat('a','b')", 0, "ab"},
    {"1 div 0", 0, "Infinity"},  {"substring('12345', 2)", 0, "2345"},
    {"true() < '5'", 0, "true"}, {"1 +", -15105, ""},
};

std::string writeFile(const std::string& i_Name, const std::string& i_Content) {
  const std::string path = testing::TempDir() + i_Name;
  std::ofstream(path) << i_Content;
  return path;
}

}  // namespace

TEST(ExpressionEndToEndTest, ScalarResultsThroughTheTool) {
  const std::string document = writeFile("expression_end_to_end.xml", "<a><b>1</b></a>\n");
  std::string requests;
  for (const Row& row : kRows) {
    requests +=
        nlohmann::json{{"type", "XmlValue"}, {"file", document}, {"xpath", row.m_XPath}}.dump() +
        "\n";
  }
  const std::string requestFile = writeFile("expression_end_to_end.jsonl", requests);

  const std::string command = std::string(XMLQUERY_PATH) + " --batch " + requestFile;
  FILE* pTool = popen(command.c_str(), "r");
  ASSERT_NE(pTool, nullptr);
  std::string output;
  char buffer[4096];
  for (size_t n; (n = fread(buffer, 1, sizeof buffer, pTool)) > 0;) {
    output.append(buffer, n);
  }
  ASSERT_EQ(pclose(pTool), 0) << output;

  size_t lineStart = 0;
  for (const Row& row : kRows) {
    const size_t lineEnd = output.find('\n', lineStart);
    ASSERT_NE(lineEnd, std::string::npos) << row << " has no response in:\n" << output;
    const nlohmann::json response =
        nlohmann::json::parse(output.substr(lineStart, lineEnd - lineStart));
    lineStart = lineEnd + 1;
    EXPECT_EQ(response.value("code", 1), row.m_Code) << row << " " << response.dump();
    EXPECT_EQ(response.value("value", ""), row.m_Value) << row << " " << response.dump();
  }
}
