// XmlValue and XmlValues: property checks, "mustExist", result counts, result emptying.
#include "XmlValue.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "TestLimits.h"
#include "XmlCache.h"
#include "XmlValues.h"
#include "host/PluginSDK.h"

using namespace XmlPlugin;

namespace {

const std::wstring FRAME_DATA = String(TEST_DATA_DIR "/frame/").toWide();

struct Row {
  const wchar_t* m_File;       // under tests/data/frame; null: not set; "": set empty
  const wchar_t* m_XPath;      // null: not set
  const wchar_t* m_MustExist;  // null: not set
  std::string m_Scalar;        // "code:value" from XmlValue
  std::string m_Vector;        // "code:value|value..." from XmlValues
};

void setProperties(PluginSDK::Expression& io_Expression, const Row& i_Row) {
  if (i_Row.m_File != nullptr) {
    const std::wstring file = *i_Row.m_File == L'\0' ? L"" : FRAME_DATA + i_Row.m_File;
    io_Expression.setProperty(L"file", file.c_str());
  }
  io_Expression.setProperty(L"xpath", i_Row.m_XPath);  // null leaves it unset
  io_Expression.setProperty(L"mustExist", i_Row.m_MustExist);
}

// Each result starts out holding a stale value: the expression must empty it at entry.
std::string scalarResult(const Row& i_Row) {
  XmlValue expression;
  setProperties(expression, i_Row);
  PluginSDK::String result;
  result = L"stale";
  const TErrorCode code = expression.getScalarResult(result);
  return std::to_string(code) + ":" + String(result.c_str()).toNarrow();
}

std::string vectorResult(const Row& i_Row) {
  XmlValues expression;
  setProperties(expression, i_Row);
  PluginSDK::StringVector result;
  result.addString(L"stale");
  const TErrorCode code = expression.getVectorResult(result);
  std::string text = std::to_string(code) + ":";
  for (size_t i = 0; i < result.size(); ++i) {
    text += (i == 0 ? "" : "|") + String(result.at(i)).toNarrow();
  }
  return text;
}

class XmlValueTest : public testing::Test {
 protected:
  void TearDown() override { XmlCache::cleanup(); }
};

// Properties are checked file first, then xpath; then the result counts and mustExist.
TEST_F(XmlValueTest, PropertiesResultCountsAndMustExist) {
  const std::wstring tooDeep =
      L"count(/root" + String(repeated("/.", 4200).c_str()).toWide() + L")";
  const Row rows[] = {
      {nullptr, nullptr, nullptr, "-15000:", "-15000:"},
      {nullptr, L"/root", nullptr, "-15000:", "-15000:"},
      {L"twins.xml", nullptr, nullptr, "-15001:", "-15001:"},
      {L"twins.xml", nullptr, L"true", "-15001:", "-15001:"},
      // A set but empty value counts as set: the engine is reached.
      {L"", L"", nullptr, "-15103:", "-15103:"},
      {L"missing.xml", L"/root", nullptr, "-15103:", "-15103:"},
      {L"twins.xml", L"/root/single", nullptr, "0:only", "0:only"},
      // Values are not merged: two equal texts are two values.
      {L"twins.xml", L"/root/item", nullptr, "-15003:", "0:same|same"},
      {L"twins.xml", L"count(/root/item)", nullptr, "0:2", "0:2"},
      {L"twins.xml", L"1 = 1", nullptr, "0:true", "0:true"},
      {L"twins.xml", L"concat('a', 'b')", L"true", "0:ab", "0:ab"},
      {L"twins.xml", L"/root/none", nullptr, "0:", "0:"},
      {L"twins.xml", L"/root/none", L"true", "-15002:", "-15002:"},
      // Only the exact text of PLUGIN_RESULT_TRUE means true.
      {L"twins.xml", L"/root/none", L"TRUE", "0:", "0:"},
      {L"twins.xml", L"/root/none", L"1", "0:", "0:"},
      {L"twins.xml", L"/root/none", L" true", "0:", "0:"},
      {L"twins.xml", L"/root/none", L"false", "0:", "0:"},
      {L"twins.xml", L"/root/none", L"", "0:", "0:"},
      // A path past the evaluation bounds fails the request instead of counting as empty.
      {L"twins.xml", tooDeep.c_str(), nullptr, "-15106:", "-15106:"},
  };
  for (const Row& row : rows) {
    // file, xpath, mustExist; NULL: not set
    SCOPED_TRACE(testing::PrintToString(std::make_tuple(row.m_File, row.m_XPath, row.m_MustExist)));
    EXPECT_EQ(scalarResult(row), row.m_Scalar);
    EXPECT_EQ(vectorResult(row), row.m_Vector);
  }
}

}  // namespace
