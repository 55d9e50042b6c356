// The plug-in library exports exactly its entry points, constants and the comparison table.
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "CommandRunner.h"

namespace {

TEST(ExportedSymbolsTest, LibraryExportsExactlyTheInterface) {
  const TestCommand::Outcome outcome =
      TestCommand::run("nm", {"-D", "--defined-only", XMLPLUGIN_PATH});
  ASSERT_EQ(outcome.m_Exit, 0) << outcome.m_Err;
  std::set<std::string> exported;
  std::istringstream lines(outcome.m_Out);
  std::string address, kind, name;
  while (lines >> address >> kind >> name) {
    exported.insert(name);
  }
  const std::set<std::string> expected = {
      "createPlugin",
      "destroyPlugin",
      "XML_PLUGIN_NAME",
      "XML_PLUGIN_EXPRESSION_XMLVALUE",
      "XML_PLUGIN_EXPRESSION_XMLVALUES",
      "XML_PLUGIN_PROPERTY_FILE",
      "XML_PLUGIN_PROPERTY_XPATH",
      "XML_PLUGIN_PROPERTY_MUSTEXIST",
      "XML_PLUGIN_ERROR_UNSPECIFIED_FILE",
      "XML_PLUGIN_ERROR_UNSPECIFIED_XPATH",
      "XML_PLUGIN_ERROR_XPATH_DOES_NOT_EXIST",
      "XML_PLUGIN_ERROR_XPATH_DOES_NOT_MATCH_ONE_VALUE",
      "XML_PLUGIN_ERROR_XPATH_PARSER_ERROR",
      "XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR",
      "XML_PLUGIN_ERROR_XPATH_ARGUMENTS_TYPE_ERROR",
      "XML_PLUGIN_ERROR_XPATH_WRONG_ROOT",
      "XML_PLUGIN_ERROR_XPATH_WRONG_MID",
      "XML_PLUGIN_ERROR_XPATH_WRONG_LEAF",
      "XML_PLUGIN_ERROR_UNABLE_TO_PARSE_XML_FILE",
      "XML_PLUGIN_ERROR_XPATH_NOT_FOUND",
      "XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION",
      "XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION",
      "XML_PLUGIN_ERROR_XPATH_UNABLE_TO_EVAL_EXPRESSION",
      "_ZN9XmlPlugin21XPathLogicalEvaluator9tabArithmE",
  };
  EXPECT_EQ(exported, expected);
}

}  // namespace
