// Test helpers: typed expression values written as short texts.
//
//   "5", "-2.5"           ordinary numbers          "-0"        negative zero
//   "NaN", "Infinity", "-Infinity"                  special numbers (value 0.0)
//   "true()", "false()"   booleans                  "'abc'"     a string ('5' stays a string)
//   "{a,7}", "{}"         a node set whose items carry those string values
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "XPathArgument.h"
#include "XPathOutputElement.h"

namespace TestValues {

// A node-set value that owns its items.
class NodeSetValue : public XmlPlugin::XPathArgument {
 public:
  NodeSetValue() { setDataType(XmlPlugin::NodeSetType); }

  void addValue(const std::wstring& i_Value) { add(String(i_Value), nullptr); }
  // An item that stands for a node: its string value comes from the node's content.
  void addNode(Node* i_pNode) { add(String(), i_pNode); }

 private:
  void add(const String& i_Value, Node* i_pNode) {
    auto* pItem = new XmlPlugin::XPathOutputElement;
    pItem->m_Value = i_Value;
    pItem->m_Node = i_pNode;
    m_OutputNodes.push_back(pItem);
  }
};

inline std::unique_ptr<XmlPlugin::XPathExpression> special(XmlPlugin::LimitType i_Kind) {
  auto value = std::make_unique<XmlPlugin::XPathArgument>(0.0);
  value->setNumbType(i_Kind);
  return value;
}

inline std::unique_ptr<XmlPlugin::XPathExpression> makeValue(const std::wstring& i_Text) {
  using namespace XmlPlugin;
  if (i_Text == L"NaN") {
    return special(NaN);
  }
  if (i_Text == L"Infinity") {
    return special(Infinity);
  }
  if (i_Text == L"-Infinity") {
    return special(NInfinity);
  }
  if (i_Text == L"true()" || i_Text == L"false()") {
    auto value = std::make_unique<XPathArgument>(i_Text == L"true()" ? 1.0 : 0.0);
    value->setDataType(BooleanType);
    return value;
  }
  if (i_Text.front() == L'\'') {
    auto value = std::make_unique<XPathArgument>(String(i_Text));
    value->setDataType(StringType);
    return value;
  }
  if (i_Text.front() == L'{') {
    auto value = std::make_unique<NodeSetValue>();
    std::wstring item;
    for (size_t i = 1; i < i_Text.size() && i_Text != L"{}"; ++i) {
      if (i_Text[i] == L',' || i_Text[i] == L'}') {
        value->addValue(item);
        item.clear();
      } else {
        item += i_Text[i];
      }
    }
    return value;
  }
  auto value = std::make_unique<XPathArgument>(std::stod(i_Text));
  value->setNegativeZero(i_Text == L"-0");
  return value;
}

}  // namespace TestValues
