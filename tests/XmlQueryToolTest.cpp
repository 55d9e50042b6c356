// xmlquery end to end: the tool loads the built plug-in with dlopen and is run as a
// subprocess, single-shot and in batch mode.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "CommandRunner.h"
#include "TestXml.h"

namespace {

const std::string FRAME_DATA = TEST_DATA_DIR "/frame/";
const std::string TWINS = FRAME_DATA + "twins.xml";
const std::string WRONG = "error -15105 XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION\n";
const std::string UNREADABLE = "error -15103 XML_PLUGIN_ERROR_UNABLE_TO_PARSE_XML_FILE\n";
const std::string MISSING = "error -15002 XML_PLUGIN_ERROR_XPATH_DOES_NOT_EXIST\n";

TestCommand::Outcome xmlquery(const std::vector<std::string>& i_Arguments,
                              const std::string& i_Input = "") {
  return TestCommand::run(XMLQUERY_PATH, i_Arguments, i_Input);
}

struct Row {
  std::vector<std::string> m_Arguments;
  int m_Exit;
  std::string m_Out;      // exact standard output
  std::string m_Err;      // expected at the start of standard error, or all of it; "": none
  std::string m_In = "";  // standard input
};

void expectRows(const std::vector<Row>& i_Rows, bool i_WholeErr = false) {
  for (const Row& row : i_Rows) {
    const TestCommand::Outcome outcome = xmlquery(row.m_Arguments, row.m_In);
    const std::string shown = testing::PrintToString(row.m_Arguments);
    EXPECT_EQ(outcome.m_Exit, row.m_Exit) << shown << "\n" << outcome.m_Err;
    EXPECT_EQ(outcome.m_Out, row.m_Out) << shown;
    const bool whole = i_WholeErr || row.m_Err.empty();
    EXPECT_EQ(whole ? outcome.m_Err : outcome.m_Err.substr(0, row.m_Err.size()), row.m_Err)
        << shown;
  }
}

TEST(XmlQueryToolTest, UsageAndOptions) {
  const TestCommand::Outcome help = xmlquery({"--help"});
  EXPECT_EQ(help.m_Exit, 0);
  EXPECT_EQ(help.m_Out.rfind("usage: xmlquery", 0), 0u) << help.m_Out;
  EXPECT_EQ(xmlquery({"-h"}).m_Out, help.m_Out);
  const std::string unicode = FRAME_DATA + "unicode.xml";
  const std::string explainUsage = "xmlquery: --explain takes one FILE and XPATH";
  const std::string names = TWINS + "\n\n" + unicode + "\n";  // file names on standard input
  const std::string both = TWINS + ":1\n" + unicode + ":0\n";
  // clang-format off
  expectRows({
      {{}, 2, "", "xmlquery: expected FILE and XPATH"},
      {{TWINS}, 2, "", "xmlquery: expected FILE and XPATH"},
      {{"--trace", "4", TWINS, "/a"}, 2, "", "xmlquery: --trace needs a level"},
      {{TWINS, "/a", "--trace"}, 2, "", "xmlquery: --trace needs a level"},
      {{"--frobnicate", TWINS, "/a"}, 2, "", "xmlquery: unknown option --frobnicate"},
      {{"--batch", "a", "b"}, 2, "", "xmlquery: --batch takes at most one input file"},
      {{"--batch", "--scalar"}, 2, "", "xmlquery: --batch takes its options"},
      {{"--batch", "--empty-exit"}, 2, "", "xmlquery: --batch takes its options"},
      {{"--batch", "/nonexistent/requests.jsonl"}, 2, "", "xmlquery: cannot read"},
      {{"--plugin", "/nonexistent/libXmlPlugin.so", TWINS, "/a"}, 1, "",
       "xmlquery: cannot load the plug-in"},
      {{"--explain", TWINS}, 2, "", explainUsage},
      {{"--explain", TWINS, TWINS, "/a"}, 2, "", explainUsage},
      {{"--explain", "--scalar", TWINS, "/a"}, 2, "", explainUsage},
      {{"--lint"}, 2, "", "xmlquery: --lint takes one XPATH"},
      {{"--version"}, 0, "xmlquery " XMLPLUGIN_VERSION "\n", ""},
      {{TWINS, unicode, "/root/single"}, 0, TWINS + ":only\n", ""},
      {{TWINS, TWINS, "count(/root/item)"}, 0, TWINS + ":2\n" + TWINS + ":2\n", ""},
      {{"--json", TWINS, unicode, "/root/single"}, 0,
       TWINS + ":{\"code\":0,\"values\":[\"only\"]}\n" + unicode + ":{\"code\":0,\"values\":[]}\n",
       ""},
      {{"--empty-exit", TWINS, "/root/none"}, 3, "", ""},
      {{"--empty-exit", "--scalar", TWINS, "/root/none"}, 3, "\n", ""},
      {{"--empty-exit", TWINS, unicode, "/root/single"}, 0, TWINS + ":only\n", ""},
      {{"--empty-exit", "--must-exist", TWINS, "/root/none"}, 1, "", MISSING},
      {{"--stdin", "count(/root/single)"}, 0, both, "", names},
      {{"-", "count(/root/single)"}, 0, both, "", names},
      {{"-", "count(/root/single)"}, 0, "1\n", "", TWINS + "\n"},
      {{"--stdin", "/root"}, 2, "", "xmlquery: no FILE names on standard input\n"},
  });
  // clang-format on
}

// Single queries; location paths and expressions over tests/data/paths, answered by the loaded
// plug-in.
TEST(XmlQueryToolTest, SingleQueries) {
  const std::string catalog = TEST_DATA_DIR "/paths/catalog.xml";
  const std::string mixed = TEST_DATA_DIR "/paths/mixed.xml";
  // clang-format off
  expectRows({
      {{TWINS, "/root/item"}, 0, "same\nsame\n", ""}, {{TWINS, "/root/none"}, 0, "", ""},
      {{"--scalar", TWINS, "/root/single"}, 0, "only\n", ""}, {{"--", TWINS, "-1"}, 0, "-1\n", ""},
      {{"--json", "--scalar", TWINS, "/root/single"}, 0, "{\"code\":0,\"value\":\"only\"}\n", ""},
      {{"--json", TWINS, "/root/item"}, 0, "{\"code\":0,\"values\":[\"same\",\"same\"]}\n", ""},
      {{FRAME_DATA + "unicode.xml", "/text"}, 0, "h\xc3\xa9llo \xe2\x82\xac \xf0\x9f\x98\x80\n",
       ""},
      {{"--scalar", TWINS, "/root/item"}, 1, "",
       "error -15003 XML_PLUGIN_ERROR_XPATH_DOES_NOT_MATCH_ONE_VALUE\n"},
      {{"--must-exist", TWINS, "/root/none"}, 1, "", MISSING},
      {{FRAME_DATA + "broken.xml", "/root"}, 1, "", UNREADABLE}, {{TWINS, "/root/("}, 1, "", WRONG},
      {{"--json", FRAME_DATA + "missing.xml", "/a"}, 1, "{\"code\":-15103,\"values\":[]}\n",
       UNREADABLE},
      {{catalog, "child::catalog/child::book/title"}, 0, "Alpha\nBeta\nDelta\n", ""},
      {{mixed, "root/p:item/@p:kind"}, 0, "x\n", ""}, {{mixed, "//deep/deep"}, 0, "\nbottom\n", ""},
      {{mixed, "root/node()"}, 0, "first\nplain\nupper\n\n", ""},
      {{catalog, "count(//title | //price)"}, 0, "8\n", ""},
      {{catalog, "sum(catalog/book/price)"}, 0, "42.5\n", ""},
      {{catalog, "catalog/book[price > 9]/title"}, 0, "Alpha\nBeta\n", ""},
      {{catalog, "name(catalog/*[3])"}, 0, "magazine\n", ""},
      {{catalog, "catalog/book/price = 7"}, 0, "true\n", ""},
      {{catalog, "catalog/book[1]/title != 'Alpha'"}, 0, "false\n", ""},
  });
  // clang-format on
}

// A level that is not 0 to 3 is ignored with one warning, not read as "everything" or "off".
TEST(XmlQueryToolTest, TraceLevelOutsideTheLevelsIsIgnored) {
  for (const std::string level : {"9", "abc", "-1", "12"}) {
    const TestCommand::Outcome outcome = TestCommand::run(
        "env", {"XMLHOST_TRACE_LEVEL=" + level, XMLQUERY_PATH, TWINS, "/root/single"});
    EXPECT_EQ(outcome.m_Exit, 0) << level;
    EXPECT_EQ(outcome.m_Out, "only\n") << level;
    EXPECT_EQ(outcome.m_Err,
              "XMLHOST_TRACE_LEVEL=" + level + " ignored: the trace level is 0, 1, 2 or 3\n")
        << level;
  }
}

// Every -15105 and -15103 says where and why, after the error line.
TEST(XmlQueryToolTest, ErrorsSayWhy) {
  TestXml::TempFile malformed("<a>\n  <b></a>");
  TestXml::TempFile entity("<!DOCTYPE a [<!ENTITY x 'y'>]>\n<a>&x;</a>");
  TestXml::TempFile large("");
  ASSERT_EQ(truncate(large.path().c_str(), 65 << 20), 0);  // sparse: nothing is written
  const std::string missing = FRAME_DATA + "missing.xml";
  const std::string parserError = "error -15004 XML_PLUGIN_ERROR_XPATH_PARSER_ERROR\n";
  const auto fileError = [](const std::string& i_Path, const std::string& i_Why) {
    return UNREADABLE + "XML file " + i_Path + ": " + i_Why + "\n";
  };
  // clang-format off
  std::vector<Row> rows = {
      {{TWINS, "count(/root/item) + cout (b)"}, 1, "",
       WRONG + "XPath text rejected at column 21: unknown function `cout`\n"
               "  count(/root/item) + cout (b)\n"
               "                      ^\n"},
      {{TWINS, "/root[@a='" + std::string(40, 'x') + "'][1]]"}, 1, "",
       WRONG + "XPath text rejected at column 56: unbalanced bracket: `]` closes nothing\n"
               "  ...xxxxxxxxxxxxxxxxxxxxxxxxx'][1]]\n"
               "                                   ^\n"},
      {{TWINS, "translate('a','a','b')"}, 1, "",
       parserError + "function `translate` is not supported\n"},
      {{TWINS, "/root[local-name()='root']"}, 0, "",
       "warning: function `local-name` is not supported\n"},
      {{TWINS, "substring('abc')"}, 1, "", parserError + "`substring` cannot take 1 argument\n"},
      {{missing, "/a"}, 1, "", fileError(missing, "not found")},
      {{malformed.path(), "/a"}, 1, "",
       fileError(malformed.path(), "not well-formed at line 2 column 8: mismatched tag")},
      {{entity.path(), "/a"}, 1, "",
       fileError(entity.path(), "refused at line 1: entity declarations are not allowed: x")},
      {{large.path(), "/a"}, 1, "", fileError(large.path(), "file larger than 67108864 bytes")},
      {{TWINS, missing, "/root/single"}, 1, TWINS + ":only\n",
       missing + ":" + UNREADABLE + missing + ":XML file " + missing + ": not found\n"},
  };
  // clang-format on
  TestXml::TempFile locked("<a/>");
  chmod(locked.path().c_str(), 0);
  if (geteuid() != 0) {  // root reads it anyway
    rows.push_back({{locked.path(), "/a"},
                    1,
                    "",
                    fileError(locked.path(), "cannot open file: Permission denied")});
  }
  expectRows(rows, true);
}

TEST(XmlQueryToolTest, BatchAnswersEveryLineInOrder) {
  const std::string twins = "\"file\": \"" + TWINS + "\"";
  const std::string value = "{\"type\": \"XmlValue\", ";
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"{\"type\": \"XmlValue\"}", "{\"code\":-15000,\"value\":\"\"}"},
      {"{\"type\": \"xmlvalue\", " + twins + ", \"xpath\": \"/root\"}", "{\"code\":-10008}"},
      {"{\"file\": \"x.xml\"}", "{\"code\":-101}"},
      {"{\"type\": \"XmlValues\", " + twins + ", \"xpath\": \"/root/item\"}",
       "{\"code\":0,\"values\":[\"same\",\"same\"]}"},
      {value + twins + ", \"xpath\": \"/root/none\", \"mustExist\": \"true\"}",
       "{\"code\":-15002,\"value\":\"\"}"},
      {value + "\"file\": \"" + FRAME_DATA + "unicode.xml\", \"xpath\": \"/text\"}",
       "{\"code\":0,\"value\":\"h\xc3\xa9llo \xe2\x82\xac \xf0\x9f\x98\x80\"}"},
      {"not json", "{\"error\":\"request is not valid JSON\"}"},
      {"[\"XmlValue\"]", "{\"error\":\"request is not a JSON object\"}"},
      {"{\"type\": 1}", "{\"error\":\"member \\\"type\\\" is not a string\"}"},
      {value + "\"xpath\": null}", "{\"error\":\"member \\\"xpath\\\" is not a string\"}"},
  };
  std::string input = "\n";  // blank lines are not requests
  std::string expected;
  for (const auto& row : rows) {
    input += row.first + "\n";
    expected += row.second + "\n";
  }
  const TestCommand::Outcome outcome = xmlquery({"--batch"}, input);
  EXPECT_EQ(outcome.m_Exit, 0) << outcome.m_Err;
  EXPECT_EQ(outcome.m_Out, expected);
}

