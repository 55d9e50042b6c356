// The command line of xmlquery.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace XmlQuery {

struct CommandLine {
  enum Mode { Single, Batch, Lint, Explain, Help, Version };
  Mode m_Mode = Single;
  bool m_Scalar = false;          // --scalar: XmlValue instead of XmlValues
  bool m_MustExist = false;       // --must-exist: "mustExist" set to PLUGIN_RESULT_TRUE
  bool m_Json = false;            // --json: print the JSON response
  bool m_EmptyExit = false;       // --empty-exit: exit status 3 when nothing is selected
  bool m_FilesFromInput = false;  // --stdin or "-": more file names, one a line, on stdin
  std::optional<int> m_TraceLevel;
  std::string m_PluginPath;          // empty: the library beside the executable
  std::vector<std::string> m_Files;  // single mode, in the order given; explain: the one FILE
  std::string m_XPath;               // single, lint and explain mode
  std::string m_BatchInput = "-";    // batch mode: a file name, "-" for standard input
};

// Reads the arguments. On failure returns false and o_Error says why.
bool parseCommandLine(int i_Argc, const char* const* i_Argv, CommandLine& o_CommandLine,
                      std::string& o_Error);

extern const char* const USAGE_TEXT;

}  // namespace XmlQuery
