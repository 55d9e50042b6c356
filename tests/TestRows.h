// Test helpers shared by the suites: values and calls written as short texts, answers as one
// canonical text, and a runner for tables of rows.
//
// Values are written as the tokenizer makes operands:
//   "5", "-2.5"            numbers            "-0"   the number 0 with the negative-zero flag
//   "1e300"                a computed number (the tokenizer writes no exponents)
//   "'abc'", "''"          strings; "'12'" is the number 12, as the tokenizer makes it
//   "string:12"            a string whatever its text, as a function's result can be one
//   "NaN", "Infinity", "-Infinity", "ZeroByInfinity"   special numbers (value 0.0)
//   "true()", "false()"    booleans
//   "{a,7}", "{}"          a node set whose items carry those string values
//   "#a,b"                 a node set holding the first element called a, then b, in the tree
// Calls are "name(value, value)" for functions and operators alike, or "value op value".
// Answers are "boolean:true", "number:2.5", "number:-0" (flag set), "string:abc", "nodes:2",
// "none" (no result) or "error:<code>".
#pragma once

#include <gtest/gtest.h>

#include <cwchar>
#include <cwctype>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "TestXml.h"
#include "XPath.h"
#include "XPathArgument.h"
#include "XPathEvaluationContext.h"
#include "XPathFunction.h"
#include "XPathOperator.h"
#include "XPathOutputElement.h"

