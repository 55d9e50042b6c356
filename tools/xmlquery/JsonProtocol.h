// The JSON form of requests and responses, shared by --batch and --json.
//
// Request:  {"type": "XmlValue"|"XmlValues", "file": "...", "xpath": "...", "mustExist": "..."}
//           every member optional (an absent one is not set), other members ignored.
// Response: {"code": N, "value": "..."} for a scalar expression, {"code": N, "values": [...]}
//           for a vector expression, {"code": N} when no expression was created, and
//           {"error": "..."} for a request line that cannot be read. One line each, UTF-8.
#pragma once

#include <string>

#include "PluginSession.h"

namespace XmlQuery {

// Reads one request line. On failure returns false and o_Error says why.
bool parseRequest(const std::string& i_Line, QueryRequest& o_Request, std::string& o_Error);

std::string formatResponse(const QueryResponse& i_Response);
std::string formatError(const std::string& i_Error);

}  // namespace XmlQuery
