#include "JsonProtocol.h"

#include <nlohmann/json.hpp>

namespace XmlQuery {
namespace {

using Json = nlohmann::json;

struct RequestMember {
  const char* m_Name;
  std::optional<std::string> QueryRequest::*m_pField;
};

const RequestMember REQUEST_MEMBERS[] = {
    {"type", &QueryRequest::m_Type},
    {"file", &QueryRequest::m_File},
    {"xpath", &QueryRequest::m_XPath},
    {"mustExist", &QueryRequest::m_MustExist},
};

// Invalid UTF-8 in a value is replaced rather than thrown on.
std::string dump(const Json& i_Json) {
  return i_Json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

bool parseRequest(const std::string& i_Line, QueryRequest& o_Request, std::string& o_Error) {
  const Json request = Json::parse(i_Line, nullptr, false);
  if (request.is_discarded()) {
    o_Error = "request is not valid JSON";
    return false;
  }
  if (!request.is_object()) {
    o_Error = "request is not a JSON object";
    return false;
  }
  o_Request = QueryRequest();
  for (const RequestMember& member : REQUEST_MEMBERS) {
    const auto value = request.find(member.m_Name);
    if (value == request.end()) {
      continue;
    }
    if (!value->is_string()) {
      o_Error = std::string("member \"") + member.m_Name + "\" is not a string";
      return false;
    }
    o_Request.*member.m_pField = value->get<std::string>();
  }
  return true;
}

std::string formatResponse(const QueryResponse& i_Response) {
  Json response = {{"code", i_Response.m_Code}};
  if (i_Response.m_Shape == QueryResponse::Scalar) {
    response["value"] = i_Response.m_Values.empty() ? std::string() : i_Response.m_Values.front();
  } else if (i_Response.m_Shape == QueryResponse::Vector) {
    response["values"] = i_Response.m_Values;
  }
  return dump(response);
}

std::string formatError(const std::string& i_Error) {
  return dump(Json{{"error", i_Error}});
}

}  // namespace XmlQuery
