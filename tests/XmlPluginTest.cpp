// The plug-in object and its entry points: registration, expression creation, versions,
// and the guard that keeps exceptions from reaching the host.
#include "XmlPlugin.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>

#include "HostBoundary.h"
#include "XmlCache.h"

namespace {

struct PluginDeleter {
  void operator()(PluginSDK::Plugin* i_pPlugin) const { destroyPlugin(i_pPlugin); }
};
typedef std::unique_ptr<PluginSDK::Plugin, PluginDeleter> PluginPointer;

class XmlPluginTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(m_Plugin, nullptr); }
  void TearDown() override { m_Plugin->cleanupPlugin(); }

  PluginPointer m_Plugin{createPlugin()};
};

TEST_F(XmlPluginTest, DescribesItselfAndRegistersItsTypes) {
  const PluginSDK::Version version = m_Plugin->getVersion();
  EXPECT_EQ(version.m_Major, 1);
  EXPECT_EQ(version.m_Minor, 1);
  EXPECT_EQ(version.m_Release, 1);
  EXPECT_EQ(version.m_Build, 1);
  EXPECT_STREQ(m_Plugin->getName(), L"Xml");
  EXPECT_EQ(m_Plugin->getUnknownSoftware(), 0);
  m_Plugin->setProperty(L"anything", L"ignored");
  m_Plugin->setProperty(nullptr, nullptr);
  // Initializing registers both types, in order.
  EXPECT_EQ(m_Plugin->initializePlugin(), 0);
  const std::vector<std::wstring> expected = {L"XmlValue", L"XmlValues"};
  EXPECT_EQ(m_Plugin->getExpressionNames(), expected);
}

TEST_F(XmlPluginTest, CreatesExpressionsByExactTypeNameOnly) {
  struct Row {
    const wchar_t* m_Name;
    TErrorCode m_Code;
    int m_Type;  // getType() of the expression; -1: none made
  };
  const Row rows[] = {
      {L"XmlValue", 0, 0},        {L"XmlValues", 0, 1},     {L"xmlvalue", -10008, -1},
      {L"XMLVALUES", -10008, -1}, {L"XmlValu", -10008, -1}, {L"XmlValuesX", -10008, -1},
      {L"XmlValue ", -10008, -1}, {L"", -10008, -1},
  };
  for (const Row& row : rows) {
    PluginSDK::Expression* pExpression = reinterpret_cast<PluginSDK::Expression*>(&m_Plugin);
    EXPECT_EQ(m_Plugin->createExpression(row.m_Name, &pExpression), row.m_Code)
        << String(row.m_Name).toNarrow();
    EXPECT_EQ(pExpression != nullptr ? pExpression->getType() : -1, row.m_Type)
        << String(row.m_Name).toNarrow();
    EXPECT_EQ(m_Plugin->destroyExpression(pExpression), 0);
  }
  // Null arguments are refused, the output left untouched.
  PluginSDK::Expression* const sentinel = reinterpret_cast<PluginSDK::Expression*>(&m_Plugin);
  PluginSDK::Expression* pExpression = sentinel;
  EXPECT_EQ(m_Plugin->createExpression(nullptr, &pExpression), -101);
  EXPECT_EQ(pExpression, sentinel);
  EXPECT_EQ(m_Plugin->createExpression(L"XmlValue", nullptr), -101);
  EXPECT_EQ(m_Plugin->destroyExpression(nullptr), 0);
  destroyPlugin(nullptr);
}

TEST_F(XmlPluginTest, CleanupTwiceIsHarmless) {
  XmlPlugin::XmlCache::get();
  m_Plugin->cleanupPlugin();
  m_Plugin->cleanupPlugin();
  EXPECT_NE(XmlPlugin::XmlCache::get(), nullptr);
}

TEST(HostBoundaryTest, ExceptionsBecomeCodes) {
  EXPECT_EQ(XmlPlugin::guardHostCall([]() -> TErrorCode { return -15105; }), -15105);
  EXPECT_EQ(XmlPlugin::guardHostCall([]() -> TErrorCode { throw std::bad_alloc(); }), -15004);
  EXPECT_EQ(XmlPlugin::guardHostCall([]() -> TErrorCode { throw std::runtime_error("x"); }),
            -15004);
}

}  // namespace
