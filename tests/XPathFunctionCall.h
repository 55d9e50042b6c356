// Test helpers: values written as short texts, and operator or function calls run the way
// the parser runs them.
//
//   "5", "'abc'", "'12'"   operands as the tokenizer makes them ('12' is a number)
//   "-0"                   the number 0 with the negative-zero flag
//   "NaN", "Infinity", "-Infinity"   special numbers (value 0.0)
//   "true()", "false()"    booleans
//   "{a,7}", "{}"          a node set whose items carry those values
//   "#name"                a node set holding the first element called name in the tree
#pragma once

#include <cwctype>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "TestXml.h"
#include "XPathArgument.h"
#include "XPathEvaluationContext.h"
#include "XPathFunction.h"
#include "XPathOperator.h"
#include "XPathOutputElement.h"

namespace FunctionCall {

using namespace XmlPlugin;

// A node-set value that owns the items given to it.
class NodeSet : public XPathArgument {
 public:
  NodeSet() { setDataType(NodeSetType); }
  void add(const String& i_Value, Node* i_pNode) {
    auto* pItem = new XPathOutputElement;
    pItem->m_Value = i_Value;
    pItem->m_Node = i_pNode;
    m_OutputNodes.push_back(pItem);
  }
};

// The first element called i_Name in document order, the root included.
inline Node* findNode(const Node* i_pRoot, const wchar_t* i_Name) {
  return const_cast<Node*>(TestXml::findElement(i_pRoot, i_Name));
}

inline std::unique_ptr<XPathExpression> makeValue(const std::wstring& i_Text,
                                                  Node* i_pTree = nullptr) {
  const struct {
    const wchar_t* m_Text;
    LimitType m_Kind;
  } kSpecials[] = {{L"NaN", NaN}, {L"Infinity", Infinity}, {L"-Infinity", NInfinity}};
  for (const auto& special : kSpecials) {
    if (i_Text == special.m_Text) {
      auto pValue = std::make_unique<XPathArgument>(0.0);
      pValue->setNumbType(special.m_Kind);
      return pValue;
    }
  }
  if (i_Text == L"true()" || i_Text == L"false()") {
    auto pValue = std::make_unique<XPathArgument>(i_Text == L"true()" ? 1.0 : 0.0);
    pValue->setDataType(BooleanType);
    return pValue;
  }
  if (i_Text[0] == L'{' || i_Text[0] == L'#') {
    auto pValue = std::make_unique<NodeSet>();
    if (i_Text[0] == L'#') {
      pValue->add(String(), findNode(i_pTree, i_Text.c_str() + 1));
    }
    for (size_t begin = 1, end; i_Text[0] == L'{' && i_Text != L"{}"; begin = end + 1) {
      end = i_Text.find_first_of(L",}", begin);
      pValue->add(String(i_Text.substr(begin, end - begin)), nullptr);
      if (i_Text[end] == L'}') {
        break;
      }
    }
    return pValue;
  }
  // The tokenizer writes a negative zero as the operand 0 with the flag set.
  const bool negativeZero = i_Text == L"-0";
  auto pValue = std::make_unique<XPathArgument>(String(negativeZero ? L"0" : i_Text.c_str()));
  pValue->setNegativeZero(negativeZero);
  return pValue;
}

// "boolean:true", "number:2.5", "number:-0" (flag set), "string:abc", "nodes:2".
inline std::string describe(const XPathExpression* i_pValue) {
  if (i_pValue == nullptr) {
    return "none";
  }
  switch (i_pValue->getDataType()) {
    case BooleanType:
      return i_pValue->GetExpressionBool() == 1 ? "boolean:true" : "boolean:false";
    case NumberType:
      return "number:" + std::string(i_pValue->isNegativeZero() ? "-" : "") +
             i_pValue->GetExpressionString().toNarrow();
    case StringType:
      return "string:" + i_pValue->GetExpressionString().toNarrow();
    case NodeSetType:
      return "nodes:" + std::to_string(i_pValue->getOutputNodesList().size());
  }
  return "?";
}

// Runs an operator ("+", "=") or a function ("substring") over arguments given in call
// order, with the argument count the tokenizer would set; "error:<code>" on failure.
inline std::string call(const std::wstring& i_Name, const std::vector<std::wstring>& i_Arguments,
                        Node* i_pTree = nullptr, Node* i_pContext = nullptr,
                        std::list<Node*>* i_pSiblings = nullptr) {
  const bool function = std::iswalpha(i_Name[0]) != 0;
  std::unique_ptr<XPathExpression> pItem(
      XPathExpression::create(String(i_Name), String(function ? L"(" : L""), nullptr));
  if (!pItem->isOperator()) {
    return "operand";
  }
  if (function && !i_Arguments.empty()) {
    static_cast<XPathOperator*>(pItem.get())->setArgumentsCount(int(i_Arguments.size()));
  }
  std::vector<std::unique_ptr<XPathExpression>> values;
  std::vector<XPathExpression*> arguments;  // popping order: last argument first
  for (auto it = i_Arguments.rbegin(); it != i_Arguments.rend(); ++it) {
    values.push_back(makeValue(*it, i_pTree));
    arguments.push_back(values.back().get());
  }
  pItem->setStartNode(i_pContext);
  pItem->setSiblings(i_pSiblings);
  XPathEvaluationContext context;
  const TErrorCode code = pItem->evaluate(arguments, context);
  return code != 0 ? "error:" + std::to_string(code) : describe(pItem->getOutputArgument());
}

}  // namespace FunctionCall
