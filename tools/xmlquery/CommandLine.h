// The command line of xmlquery.
#pragma once

#include <optional>
#include <string>

namespace XmlQuery {

struct CommandLine {
  enum Mode { Single, Batch, Help };
  Mode m_Mode = Single;
  bool m_Scalar = false;     // --scalar: XmlValue instead of XmlValues
  bool m_MustExist = false;  // --must-exist: "mustExist" set to PLUGIN_RESULT_TRUE
  bool m_Json = false;       // --json: print the JSON response
  std::optional<int> m_TraceLevel;
  std::string m_PluginPath;        // empty: the library beside the executable
  std::string m_File;              // single mode
  std::string m_XPath;             // single mode
  std::string m_BatchInput = "-";  // batch mode: a file name, "-" for standard input
};

// Reads the arguments. On failure returns false and o_Error says why.
bool parseCommandLine(int i_Argc, const char* const* i_Argv, CommandLine& o_CommandLine,
                      std::string& o_Error);

extern const char* const USAGE_TEXT;

}  // namespace XmlQuery
