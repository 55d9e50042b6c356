// The base of every operator and core function, and the factory that makes them by name.
//
// A function object owns every value it creates with createOutputExpression; the value
// stays valid until the function is destroyed (or until releaseOutputExpression hands the
// last one to another owner). Parameters are borrowed and held in reverse source order:
// element 0 is the last argument.
#pragma once

#include <list>
#include <memory>
#include <vector>

#include "XPathExpression.h"
#include "XPathTypes.h"

namespace XmlPlugin {

class XPathFunction {
 public:
  XPathFunction();
  virtual ~XPathFunction();
  XPathFunction(const XPathFunction&) = delete;
  XPathFunction& operator=(const XPathFunction&) = delete;

  // -1 means no upper bound (compared as unsigned by the operator).
  virtual int getMaxArgumentsCount() const;  // the arguments count
  // -1 means no lower bound.
  virtual int getMinArgumentsCount() const;  // getMaxArgumentsCount()
  virtual TErrorCode evaluate() = 0;

  XPathExpression* GetOutputExpression() const { return m_pOutputExpression; }
  // Gives up ownership of the current output expression.
  std::unique_ptr<XPathExpression> releaseOutputExpression();

  Node* getStartNode() const { return m_pStartNode; }
  void setStartNode(Node* i_pNode) { m_pStartNode = i_pNode; }
  int getArgumentsCount() const { return m_ArgumentsCount; }
  void setArgumentsCount(int i_Count) { m_ArgumentsCount = i_Count; }
  bool isInfix() const { return m_Infix; }
  void setInfix(bool i_Infix) { m_Infix = i_Infix; }
  int getPriority() const { return m_Priority; }
  void setPriority(int i_Priority) { m_Priority = i_Priority; }
  std::list<Node*>* getSiblings() const { return m_pSiblings; }
  void SetSiblings(std::list<Node*>* i_pSiblings) { m_pSiblings = i_pSiblings; }
  XPathDataType GetReturnType() const { return m_ReturnType; }
  void setReturnType(XPathDataType i_Type) { m_ReturnType = i_Type; }
  std::vector<XPathDataType> getParametersType() const { return m_ParametersType; }
  void addParameterType(XPathDataType i_Type) { m_ParametersType.push_back(i_Type); }
  std::vector<XPathExpression*>* getFunctionParameters() { return &m_FunctionParameters; }
  void addFunctionParameter(XPathExpression* i_pParameter);
  void setFunctionParameters(const std::vector<XPathExpression*>& i_Parameters);
  String getExpression() const { return m_Expression; }
  void setExpression(const String& i_Expression) { m_Expression = i_Expression; }

  // Makes a new operand of the function's return type and makes it the output expression.
  void createOutputExpression(const String& i_Value);
  void createOutputExpression(double i_Value, LimitType i_Kind, bool i_NegativeZero);

 private:
  XPathExpression* m_pOutputExpression = nullptr;
  Node* m_pStartNode = nullptr;
  int m_ArgumentsCount = 2;
  bool m_Infix = true;
  int m_Priority = 4;
  std::list<Node*>* m_pSiblings = nullptr;
  XPathDataType m_ReturnType = BooleanType;
  std::vector<XPathDataType> m_ParametersType;
  std::vector<XPathExpression*> m_FunctionParameters;  // borrowed
  String m_Expression;
  std::vector<std::unique_ptr<XPathExpression>> m_CreatedValues;  // owns every output made
};

class XPathFunctionFactory {
 public:
  // A new function object for an operator or function token, or null for an operand.
  static XPathFunction* create(const String& i_Token, const String& i_Next,
                               XPathExpression* i_pPrevious);
  // A new core function when i_Next is exactly "(" and the name is known; else null.
  static XPathFunction* getFunctionbyName(const String& i_Name, const String& i_Next);
};

// "string": also the string value of nodes, which other functions and comparisons use.
class XPathFunction_string : public XPathFunction {
 public:
  TErrorCode evaluate() override;
  int getMinArgumentsCount() const override;  // 0
  int getMaxArgumentsCount() const override;  // 1

  // Appends the texts of every text node in the subtree of i_pNode (itself included), in
  // document order. Iterative: deep trees cannot exhaust the stack.
  static void getTextFromNode(const Node* i_pNode, String& o_Output);
  // The string value of a node-set item: its own value when not empty, otherwise the text
  // gathered from its node's content.
  static String getItemString(const XPathOutputElement* i_pItem);
};

}  // namespace XmlPlugin
