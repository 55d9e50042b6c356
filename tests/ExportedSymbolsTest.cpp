// The plug-in library exports exactly its entry points (the explain entry too), constants and
// the comparison table.
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "CommandRunner.h"
#include "XmlPlugin/XmlPluginErrors.h"

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
  // clang-format off
  std::set<std::string> expected = {
      "createPlugin", "destroyPlugin", "xmlPluginExplain", "XML_PLUGIN_NAME",
      "XML_PLUGIN_EXPRESSION_XMLVALUE", "XML_PLUGIN_EXPRESSION_XMLVALUES",
      "XML_PLUGIN_PROPERTY_FILE", "XML_PLUGIN_PROPERTY_XPATH", "XML_PLUGIN_PROPERTY_MUSTEXIST",
      "_ZN9XmlPlugin21XPathLogicalEvaluator9tabArithmE",
  };
  // clang-format on
#define XML_PLUGIN_ERROR_NAME(i_Name, i_Value) expected.insert(#i_Name);
  XML_PLUGIN_ERROR_TABLE(XML_PLUGIN_ERROR_NAME)
#undef XML_PLUGIN_ERROR_NAME
  EXPECT_EQ(exported, expected);
}

}  // namespace