// Writes one request at a time and waits for its answer, so the document can be changed
// between two requests: the plug-in keeps the tree it loaded first.
TEST(XmlQueryToolTest, BatchFlushesEachAnswerAndKeepsItsCache) {
  // A child that ends early must fail the test, not kill the test program with SIGPIPE.
  const sighandler_t previousHandler = signal(SIGPIPE, SIG_IGN);
  TestXml::TempFile document("<a><b>before</b></a>");
  TestXml::TempFile output("", ".out");
  const std::string command =
      TestCommand::quote(XMLQUERY_PATH) + " --batch >" + TestCommand::quote(output.path());
  FILE* pRequests = popen(command.c_str(), "w");
  ASSERT_NE(pRequests, nullptr);
  const std::string request =
      "{\"type\": \"XmlValue\", \"file\": \"" + document.path() + "\", \"xpath\": \"/a/b\"}\n";
  const auto answers = [&output]() {
    std::ostringstream text;
    text << std::ifstream(output.path()).rdbuf();
    return text.str();
  };
  fputs(request.c_str(), pRequests);
  fflush(pRequests);
  for (int wait = 0; wait < 200 && answers().empty(); ++wait) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  std::ofstream(document.path()) << "<a><b>after</b></a>";
  fputs(request.c_str(), pRequests);
  EXPECT_EQ(pclose(pRequests), 0);
  EXPECT_EQ(answers(), "{\"code\":0,\"value\":\"before\"}\n{\"code\":0,\"value\":\"before\"}\n");
  signal(SIGPIPE, previousHandler);
}

}  // namespace
