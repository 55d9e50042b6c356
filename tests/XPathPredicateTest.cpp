// Predicates: one evaluation per candidate, kept or dropped by the type of its result.
#include "XPathPredicate.h"

#include <gtest/gtest.h>

#include <string>

#include "TestLimits.h"
#include "TestRows.h"
#include "XPathEvaluationContext.h"
#include "XPathStep.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

// "code|name,name" for the children of the root that the predicate keeps; one predicate
// filters twice, and must answer the same both times.
std::string filter(const Node* i_pRoot, const std::string& i_Predicate) {
  const XPathPredicate predicate{String(i_Predicate.c_str())};
  std::string texts[2];
  for (std::string& text : texts) {
    std::list<Node*> nodes;
    XPathStep::getChildrenXmlNodes(i_pRoot, nodes);
    XPathEvaluationContext context;
    text = std::to_string(predicate.fiterNodes(nodes, context)) + "|";
    for (const Node* pNode : nodes) {
      text += (pNode == nodes.front() ? "" : ",") + pNode->m_Name.toNarrow() +
              TestXml::elementText(pNode).toNarrow();
    }
  }
  return texts[0] == texts[1] ? texts[0] : texts[0] + " then " + texts[1];
}

}  // namespace

TEST(XPathPredicateTest, KeepsByResultType) {
  std::unique_ptr<Node> pTree = parseXml("<a><b>1</b><c id='y'>2</c><b id='x'>3</b></a>");
  ASSERT_NE(pTree, nullptr);
  const std::string unsupported = std::to_string(XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION);
  const std::string wrong = std::to_string(XML_PLUGIN_ERROR_XPATH_WRONG_EXPRESSION);
  // clang-format off
  TestRows::expectRows({
      // A number is compared with the overall position among the candidates.
      {"[2]", "0|c2"}, {"[1.5]", "0|"}, {"[5]", "0|"}, {"[position() = 2]", "0|c2"},
      {"[position()=2]", "0|c2"},  // the anchoring form, decided without an evaluation
      {"[position()=4]", "0|"}, {"[last() = 3]", "0|b1,c2,b3"},
      // The evaluation of @id is anchored at the candidate's position among the candidates
      // of its name (1, 1, 2), so the second b finds its own attribute.
      {"[@id]", "0|c2,b3"}, {"[@id = 'x']", "0|b3"}, {"['x']", "0|b1,c2,b3"},
      {"['']", "0|b1,c2,b3"}, {"[1 = 1]", "0|b1,c2,b3"}, {"[1 = 2]", "0|"},
      {"[]", unsupported + "|b1,c2,b3"}, {"[1 +]", wrong + "|"},
  }, [&](const std::string& i_Predicate) { return filter(pTree.get(), i_Predicate); });
  // clang-format on
  EXPECT_EQ(filter(findElement(pTree.get(), L"b"), "[1]"), "0|");  // no candidates
}

TEST(XPathPredicateTest, PredicatesInPaths) {
  std::unique_ptr<Node> pTree =
      parseXml("<a><b id='1'><c>x</c></b><b><c>y</c></b><d><b id='2'><c>z</c></b></d></a>");
  ASSERT_NE(pTree, nullptr);
  // clang-format off
  TestRows::expectRows({
      {"a/b[2]/c", "0|y"}, {"a[position()=1]/b[position()=2]/c", "0|y"},
      {"a/b[position()=3]/c", "0|"}, {"a/b[@id]/c", "0|x"},
      {"a/b[@id][2]/c", "0|"},  // the second predicate numbers the survivors of the first
      {"//b[@id]/c", "0|x,z"}, {"//b[c = 'y']/c", "0|y"}, {"a/b[c = 'y']/c", "0|y"},
      {"a/b[]/c", "0|x,y"},  // a failing predicate leaves the name test only
  }, [&](const std::string& i_Path) { return TestRows::pathValues(pTree.get(), i_Path); });
  // clang-format on
}

// The condition is compiled once per filtering; each candidate's evaluation must see nothing
// of the one before (node sets, converted and computed values, positions).
TEST(XPathPredicateTest, EachCandidateIsJudgedAfresh) {
  std::string xml = "<a>";
  std::string withCountTwoAndVThree = "0|";
  std::string withoutV = "0|";
  std::string withVThree = "0|";
  const auto add = [](std::string& io_List, bool i_Add, const std::string& i_Name) {
    io_List += !i_Add ? "" : io_List.size() > 2 ? "," + i_Name : i_Name;
  };
  for (int i = 1; i <= 300; ++i) {
    const std::string name = "b" + std::to_string(i);
    xml += "<b n='" + name + "'" + (i % 5 == 0 ? "" : " v='" + std::to_string(i % 7) + "'") + ">" +
           repeated("<c/>", i % 3) + "</b>";
    add(withCountTwoAndVThree, i % 3 == 2 && i % 5 != 0 && i % 7 == 3, name);
    add(withVThree, i % 5 != 0 && i % 7 == 3, name);
    add(withoutV, i % 5 == 0, name);
  }
  std::unique_ptr<Node> pTree = parseXml(xml + "</a>");
  ASSERT_NE(pTree, nullptr);
  // clang-format off
  TestRows::expectRows({
      {"a/b[@v = '3' and count(c) = 2]/@n", withCountTwoAndVThree}, {"a/b[not(@v)]/@n", withoutV},
      {"a/b[concat(@v, 'x') = '3x']/@n", withVThree}, {"a/b[position() = 150]/@n", "0|b150"},
      {"a/b[last() - 1]/@n", "0|b299"},
  }, [&](const std::string& i_Path) { return TestRows::pathValues(pTree.get(), i_Path); });
  // clang-format on
}
