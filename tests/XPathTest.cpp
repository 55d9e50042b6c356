// Location-path evaluation through XPath::getValues: steps, axes, unions and ordering.
#include "XPath.h"

#include <gtest/gtest.h>

#include <string>

#include "TestLimits.h"
#include "TestRows.h"
#include "XmlPluginConstants.h"

using namespace XmlPlugin;

namespace {

// Rows {path, "code|owner=text,..." in result order} over the document i_Xml.
void expectRows(const std::string& i_Xml, const std::vector<TestRows::Row>& i_Rows) {
  std::unique_ptr<Node> pTree = parseXml(i_Xml);
  ASSERT_NE(pTree, nullptr) << i_Xml;
  TestRows::expectRows(i_Rows, [&](const std::string& i_Path) {
    return TestRows::pathValues(pTree.get(), i_Path, true);
  });
}

}  // namespace

// Child paths and leaves, deep search, and unions merged in document order.
TEST(XPathTest, ChildPathsDeepSearchAndUnions) {
  EXPECT_EQ(TestRows::pathValues(nullptr, "a/b"), "0|");  // no root
  // clang-format off
  expectRows("<a><b id='1'>one</b><c>two</c><b id='2' k='v'>three<i/>four</b></a>", {
      {"a/b", "0|b=one,b=three"}, {"/a/b", "0|b=one,b=three"}, {"x/b", "0|"}, {"a", "0|a="},
      {"a/*", "0|b=one,c=two,b=three"}, {"a/node()", "0|b=one,c=two,b=three"}, {"a/B", "0|"},
      {"a/b/text()", "0|b=one,b=three"}, {"a/text()", "0|"}, {"a/b/@id", "0|b=1,b=2"},
      {"a/b/attribute::k", "0|b=v"}, {"a/b/@*", "0|b=1,b=2,b=v"}, {"a/b/@missing", "0|"},
      {"a/b/i", "0|i="}, {"a/foo::c", "0|c=two"},
      // The first step's verdict stops only its own output, not its children's.
      {"a[@x]", "0|"}, {"a[@x]/c", "0|c=two"},
      // Texts that are no path for this evaluation.
      {"[1]/a", "-15006|"}, {"//text()", "-15006|"}, {"a/b[1", "-15101|"},
  });
  expectRows("<a><b>1<b>2</b></b><c><d><b>3</b></d></c></a>", {
      {"//b", "0|b=1,b=2,b=3"}, {"//d/b", "0|b=3"}, {"//c/b", "0|"},
      {"//b/text()", "0|b=1,b=2,b=3"}, {"a//b", "0|"},  // only a leading "//" searches in depth
      {"a/b/b", "0|b=2"},
      // Nodes a predicate step excluded in depth (by name or predicate) stay
      // excluded for the later paths of a union: their children give nothing.
      {"//c[@x] | a/b/b", "0|"}, {"a/b/b | //c[@x]", "0|b=2"},
  });
  // After a self step the search below an element goes on with the step after it, and so
  // reaches the children of a's children too.
  expectRows("<r><b><a><b>t</b><c>u</c></a><b><a>v</a></b></b></r>", {{"//a/.", "0|a=,b=t,c=u,a=v"}});
  // "[]" fails also on no candidates, as below an element that holds none.
  expectRows("<a>1</a>", {{"//a[]", "-15106|"}, {"//a[@x]", "0|"}, {"//a[2]", "0|"}});
  expectRows("<a><b x='p'>1</b><c>2</c><b x='q'>3</b></a>", {
      {"a/c | a/b", "0|b=1,c=2,b=3"}, {"a/b|a/b", "0|b=1,b=3"}, {"a/b | x", "0|b=1,b=3"},
      // The first attribute shares its element's number, so it gives way to it.
      {"a/b | a/b/@*", "0|b=1,b=3"}, {"a/b/@* | a/b", "0|b=p,b=q"}, {"| a/c ||", "0|c=2"},
  });
  // clang-format on
}

