// The base of every operator and core function, and the factory that makes them by name.
//
// A function object owns every value it creates with createOutputExpression; the value
// stays valid until the function is destroyed (or until releaseOutputExpression hands the
// last one to another owner). Parameters are borrowed and held in reverse source order:
// element 0 is the last argument.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <vector>

#include "XPathExpression.h"
#include "XPathTypes.h"

namespace XmlPlugin {

class XPathFunction {
 public:
  // i_ParametersRead: how many parameters the body reads at the least.
  explicit XPathFunction(size_t i_ParametersRead = 0);
  virtual ~XPathFunction();
  XPathFunction(const XPathFunction&) = delete;
  XPathFunction& operator=(const XPathFunction&) = delete;

  // -1 means no upper bound (compared as unsigned by the operator).
  virtual int getMaxArgumentsCount() const;  // the arguments count
  // -1 means no lower bound.
  virtual int getMinArgumentsCount() const;  // getMaxArgumentsCount()
  virtual TErrorCode evaluate() = 0;
  // The operator refuses a call with fewer arguments than this, whatever the count bounds
  // allow, so that no body reads past its parameter list.
  size_t getParametersRead() const { return m_ParametersRead; }

  XPathExpression* GetOutputExpression() const { return m_pOutputExpression; }
  // Gives up ownership of the current output expression.
  std::unique_ptr<XPathExpression> releaseOutputExpression();
  // Frees every value made and forgets the parameters and the context of the last call.
  void clearValues();

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
  // The request being evaluated (borrowed); the operator sets it before each evaluation.
  XPathEvaluationContext* getEvaluationContext() const { return m_pContext; }
  void setEvaluationContext(XPathEvaluationContext* i_pContext) { m_pContext = i_pContext; }
  XPathDataType GetReturnType() const { return m_ReturnType; }
  void setReturnType(XPathDataType i_Type) { m_ReturnType = i_Type; }
  const std::vector<XPathDataType>& getParametersType() const { return m_ParametersType; }
  void addParameterType(XPathDataType i_Type) { m_ParametersType.push_back(i_Type); }
  std::vector<XPathExpression*>* getFunctionParameters() { return &m_FunctionParameters; }
  void addFunctionParameter(XPathExpression* i_pParameter);
  void setFunctionParameters(const std::vector<XPathExpression*>& i_Parameters);
  String getExpression() const { return m_Expression; }
  void setExpression(const String& i_Expression) { m_Expression = i_Expression; }

  // Makes a new operand of the function's return type and makes it the output expression.
  void createOutputExpression(const String& i_Value);
  void createOutputExpression(double i_Value, LimitType i_Kind, bool i_NegativeZero);

 protected:
  // Parameter i_Index of the list, counted from the call's last argument.
  XPathExpression* getParameter(size_t i_Index) const { return m_FunctionParameters[i_Index]; }
  size_t getParametersCount() const { return m_FunctionParameters.size(); }
  // A boolean result: 1.0 or 0.0.
  void createBooleanOutput(bool i_Value);

 private:
  size_t m_ParametersRead;
  XPathExpression* m_pOutputExpression = nullptr;
  Node* m_pStartNode = nullptr;
  int m_ArgumentsCount = 2;
  bool m_Infix = true;
  int m_Priority = 4;
  std::list<Node*>* m_pSiblings = nullptr;
  XPathEvaluationContext* m_pContext = nullptr;
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

// Truncates toward zero into the 32-bit range: values beyond it saturate, NaN gives 0.
int32_t truncateToInt32(double i_Value);

// A function that states its own argument bounds instead of following its count.
template <int MIN, int MAX>
class XPathBoundedFunction : public XPathFunction {
 public:
  using XPathFunction::XPathFunction;
  int getMinArgumentsCount() const override { return MIN; }
  int getMaxArgumentsCount() const override { return MAX; }
};

// A number with its kind, as the number functions hand it on.
struct NumberValue {
  double m_Value;
  LimitType m_Kind;
  bool m_NegativeZero;
};

// ---- Operators ----

// "=", "!=", "<", ">", "<=", ">=" (and the punctuation, which never evaluates).
class XPathFunction_logical_eq : public XPathFunction {
 public:
  XPathFunction_logical_eq() : XPathFunction(2) {}
  TErrorCode evaluate() override;
};

// "and", "or": the same comparison rules.
class XPathFunction_logical : public XPathFunction_logical_eq {};

// The arithmetic operators: the special-number rules decide first, and only an ordinary
// result is computed by the subclass.
class XPathFunction_arithmetic : public XPathFunction {
 public:
  XPathFunction_arithmetic() : XPathFunction(2) {}
  TErrorCode evaluate() override;

 protected:
  virtual NumberValue compute(const XPathExpression& i_Left, const XPathExpression& i_Right,
                              const String& i_Op) const = 0;
};

// "+" and "-".
class XPathFunction_aritmetical_plus : public XPathFunction_arithmetic {
 public:
  int getMinArgumentsCount() const override { return 1; }
  int getMaxArgumentsCount() const override { return 2; }

