// The document cache, one parse of a file, and the sink's trace records.
#include "XmlCache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "TestTrace.h"
#include "XmlFileParser.h"
#include "XmlNodeSink.h"

using namespace XmlPlugin;

namespace {

using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

const std::string EVICTED = "3 XmlCache::getXmlTree: Evicted the tree of the XML file ";

// Runs each test in a fresh temporary directory, so that relative names can be used.
class XmlCacheTest : public testing::Test {
 protected:
  void SetUp() override {
    XmlCache::cleanup();
    char pattern[] = "/tmp/xmlcachetestXXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    m_Directory = pattern;
    char previous[4096];
    ASSERT_NE(getcwd(previous, sizeof(previous)), nullptr);
    m_Previous = previous;
    ASSERT_EQ(chdir(m_Directory.c_str()), 0);
  }
  void TearDown() override {
    XmlCache::cleanup();
    unsetenv("XMLPLUGIN_CACHE_MAX_MB");
    EXPECT_EQ(chdir(m_Previous.c_str()), 0);
    for (const std::string& name : m_Written) {
      std::remove((m_Directory + "/" + name).c_str());
    }
    rmdir(m_Directory.c_str());
  }

  void write(const std::string& i_Name, const std::string& i_Xml) {
    std::ofstream(i_Name) << i_Xml;
    m_Written.push_back(i_Name);
  }

  // Starts a new cache under the budget.
  static void budget(const char* i_MegaBytes) {
    setenv("XMLPLUGIN_CACHE_MAX_MB", i_MegaBytes, 1);
    XmlCache::cleanup();
  }

  // The root element's name, or a code.
  static std::string rootOf(const char* i_Name) {
    const Node* pTree = nullptr;
    const TErrorCode result = XmlCache::get()->getXmlTree(String(i_Name), pTree);
    return result != 0        ? std::to_string(result)
           : pTree == nullptr ? "null"
                              : pTree->m_Name.toNarrow();
  }

  static const Node* treeOf(const char* i_Name) {
    const Node* pTree = nullptr;
    XmlCache::get()->getXmlTree(String(i_Name), pTree);
    return pTree;
  }

