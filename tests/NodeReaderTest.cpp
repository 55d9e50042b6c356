#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "TestLimits.h"
#include "TestXml.h"
#include "host/Node.h"
#include "host/NodeReader.h"

namespace {

using TestXml::KeepingSink;
using TestXml::TempFile;

const std::string READER_DATA = std::string(TEST_DATA_DIR) + "/reader/";

// The tree as one line: element name#number[attribute=value#number ...](children),
// 'text'#number, <!--comment-->#number, <?target?>#number.
std::wstring dump(const Node* i_pNode) {
  std::wstring out;
  const std::wstring number = L"#" + std::to_wstring(i_pNode->m_Index);
  switch (i_pNode->getType()) {
    case TextNode:
      return L"'" + i_pNode->m_Name.toWide() + L"'" + number;
    case CommentNode:
      return L"<!--" + i_pNode->m_Name.toWide() + L"-->" + number;
    case ProcessingInstructionNode:
      return L"<?" + i_pNode->m_Name.toWide() + L"?>" + number;
  }
  out = i_pNode->m_Name.toWide() + number;
  const StringMap& attributes = *i_pNode->m_Attributes;
  for (int i = 0; i < attributes.m_Count; ++i) {
    String name, value, order;
    attributes.getEntry(i, name, value);
    EXPECT_EQ(0, attributes.getEntry(name, value, order));
    out += (i == 0 ? L"[" : L" ") + name.toWide() + L"=" + value.toWide() + L"#" + order.toWide();
  }
  out += attributes.m_Count > 0 ? L"]" : L"";
  const std::vector<Node*> children = TestXml::children(i_pNode);
  for (size_t i = 0; i < children.size(); ++i) {
    EXPECT_EQ(i_pNode, children[i]->getParent());
    out += (i == 0 ? L"(" : L" ") + dump(children[i]);
  }
  return out + (children.empty() ? L"" : L")");
}

struct Outcome {
  int32_t status;
  std::wstring tree;  // dump of the tree, or the message of a failure
  int line;           // of the failure
};

Outcome readFile(const std::string& i_Path, uint32_t i_ChunkSize = 0, uint32_t i_MaxSize = 0) {
  KeepingSink sink;
  NodeReader reader(sink);
  reader.m_ChunkSize = i_ChunkSize;
  reader.m_MaxFileSize = i_MaxSize;
  const TErrorCode result = reader.process(String(i_Path.c_str()), 0);
  EXPECT_EQ(reader.m_Status, result);
  if (result != 0) {
    EXPECT_EQ(nullptr, sink.m_Tree) << "no tree on failure";
    EXPECT_EQ(1, sink.m_Messages) << "one report per failure";
    return Outcome{result, sink.m_Message, sink.m_Line};
  }
  EXPECT_EQ(0, sink.m_Messages);
  return Outcome{result, sink.m_Tree ? dump(sink.m_Tree.get()) : L"(no tree)", -1};
}

std::string withAttributes(int i_Count) {
  std::string xml = "<r";
  for (int i = 0; i < i_Count; ++i) {
    xml += " a" + std::to_string(i) + "=''";
  }
  return xml + "/>";
}

struct Row {
  std::string xml;  // a file's path in the rows of files
  int32_t status;
  std::wstring expected;  // tree dump, or the failure message
  int line;
  uint32_t maxSize = 0;  // of a file
};

const Row ROWS[] = {
    // Trees.
    {"<r>&lt;&gt;&amp;&quot;&apos;&#65;&#x42;</r>", 0, L"r#0('<>&\"'AB'#1)", -1},
    {"<r>a<![CDATA[<b>]]>c</r>", 0, L"r#0('a<b>c'#1)", -1},
    {"<r><!--note--><?target data?>t</r>", 0, L"r#0(<!--note-->#1 <?target?>#2 't'#3)", -1},
    {"<r>\n  <a/>\n  <b> x </b>\n</r>\n", 0, L"r#0(a#1 b#2(' x '#3))", -1},
    {"<r id='1' k=\"v\"><a x='y'/>t<b/></r>", 0, L"r#0[id=1#1 k=v#2](a#3[x=y#4] 't'#5 b#6)", -1},
    {"<p:r xmlns:p='u'><p:a/></p:r>", 0, L"p:r#0[xmlns:p=u#1](p:a#2)", -1},
    {"<r>a\r\nb<c/>d</r>", 0, L"r#0('a\nb'#1 c#2 'd'#3)", -1},
    {"<!--before--><?pi?><r/><!--after-->", 0, L"r#0", -1},
    {"<!DOCTYPE r [<!ATTLIST r d CDATA 'x'>]><r/>", 0, L"r#0[d=x#1]", -1},
    {"<r>\xC3\xA9\xF0\x9F\x98\x80</r>", 0, L"r#0('\xE9\x1F600'#1)", -1},
    {nested("<d>", "</d>", NODE_READER_MAX_DEPTH, ""), 0, L"", -1},
    {"<" + std::string(NODE_READER_MAX_NAME_LENGTH, 'n') + "/>", 0, L"", -1},
    {withAttributes(NODE_READER_MAX_ATTRIBUTES), 0, L"", -1},
    // Malformed.
    {"<r>\n<a>\n</r>", NODE_READER_STATUS_MALFORMED, L"mismatched tag", 3},
    {"", NODE_READER_STATUS_MALFORMED, L"no element found", 1},
    {"<r/><r/>", NODE_READER_STATUS_MALFORMED, L"junk after document element", 1},
    {"<r>&e;</r>", NODE_READER_STATUS_MALFORMED, L"undefined entity", 1},
    {"<r>\xFF</r>", NODE_READER_STATUS_MALFORMED, L"not well-formed (invalid token)", 1},
    {"<?xml version='1.0' encoding='x-unknown'?><r/>", NODE_READER_STATUS_MALFORMED,
     L"unknown encoding", 1},
    // Refused.
    {"<!DOCTYPE r [\n<!ENTITY e 'x'>]><r>&e;</r>", NODE_READER_STATUS_REFUSED,
     L"entity declarations are not allowed: e", 2},
    {"<!DOCTYPE r [<!ENTITY % p 'x'>]><r/>", NODE_READER_STATUS_REFUSED,
     L"entity declarations are not allowed: p", 1},
    {"<!DOCTYPE r SYSTEM 'x.dtd'>\n<r>&e;</r>", NODE_READER_STATUS_REFUSED,
     L"reference to an undeclared entity: e", 2},
    {nested("<d>", "</d>", NODE_READER_MAX_DEPTH + 1, ""), NODE_READER_STATUS_REFUSED,
     L"elements nested deeper than 2048 levels", 1},
    {"<" + std::string(NODE_READER_MAX_NAME_LENGTH + 1, 'n') + "/>", NODE_READER_STATUS_REFUSED,
     L"name longer than 4096 characters", 1},
    {withAttributes(NODE_READER_MAX_ATTRIBUTES + 1), NODE_READER_STATUS_REFUSED,
     L"more than 4096 attributes on one element", 1},
};

// Whole, and the short documents also in chunks of 1 to 5 bytes.
TEST(NodeReader, DocumentsGiveTreesOrReportedFailures) {
  for (uint32_t chunk = 0; chunk <= 5; ++chunk) {
    for (const Row& row : ROWS) {
      if (chunk > 0 && row.xml.size() >= 200) {
        continue;
      }
      const TempFile file(row.xml);
      const Outcome outcome = readFile(file.path(), chunk);
      const std::string shown = row.xml.substr(0, 60) + " in chunks of " + std::to_string(chunk);
      EXPECT_EQ(row.status, outcome.status) << shown;
      if (row.status != 0 || !row.expected.empty()) {
        EXPECT_EQ(row.expected, outcome.tree) << shown;
      }
      EXPECT_EQ(row.line, outcome.line) << shown;
    }
  }
}

// Files of the reader's data directory, and files that are not regular or are too large.
TEST(NodeReader, FilesGiveTreesOrReportedFailures) {
  TempFile fifo("", ".fifo");
  unlink(fifo.path().c_str());
  ASSERT_EQ(0, mkfifo(fifo.path().c_str(), 0600));
  TempFile large("<r>0123456789</r>");
  const Row rows[] = {
      {READER_DATA + "latin1.xml", 0, L"r#0[a=\xE9#1]('caf\xE9'#2)", -1},
      {READER_DATA + "utf16.xml", 0, L"r#0[a=\x20AC#1]('\xE9\x1F600'#2)", -1},
      // The external subset would add an attribute if it were read.
      {READER_DATA + "external-dtd.xml", 0, L"r#0", -1},
      {READER_DATA + "external-entity.xml", NODE_READER_STATUS_REFUSED,
       L"entity declarations are not allowed: secret", 3},
      {READER_DATA + "missing.xml", NODE_READER_STATUS_UNREADABLE,
       L"cannot open file: No such file or directory", 0},
      {READER_DATA, NODE_READER_STATUS_REFUSED, L"not a regular file", 0},
      {"/dev/zero", NODE_READER_STATUS_REFUSED, L"not a regular file", 0},
      {fifo.path(), NODE_READER_STATUS_REFUSED, L"not a regular file", 0},
      {large.path(), NODE_READER_STATUS_REFUSED, L"file larger than 10 bytes", 0, 10},
      {large.path(), 0, L"r#0('0123456789'#1)", -1, 17},
  };
  for (const Row& row : rows) {
    const Outcome outcome = readFile(row.xml, 0, row.maxSize);
    EXPECT_EQ(row.status, outcome.status) << row.xml;
    EXPECT_EQ(row.expected, outcome.tree) << row.xml;
    EXPECT_EQ(row.line, outcome.line) << row.xml;
  }
}

TEST(NodeReader, OptionsKeepBlankTextTrimAndSkipComments) {
  TempFile file("<r> <!--c--> <a> t </a></r>");
  KeepingSink sink;
  NodeReader reader(sink);
  reader.m_KeepBlankText = 1;
  reader.m_TrimText = 1;
  reader.m_SkipComments = 1;
  ASSERT_EQ(0, reader.process(String(file.path().c_str()), 0));
  EXPECT_EQ(L"r#0(''#1 a#2('t'#3))", dump(sink.m_Tree.get()));
}

TEST(NodeReader, RecurringShortValuesAreSharedAmongManyDistinctOnes) {
  std::string xml = "<r>";
  for (int i = 0; i < 3000; ++i) {
    xml += "<e n='" + std::to_string(i) + "' l='en'>" + std::to_string(i % 7) + "</e>";
  }
  std::unique_ptr<Node> pTree = parseXml(xml + "</r>");
  ASSERT_NE(nullptr, pTree);
  const std::vector<Node*> elements = TestXml::children(pTree.get());
  ASSERT_EQ(3000u, elements.size());
  std::vector<String> languages;
  for (int i = 0; i < 3000; ++i) {
    String number, language, order;
    ASSERT_EQ(0, elements[i]->m_Attributes->getEntry(String(L"n"), number, order));
    ASSERT_EQ(0, elements[i]->m_Attributes->getEntry(String(L"l"), language, order));
    EXPECT_EQ(std::to_wstring(i), number.toWide());
    EXPECT_EQ(L"en", language.toWide());
    EXPECT_EQ(std::to_wstring(i % 7), elementText(elements[i]).toWide()) << i;
    languages.push_back(language);
  }
  EXPECT_EQ(languages[0].c_str(), languages[1].c_str()) << "a recurring value is shared";
}

TEST(NodeReader, TreesAreCompact) {
  std::unique_ptr<Node> pTree = parseXml("<r><x/><x a='1'>t</x></r>");
  ASSERT_NE(nullptr, pTree);
  const Node* pFirst = findElement(pTree.get(), L"x", 0);
  const Node* pSecond = findElement(pTree.get(), L"x", 1);
  EXPECT_EQ(pFirst->m_Name.c_str(), pSecond->m_Name.c_str()) << "names are shared";
  EXPECT_EQ(pFirst->m_Attributes, pTree->m_Attributes) << "one empty map for all";
  const NodeList* pChildren = nullptr;
  ASSERT_EQ(0, pFirst->getChildren(&pChildren));
  EXPECT_EQ(nullptr, pChildren);
  EXPECT_STREQ(L"t", elementText(pSecond).c_str());
  EXPECT_EQ(nullptr, findElement(pTree.get(), L"x", 2));
  // A copy is shallow and may be deleted on its own.
  std::unique_ptr<Node> pCopy(new Node(*pTree));
  EXPECT_EQ(TestXml::children(pTree.get()), TestXml::children(pCopy.get()));
}

}  // namespace
