#include "PluginSession.h"

#include <memory>

#include "host/String.h"

namespace XmlQuery {
namespace {

void setProperty(PluginSDK::Expression& io_Expression, const wchar_t* i_Name,
                 const std::optional<std::string>& i_Value) {
  if (i_Value) {
    io_Expression.setProperty(i_Name, String(i_Value->c_str()).c_str());
  }
}

std::string toUtf8(const std::wstring& i_Text) {
  return String(i_Text).toNarrow();
}

void readResult(PluginSDK::Expression& i_Expression, QueryResponse& o_Response) {
  if (i_Expression.getType() == 0) {
    PluginSDK::String result;
    o_Response.m_Shape = QueryResponse::Scalar;
    o_Response.m_Code =
        static_cast<PluginSDK::ScalarExpression&>(i_Expression).getScalarResult(result);
    o_Response.m_Values.push_back(toUtf8(result.value()));
    return;
  }
  PluginSDK::StringVector result;
  o_Response.m_Shape = QueryResponse::Vector;
  o_Response.m_Code =
      static_cast<PluginSDK::VectorExpression&>(i_Expression).getVectorResult(result);
  for (size_t i = 0; i < result.size(); ++i) {
    o_Response.m_Values.push_back(toUtf8(result.at(i)));
  }
}

}  // namespace

PluginSession::PluginSession(const PluginLibrary& i_Library)
    : m_Library(i_Library), m_pPlugin(i_Library.createPlugin()()) {
  if (m_pPlugin != nullptr) {
    m_pPlugin->initializePlugin();
  }
}

PluginSession::~PluginSession() {
  if (m_pPlugin != nullptr) {
    m_pPlugin->cleanupPlugin();
  }
  m_Library.destroyPlugin()(m_pPlugin);
}

QueryResponse PluginSession::run(const QueryRequest& i_Request) {
  QueryResponse response;
  const std::wstring type = i_Request.m_Type ? String(i_Request.m_Type->c_str()).toWide() : L"";
  PluginSDK::Expression* pCreated = nullptr;
  response.m_Code =
      m_pPlugin->createExpression(i_Request.m_Type ? type.c_str() : nullptr, &pCreated);
  if (response.m_Code != 0 || pCreated == nullptr) {
    return response;
  }
  const auto destroy = [this](PluginSDK::Expression* i_pExpression) {
    m_pPlugin->destroyExpression(i_pExpression);
  };
  std::unique_ptr<PluginSDK::Expression, decltype(destroy)> expression(pCreated, destroy);
  setProperty(*expression, L"file", i_Request.m_File);
  setProperty(*expression, L"xpath", i_Request.m_XPath);
  setProperty(*expression, L"mustExist", i_Request.m_MustExist);
  readResult(*expression, response);
  return response;
}

}  // namespace XmlQuery