  std::string m_Directory;
  std::string m_Previous;
  std::vector<std::string> m_Written;
};

// Each name is loaded once until a cleanup; a failure is not kept.
TEST_F(XmlCacheTest, LoadsEachNameOnceUntilCleanup) {
  write("a.xml", "<first/>");
  const Node* pTree = treeOf("a.xml");
  ASSERT_NE(pTree, nullptr);
  write("a.xml", "<second/>");
  EXPECT_EQ(treeOf("a.xml"), pTree);
  EXPECT_EQ(rootOf("a.xml"), "first");
  // Another spelling of the changed file is another file, read now.
  EXPECT_NE(treeOf("./a.xml"), pTree);
  EXPECT_EQ(rootOf("./a.xml"), "second");
  EXPECT_EQ(XmlCache::get()->getTreeCount(), 2u);
  write("a.xml", "<third/>");
  XmlCache::cleanup();
  XmlCache::cleanup();
  EXPECT_EQ(rootOf("a.xml"), "third");

  EXPECT_EQ(rootOf("late.xml"), "-15103");
  write("late.xml", "<late/>");
  EXPECT_EQ(rootOf("late.xml"), "late");
  write("bad.xml", "<bad>");
  EXPECT_EQ(rootOf("bad.xml"), "-15103");
  write("bad.xml", "<good/>");
  EXPECT_EQ(rootOf("bad.xml"), "good");
}

TEST_F(XmlCacheTest, SpellingsOfOneFileShareOneTree) {
  write("a.xml", "<a><b>text</b></a>");
  ASSERT_EQ(mkdir("sub", 0700), 0);
  ASSERT_EQ(symlink("a.xml", "link.xml"), 0);
  m_Written.insert(m_Written.end(), {"link.xml", "sub"});
  const Node* pTree = treeOf("a.xml");
  ASSERT_NE(pTree, nullptr);
  const size_t bytes = XmlCache::get()->getHeldBytes();
  EXPECT_GT(bytes, 0u);
  const std::vector<std::string> spellings = {"./a.xml", "sub/../a.xml", ".//a.xml", "link.xml",
                                              m_Directory + "/a.xml"};
  for (const std::string& spelling : spellings) {
    EXPECT_EQ(treeOf(spelling.c_str()), pTree) << spelling;
  }
  EXPECT_EQ(XmlCache::get()->getTreeCount(), 1u);
  EXPECT_EQ(XmlCache::get()->getHeldBytes(), bytes);
  // Each spelling is still an entry of its own: a change is seen by new spellings only.
  write("a.xml", "<changed/>");
  EXPECT_EQ(rootOf("link.xml"), "a");
  EXPECT_EQ(rootOf("sub/./../a.xml"), "changed");
  EXPECT_EQ(XmlCache::get()->getTreeCount(), 2u);
}

// The parser reports its status; the sink hands over the last tree it was given, once.
TEST_F(XmlCacheTest, ParserReportsStatusAndSinkHandsOverTheLastTree) {
  write("ok.xml", "<ok/>");
  XmlNodeSink sink;
  EXPECT_EQ(XmlFileParser(String("ok.xml"), sink).getStatus(), 0);
  Node* pTree = sink.getRootNode();
  ASSERT_NE(pTree, nullptr);
  EXPECT_EQ(sink.getRootNode(), nullptr);  // handed over once
  delete pTree;
  EXPECT_EQ(XmlFileParser(String("none.xml"), sink).getStatus(), XmlFileParser::FILE_MISSING);
  write("broken.xml", "<a><b></a>");
  EXPECT_NE(XmlFileParser(String("broken.xml"), sink).getStatus(), 0);
  sink.onNodeTree(new Node(ElementNode, String("first"), 0, nullptr, nullptr));
  sink.onNodeTree(new Node(ElementNode, String("second"), 0, nullptr, nullptr));
  std::unique_ptr<Node> tree(sink.getRootNode());
  ASSERT_NE(tree, nullptr);
  EXPECT_EQ(tree->m_Name.toNarrow(), "second");
  sink.onNodeTree(new Node(ElementNode, String("dropped"), 0, nullptr, nullptr));
}

TEST_F(XmlCacheTest, SinkTracesTheReaderMessages) {
  TraceCollector collector(3);
  XmlNodeSink sink;
  EXPECT_EQ(sink.onWarning(String("odd"), 3), 0);
  EXPECT_EQ(sink.onError(String("bad"), 4), 0);
  EXPECT_EQ(sink.onCriticalError(String("fatal"), 5), 0);
  const std::vector<std::string> expected = {
      "2 XmlNodeSink::onWarning: Warning parsing XML file at line 3 message is: odd",
      "1 XmlNodeSink::onError: Error parsing XML file at line 4 message is: bad",
      "1 XmlNodeSink::onCriticalError: Critical error parsing XML file at line 5 message is: "
      "fatal",
  };
  EXPECT_EQ(collector.lines(), expected);
  write("broken.xml", "<a>\n<b>\n</a>");
  EXPECT_EQ(rootOf("broken.xml"), "-15103");
  EXPECT_THAT(collector.lines(),
              Contains(HasSubstr("rror parsing XML file at line 3 message is: ")));
}

// A load is traced with the tree's size; a budget that is not a number bounds nothing.
TEST_F(XmlCacheTest, LoadIsTracedAndABudgetThatIsNotANumberBoundsNothing) {
  TraceCollector collector(3);
  budget("lots");
  write("s.xml", "<a><b>t</b><c/></a>");
  EXPECT_EQ(rootOf("s.xml"), "a");
  const std::vector<std::string> expected = {
      "1 XmlCache::XmlCache: XMLPLUGIN_CACHE_MAX_MB is not a number of MiB: [lots]; the cache is "
      "not bounded",
      "3 XmlCache::getXmlTree: Loaded the XML file s.xml: " +
          std::to_string(XmlCache::get()->getHeldBytes()) + " bytes, 4 nodes"};
  EXPECT_EQ(collector.lines(), expected);
}

TEST_F(XmlCacheTest, BudgetKeepsTheHeldBytesWithinIt) {
  // Each tree of these small files takes a few KiB: about two of them fit in 10 KiB.
  const size_t budgetBytes = 10 * 1024;
  budget("0.009765625");
  for (int round = 0; round < 3; ++round) {
    for (int file = 0; file < 20; ++file) {
      const std::string name = "f" + std::to_string(file) + ".xml";
      if (round == 0) {
        write(name, "<r" + std::to_string(file) + "><v>" + std::string(100, 'x') + "</v></r" +
                        std::to_string(file) + ">");
      }
      EXPECT_EQ(rootOf(name.c_str()), "r" + std::to_string(file));
      EXPECT_LE(XmlCache::get()->getHeldBytes(), budgetBytes);
      EXPECT_GE(XmlCache::get()->getTreeCount(), 1u);
    }
  }
}

TEST_F(XmlCacheTest, BudgetEvictsTheLeastRecentlyUsedTree) {
  write("a.xml", "<a/>");
  write("b.xml", "<b/>");
  write("c.xml", "<c/>");
  budget("0.009765625");  // room for two of these trees
  rootOf("a.xml");
  rootOf("b.xml");
  rootOf("a.xml");
  TraceCollector collector(3);
  EXPECT_EQ(rootOf("c.xml"), "c");
  EXPECT_EQ(rootOf("a.xml"), "a");  // still held
  EXPECT_THAT(collector.lines(),
              ElementsAre(_, MatchesRegex(EVICTED + "b.xml \\([0-9]+ bytes\\) "
                                                    "to stay within 10240 bytes.*")));
  // An evicted file is read anew.
  write("b.xml", "<b2/>");
  EXPECT_EQ(rootOf("b.xml"), "b2");
}

TEST_F(XmlCacheTest, TreeLargerThanTheBudgetIsAnsweredThenEvictedFirst) {
  write("big.xml", "<big>" + std::string(4096, 'x') + "</big>");
  write("a.xml", "<a/>");
  write("b.xml", "<b/>");
  budget("0.009765625");
  EXPECT_EQ(rootOf("big.xml"), "big");
  EXPECT_EQ(XmlCache::get()->getTreeCount(), 1u);
  TraceCollector collector(3);
  EXPECT_EQ(rootOf("a.xml"), "a");
  EXPECT_THAT(collector.lines(), ElementsAre(_, MatchesRegex(EVICTED + "big.xml \\(.*")));
  EXPECT_EQ(rootOf("b.xml"), "b");
  EXPECT_EQ(XmlCache::get()->getTreeCount(), 2u);
}

}  // namespace
