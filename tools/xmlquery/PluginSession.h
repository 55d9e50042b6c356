// One loaded plug-in driven through the SDK in the host's order: createPlugin and
// initializePlugin at start; per request createExpression, the properties, the result and
// destroyExpression; cleanupPlugin and destroyPlugin at the end.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "PluginLibrary.h"
#include "host/PluginSDK.h"
#include "host/Types.h"

namespace XmlQuery {

// One request; an absent field is not passed to the plug-in. Texts are UTF-8.
struct QueryRequest {
  std::optional<std::string> m_Type;
  std::optional<std::string> m_File;
  std::optional<std::string> m_XPath;
  std::optional<std::string> m_MustExist;
};

struct QueryResponse {
  enum Shape {
    NoExpression,  // createExpression failed: only the code
    Scalar,        // m_Values holds the one result string
    Vector,
  };
  TErrorCode m_Code = 0;
  Shape m_Shape = NoExpression;
  std::vector<std::string> m_Values;  // UTF-8
};

class PluginSession {
 public:
  // Borrows the loaded library, which must outlive the session.
  explicit PluginSession(const PluginLibrary& i_Library);
  ~PluginSession();
  PluginSession(const PluginSession&) = delete;
  PluginSession& operator=(const PluginSession&) = delete;

  // False when createPlugin gave no plug-in.
  bool isReady() const { return m_pPlugin != nullptr; }
  QueryResponse run(const QueryRequest& i_Request);

 private:
  const PluginLibrary& m_Library;
  PluginSDK::Plugin* m_pPlugin;
};

}  // namespace XmlQuery