TEST(XPathTest, Axes) {
  // clang-format off
  expectRows("<r><a><b>1</b><c>2</c><d>3</d></a><e>4</e></r>", {
      {"r/a/c/..", "0|a="}, {"r/a/c/parent::a", "0|a="}, {"r/a/c/parent::x", "0|"},
      {"r/a/c/ancestor::*", "0|r=,a="}, {"r/a/c/ancestor::r", "0|r="},
      {"r/a/c/ancestor::node()", "0|"},  // "node()" is no wildcard here
      {"r/a/c/ancestor-or-self::*", "0|r=,a=,c=2"}, {"r/a/b/../d", "0|d=3"}, {"r/a/.", "0|a="},
      {"r/a/./b", "0|b=1"}, {"r/a/self::a", "0|a="}, {"r/a/self::x", "0|"},
      {"r/descendant::*", "0|a=,b=1,c=2,d=3,e=4"}, {"r/descendant::d", "0|d=3"},
      {"r/descendant-or-self::*", "0|r=,a=,b=1,c=2,d=3,e=4"},
      // The descendant axis also offers the text children.
      {"r/a/b/descendant::*", "0|1="},
      // No name test for the siblings the leaf receives.
      {"r/a/c/following-sibling::x", "0|d=3"}, {"r/a/c/preceding-sibling::*", "0|b=1"},
      // A longer path goes on from the parent of the siblings, not from them.
      {"r/a/c/following-sibling::*/b", "0|b=1"}, {"r/a/d/preceding-sibling::x/c", "0|"},
      {"r/a/c/ancestor::*/e", "0|e=4"}, {"r/a/c/following::*", "0|d=3,e=4"},
      {"r/e/preceding::*", "0|a=,b=1,c=2,d=3"}, {"r/a/c/preceding::*", "0|b=1"},
  });
  // clang-format on
  // A text or comment node that the descendant axis offers is not among its parent's
  // element children: all of them precede it, none follows it.
  expectRows("<r><a>1</a><!--c--><b>2</b>t<c>3</c></r>",
             {{"r/descendant::*/preceding-sibling::*", "0|a=1,b=2,c=3"}});
  expectRows("<r><!--c--><a>1</a></r>", {{"r/descendant::*/following-sibling::*", "0|"}});
  // From g the following axis reaches g's own later sibling and the topmost element's later
  // branches, but not the later siblings of the ancestors in between (h).
  expectRows("<r><a><f><g/><k/></f><h/></a><e/></r>",
             {{"r/a/f/g/following::*", "0|k=,e="}, {"r/a/f/k/preceding::*", "0|g="}});
}

TEST(XPathTest, DeepDocumentsStayWithinTheStack) {
  std::unique_ptr<Node> pTree = parseXml(nested("<x>", "</x>", 2000, ""));
  ASSERT_NE(pTree, nullptr);
  const std::string all = "0|x=" + repeated(",x=", 1999);
  EXPECT_EQ(TestRows::pathValues(pTree.get(), "//x", true), all);
  // Evaluations nested through predicates share the stack.
  EXPECT_EQ(TestRows::pathValues(pTree.get(), "//x[not(x)]", true), "0|x=");
  Node* pBottom = const_cast<Node*>(findElement(pTree.get(), L"x", 1999));
  EXPECT_EQ(TestRows::pathValues(pBottom, "x/ancestor-or-self::*", true), all);
}

TEST(XPathTest, NestingPastTheBoundFails) {
  std::unique_ptr<Node> pTree = parseXml("<a>1</a>");
  ASSERT_NE(pTree, nullptr);
  EXPECT_EQ(TestRows::pathValues(pTree.get(), "a" + repeated("/.", XPATH_MAX_STEP_NESTING), true),
            std::to_string(XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION) + "|");
  EXPECT_EQ(TestRows::pathValues(pTree.get(), "a" + repeated("/.", XPATH_MAX_STEP_NESTING - 4)),
            "0|1");
}