namespace TestRows {

using namespace XmlPlugin;

// One row of a table: an input text and the answer expected for it.
struct Row {
  std::string m_Input;
  std::string m_Expected;
};

// Runs every row through i_Run (text in, answer out) and reports each row whose answer does not
// match, with the row and the actual answer. i_Matches(actual, expected) defaults to equality.
template <typename Run, typename Match>
void expectRows(const std::vector<Row>& i_Rows, Run i_Run, Match i_Matches) {
  for (const Row& row : i_Rows) {
    const std::string actual = i_Run(row.m_Input);
    if (!i_Matches(actual, row.m_Expected)) {
      const bool cut = row.m_Input.size() > 100;  // generated inputs can be very long
      ADD_FAILURE() << "row: " << row.m_Input.substr(0, 100) << (cut ? "..." : "")
                    << "\n  expected: " << row.m_Expected << "\n  actual:   " << actual;
    }
  }
}

template <typename Run>
void expectRows(const std::vector<Row>& i_Rows, Run i_Run) {
  expectRows(i_Rows, i_Run, std::equal_to<std::string>());
}

inline std::wstring wide(const std::string& i_Text) {
  return String(i_Text.c_str()).c_str();
}

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
inline Node* findNode(const Node* i_pRoot, const std::wstring& i_Name) {
  return const_cast<Node*>(TestXml::findElement(i_pRoot, i_Name.c_str()));
}

// The items of "a, b" in order: commas inside quotes or braces do not split.
inline std::vector<std::wstring> listItems(const std::wstring& i_List) {
  std::vector<std::wstring> result;
  std::wstring current;
  int depth = 0;
  bool quoted = false;
  for (wchar_t character : i_List) {
    quoted = quoted != (character == L'\'');
    depth += !quoted && character == L'{' ? 1 : !quoted && character == L'}' ? -1 : 0;
    if (character == L',' && depth == 0 && !quoted) {
      result.push_back(current);
      current.clear();
    } else if (!current.empty() || character != L' ') {
      current += character;
    }
  }
  if (!current.empty()) {
    result.push_back(current);
  }
  return result;
}

inline std::unique_ptr<XPathExpression> makeValue(const std::wstring& i_Text,
                                                  Node* i_pTree = nullptr) {
  const std::pair<const wchar_t*, LimitType> kSpecials[] = {{L"NaN", NaN},
                                                            {L"Infinity", Infinity},
                                                            {L"-Infinity", NInfinity},
                                                            {L"ZeroByInfinity", ZeroByInfinity}};
  for (const auto& special : kSpecials) {
    if (i_Text == special.first) {
      auto pValue = std::make_unique<XPathArgument>(0.0);
      pValue->setNumbType(special.second);
      return pValue;
    }
  }
  if (i_Text == L"true()" || i_Text == L"false()") {
    auto pValue = std::make_unique<XPathArgument>(i_Text == L"true()" ? 1.0 : 0.0);
    pValue->setDataType(BooleanType);
    return pValue;
  }
  if (i_Text.rfind(L"string:", 0) == 0) {
    auto pValue = std::make_unique<XPathArgument>(String(L"'x'"));
    pValue->SetExpressionString(String(i_Text.substr(7)));
    return pValue;
  }
  if (i_Text[0] == L'{' || i_Text[0] == L'#') {
    auto pValue = std::make_unique<NodeSet>();
    const std::wstring inside = i_Text.substr(1, i_Text.size() - (i_Text[0] == L'{' ? 2 : 1));
    for (const std::wstring& item : listItems(inside)) {
      if (i_Text[0] == L'#') {
        pValue->add(String(), findNode(i_pTree, item));
      } else {
        pValue->add(String(item), nullptr);
      }
    }
    return pValue;
  }
  wchar_t* pEnd = nullptr;
  const double computed = std::wcstod(i_Text.c_str(), &pEnd);
  if (i_Text.find(L'e') != std::wstring::npos && *pEnd == L'\0') {
    return std::make_unique<XPathArgument>(computed);
  }
  // The tokenizer writes a negative zero as the operand 0 with the flag set.
  const bool negativeZero = i_Text == L"-0";
  auto pValue = std::make_unique<XPathArgument>(String(negativeZero ? L"0" : i_Text.c_str()));
  pValue->setNegativeZero(negativeZero);
  return pValue;
}

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

// Runs the operator or function call i_Call with the argument count the tokenizer would set.
inline std::string call(const std::string& i_Call, Node* i_pTree = nullptr,
                        Node* i_pContext = nullptr, std::list<Node*>* i_pSiblings = nullptr) {
  const std::wstring text = wide(i_Call);
  const size_t open = text.find(L'(');
  const bool callForm = open != std::wstring::npos && open > 0 && text.back() == L')' &&
                        text.find(L' ') > open && text.find(L"()") != open;
  std::wstring name;
  std::vector<std::wstring> values;
  if (callForm || text.find(L' ') == std::wstring::npos) {
    name = text.substr(0, open);
    values = listItems(text.substr(open + 1, text.size() - open - 2));
  } else {
    const size_t opBegin = text.find(L' ') + 1;
    const size_t opEnd = text.find(L' ', opBegin);
    name = text.substr(opBegin, opEnd - opBegin);
    values = {text.substr(0, opBegin - 1), text.substr(opEnd + 1)};
  }
  const bool function = std::iswalpha(name[0]) != 0;
  std::unique_ptr<XPathExpression> pItem(
      XPathExpression::create(String(name), String(function ? L"(" : L""), nullptr));
  if (!pItem->isOperator()) {
    return "operand";
  }
  if (function && !values.empty()) {
    static_cast<XPathOperator*>(pItem.get())->setArgumentsCount(int(values.size()));
  }
  std::vector<std::unique_ptr<XPathExpression>> owned;
  std::vector<XPathExpression*> popped;  // popping order: last argument first
  for (auto it = values.rbegin(); it != values.rend(); ++it) {
    owned.push_back(makeValue(*it, i_pTree));
    popped.push_back(owned.back().get());
  }
  pItem->setStartNode(i_pContext);
  pItem->setSiblings(i_pSiblings);
  XPathEvaluationContext context;
  const TErrorCode code = pItem->evaluate(popped, context);
  return code != 0 ? "error:" + std::to_string(code) : describe(pItem->getOutputArgument());
}

// "code|value,value" for i_Path run over i_pRoot; with i_Owners each value is written
// "owner=value", the owner being the name of the node the value belongs to.
inline std::string pathValues(Node* i_pRoot, const std::string& i_Path, bool i_Owners = false) {
  XPathOutputElements items;
  OutputElementsGuard guard(items);
  XPathEvaluationContext context;
  const TErrorCode result = XPath(String(i_Path.c_str()), context).getValues(items, i_pRoot);
  std::string text = std::to_string(result) + "|";
  for (const XPathOutputElement* pItem : items) {
    text += (pItem == items.front() ? "" : ",") +
            (i_Owners ? pItem->m_Node->m_Name.toNarrow() + "=" : "") +
            pItem->hostValue().toNarrow();
  }
  return text;
}

}  // namespace TestRows