 protected:
  NumberValue compute(const XPathExpression& i_Left, const XPathExpression& i_Right,
                      const String& i_Op) const override;
};

// "*", "div" and "mod".
class XPathFunction_aritmetical_multi : public XPathFunction_arithmetic {
 protected:
  NumberValue compute(const XPathExpression& i_Left, const XPathExpression& i_Right,
                      const String& i_Op) const override;
};

// ---- Node-set functions ----

class XPathFunction_count : public XPathFunction {
 public:
  XPathFunction_count() : XPathFunction(1) {}
  // 0 without an output value when the argument is not a node set.
  TErrorCode evaluate() override;
};

class XPathFunction_last : public XPathFunction {
 public:
  TErrorCode evaluate() override;
};

class XPathFunction_position : public XPathFunction {
 public:
  // 0 without an output value when the context node is not in its sibling list.
  TErrorCode evaluate() override;
};

// Not supported: -102.
class XPathFunction_localname : public XPathBoundedFunction<0, 1> {
 public:
  TErrorCode evaluate() override;
};

class XPathFunction_name : public XPathBoundedFunction<0, 1> {
 public:
  TErrorCode evaluate() override;
};

// ---- String functions ----

// "string": also the string value of nodes, which other functions and comparisons use.
class XPathFunction_string : public XPathBoundedFunction<0, 1> {
 public:
  TErrorCode evaluate() override;

  // Appends the texts of every text node in the subtree of i_pNode (itself included), in
  // document order. Iterative: deep trees cannot exhaust the stack.
  static void getTextFromNode(const Node* i_pNode, String& o_Output);
  // The string value of a node-set item: its own value when not empty, otherwise the text
  // gathered from its node's content.
  static String getItemString(const XPathOutputElement* i_pItem);
  // The same for an item of value i_Value made for the node i_pNode.
  static String getItemString(const String& i_Value, const Node* i_pNode);
  // The string value of any value: "true"/"false" for a boolean, the first item's for a
  // node set ("" when empty).
  static String getValueString(const XPathExpression* i_pValue);
};

class XPathFunction_concat : public XPathBoundedFunction<2, -1> {
 public:
  TErrorCode evaluate() override;
};

class XPathFunction_startsWith : public XPathFunction {
 public:
  XPathFunction_startsWith() : XPathFunction(2) {}
  TErrorCode evaluate() override;
};

class XPathFunction_contains : public XPathFunction {
 public:
  XPathFunction_contains() : XPathFunction(2) {}
  TErrorCode evaluate() override;
};

class XPathFunction_substringBefore : public XPathFunction {
 public:
  XPathFunction_substringBefore() : XPathFunction(2) {}
  TErrorCode evaluate() override;
};

class XPathFunction_substringAfter : public XPathFunction {
 public:
  XPathFunction_substringAfter() : XPathFunction(2) {}
  TErrorCode evaluate() override;
};

class XPathFunction_substring : public XPathBoundedFunction<2, 3> {
 public:
  TErrorCode evaluate() override;
};

class XPathFunction_stringlength : public XPathBoundedFunction<0, 1> {
 public:
  TErrorCode evaluate() override;
};

class XPathFunction_normalizespace : public XPathBoundedFunction<0, 1> {
 public:
  TErrorCode evaluate() override;
};

// Not supported: -102.
class XPathFunction_translate : public XPathBoundedFunction<3, 3> {
 public:
  TErrorCode evaluate() override;
};

// ---- Boolean functions ----

class XPathFunction_boolean : public XPathFunction {
 public:
  XPathFunction_boolean() : XPathFunction(1) {}
  TErrorCode evaluate() override;
};

class XPathFunction_true : public XPathFunction {
 public:
  TErrorCode evaluate() override;
};

class XPathFunction_false : public XPathFunction {
 public:
  TErrorCode evaluate() override;
};

class XPathFunction_not : public XPathFunction {
 public:
  XPathFunction_not() : XPathFunction(1) {}
  TErrorCode evaluate() override;
};

// ---- Number functions ----

class XPathFunction_number : public XPathBoundedFunction<0, 1> {
 public:
  TErrorCode evaluate() override;  // NaN without an argument

  // The number a value stands for; NaN when it has none.
  static NumberValue toNumber(const XPathExpression* i_pValue);
};

class XPathFunction_sum : public XPathBoundedFunction<1, 1> {
 public:
  TErrorCode evaluate() override;
};

// "floor", "ceiling" and "round": a special number passes through, an ordinary one is
// rounded to a whole number by the subclass.
class XPathFunction_rounding : public XPathBoundedFunction<1, 1> {
 public:
  TErrorCode evaluate() override;

 protected:
  virtual double roundValue(double i_Value) const = 0;
};

class XPathFunction_floor : public XPathFunction_rounding {
 protected:
  double roundValue(double i_Value) const override;
};

class XPathFunction_ceiling : public XPathFunction_rounding {
 protected:
  double roundValue(double i_Value) const override;
};

class XPathFunction_round : public XPathFunction_rounding {
 public:
  // Halves go up; the truncation saturates at 32 bits.
  static double roundNumber(double i_Value);

 protected:
  double roundValue(double i_Value) const override { return roundNumber(i_Value); }
};

}  // namespace XmlPlugin
