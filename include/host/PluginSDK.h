// The host's plug-in SDK: the classes a plug-in derives from and the result types it fills.
//
// The host loads a plug-in library, calls its C entry point createPlugin(), then drives
// the returned Plugin through its virtual operations, in slot order as declared here.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/Types.h"

extern const wchar_t* const PLUGIN_RESULT_TRUE;   // L"true"
extern const wchar_t* const PLUGIN_RESULT_FALSE;  // L"false"

namespace PluginSDK {

struct Version {
  int32_t m_Major;
  int32_t m_Minor;
  int32_t m_Release;
  int32_t m_Build;
};

// Result of a scalar expression.
class String {
 public:
  String& operator=(const wchar_t* i_Value);  // null gives ""
  const wchar_t* c_str() const { return m_Value.c_str(); }
  const std::wstring& value() const { return m_Value; }

 private:
  std::wstring m_Value;
};

// Result of a vector expression.
class StringVector {
 public:
  void removeAll() { m_Values.clear(); }
  void addString(const wchar_t* i_Value);  // null adds ""
  size_t size() const { return m_Values.size(); }
  const std::wstring& at(size_t i_Index) const { return m_Values.at(i_Index); }

 private:
  std::vector<std::wstring> m_Values;
};

class Expression {
 public:
  Expression();
  virtual ~Expression();
  virtual bool isOperator() const;  // false
  virtual int getType() const = 0;  // 0 scalar, 1 vector
  virtual bool isReady() const;     // true
  virtual void disposeExpression() = 0;

  // The property's value, or null when it was never set. Valid until it is set again.
  const wchar_t* getProperty(const wchar_t* i_Name) const;
  // Set by the host; a null value is ignored.
  void setProperty(const wchar_t* i_Name, const wchar_t* i_Value);

 private:
  std::map<std::wstring, std::wstring> m_Properties;
};

class ScalarExpression : public Expression {
 public:
  int getType() const override;  // 0
  virtual TErrorCode getScalarResult(String& o_Result) = 0;
};

class VectorExpression : public Expression {
 public:
  int getType() const override;  // 1
  virtual TErrorCode getVectorResult(StringVector& o_Result) = 0;
};

class Plugin {
 public:
  Plugin();
  virtual ~Plugin();
  virtual void setProperty(const wchar_t* i_Name, const wchar_t* i_Value) = 0;
  virtual Version getVersion() const = 0;
  virtual const wchar_t* getName() const = 0;
  virtual TErrorCode getUnknownSoftware() = 0;
  virtual TErrorCode initializePlugin() = 0;
  virtual void cleanupPlugin() = 0;
  virtual TErrorCode createExpression(const wchar_t* i_TypeName, Expression** o_pExpression) = 0;
  virtual TErrorCode destroyExpression(Expression* i_pExpression) = 0;

  // Registered expression type names, in registration order.
  const std::vector<std::wstring>& getExpressionNames() const { return m_ExpressionNames; }

 protected:
  // Registers an expression type name: 0, or HOST_ERROR_BAD_ARGUMENT for a null or
  // already registered name.
  TErrorCode addExpression(const wchar_t* i_TypeName);

 private:
  std::vector<std::wstring> m_ExpressionNames;
};

}  // namespace PluginSDK

// Entry points a plug-in library exports with C linkage.
extern "C" {
typedef PluginSDK::Plugin* (*CreatePluginFunction)();
typedef void (*DestroyPluginFunction)(PluginSDK::Plugin*);
}
