#include "CommandLine.h"

#include <vector>

namespace XmlQuery {

const char* const USAGE_TEXT =
    "usage: xmlquery [OPTIONS] [--] FILE... XPATH\n"
    "       xmlquery --batch [--trace LEVEL] [--plugin PATH] [FILE|-]\n"
    "       xmlquery --lint XPATH\n"
    "       xmlquery --explain [--plugin PATH] FILE XPATH\n"
    "\n"
    "Evaluates XPATH over each XML document FILE with the XML query plug-in and prints\n"
    "each value on its own line, after the file name and a colon when there are several\n"
    "files. A FILE \"-\" (or --stdin) reads more file names from standard input, one a line.\n"
    "\n"
    "  --scalar        use an XmlValue expression (one value) instead of XmlValues\n"
    "  --must-exist    set \"mustExist\" to true: selecting nothing is an error\n"
    "  --empty-exit    exit with status 3 when the query selects nothing\n"
    "  --stdin         read the file names from standard input, one a line\n"
    "  --json          print the JSON response instead of the values\n"
    "  --trace LEVEL   trace level 0-3 (0 off, 1 errors, 2 warnings, 3 details)\n"
    "  --plugin PATH   the plug-in library (default: libXmlPlugin.so beside xmlquery)\n"
    "  --batch         read JSON Lines requests from FILE or standard input and write\n"
    "                  one JSON response line per request:\n"
    "                    {\"type\": \"XmlValue\", \"file\": \"a.xml\", \"xpath\": \"/a\",\n"
    "                     \"mustExist\": \"true\"}   (every member optional)\n"
    "                    -> {\"code\": 0, \"value\": \"...\"}  or  {\"code\": 0, \"values\": "
    "[...]}\n"
    "                    -> {\"code\": -10008} for an unknown type,\n"
    "                       {\"error\": \"...\"} for a line that cannot be read\n"
    "  --lint          name the constructs in XPATH that this engine reads otherwise than\n"
    "                  XPath 1.0, each with a form that works (exit status 1 if any)\n"
    "  --explain       tell how the engine evaluates XPATH over FILE: the items the text\n"
    "                  was cut into, their postfix order, each location path as anchored\n"
    "                  and prepared, how many nodes each step kept, each predicate's\n"
    "                  verdicts, the value, and the --lint warnings\n"
    "  -h, --help      print this text\n"
    "  --version       print the version\n"
    "\n"
    "Exit status: 0 success, 1 the plug-in returned an error code (printed to stderr with\n"
    "the reason; with --explain to stdout) or could not be loaded, 2 usage error, 3 nothing\n"
    "selected (--empty-exit).\n";

namespace {

bool readTraceLevel(const std::string& i_Text, int& o_Level) {
  if (i_Text.size() != 1 || i_Text[0] < '0' || i_Text[0] > '3') {
    return false;
  }
  o_Level = i_Text[0] - '0';
  return true;
}

// Reads the value of an option that takes one; false when it is missing.
bool takeValue(int i_Argc, const char* const* i_Argv, int& io_Index, std::string& o_Value) {
  if (io_Index + 1 >= i_Argc) {
    return false;
  }
  o_Value = i_Argv[++io_Index];
  return true;
}

// The options of a query over files, which the other modes refuse.
bool hasQueryOptions(const CommandLine& i_CommandLine) {
  return i_CommandLine.m_Scalar || i_CommandLine.m_MustExist || i_CommandLine.m_Json ||
         i_CommandLine.m_EmptyExit || i_CommandLine.m_FilesFromInput;
}

bool checkOperands(std::vector<std::string>& io_Operands, CommandLine& io_CommandLine,
                   std::string& o_Error) {
  if (io_CommandLine.m_Mode == CommandLine::Lint) {
    if (io_Operands.size() != 1) {
      o_Error = "--lint takes one XPATH";
      return false;
    }
    io_CommandLine.m_XPath = io_Operands[0];
    return true;
  }
  if (io_CommandLine.m_Mode == CommandLine::Explain) {
    if (io_Operands.size() != 2 || hasQueryOptions(io_CommandLine)) {
      o_Error = "--explain takes one FILE and XPATH, and no options but --trace and --plugin";
      return false;
    }
    io_CommandLine.m_Files.push_back(io_Operands[0]);
    io_CommandLine.m_XPath = io_Operands[1];
    return true;
  }
  if (io_CommandLine.m_Mode == CommandLine::Batch) {
    if (hasQueryOptions(io_CommandLine)) {
      o_Error = "--batch takes its options from each request";
      return false;
    }
    if (io_Operands.size() > 1) {
      o_Error = "--batch takes at most one input file";
      return false;
    }
    if (io_Operands.size() == 1) {
      io_CommandLine.m_BatchInput = io_Operands[0];
    }
    return true;
  }
  // The last operand is the XPATH; without --stdin at least one FILE comes before it.
  const size_t needed = io_CommandLine.m_FilesFromInput ? 1 : 2;
  if (io_Operands.size() < needed) {
    o_Error = "expected FILE and XPATH";
    return false;
  }
  io_CommandLine.m_XPath = io_Operands.back();
  io_Operands.pop_back();
  for (std::string& file : io_Operands) {
    if (file == "-") {
      io_CommandLine.m_FilesFromInput = true;
    } else {
      io_CommandLine.m_Files.push_back(std::move(file));
    }
  }
  return true;
}

}  // namespace

bool parseCommandLine(int i_Argc, const char* const* i_Argv, CommandLine& o_CommandLine,
                      std::string& o_Error) {
  std::vector<std::string> operands;
  bool optionsEnded = false;
  for (int i = 1; i < i_Argc; ++i) {
    const std::string argument = i_Argv[i];
    std::string value;
    if (optionsEnded || argument == "-" || argument.empty() || argument[0] != '-') {
      operands.push_back(argument);
    } else if (argument == "--") {
      optionsEnded = true;
    } else if (argument == "--help" || argument == "-h") {
      o_CommandLine.m_Mode = CommandLine::Help;
      return true;
    } else if (argument == "--version") {
      o_CommandLine.m_Mode = CommandLine::Version;
      return true;
    } else if (argument == "--lint") {
      o_CommandLine.m_Mode = CommandLine::Lint;
    } else if (argument == "--explain") {
      o_CommandLine.m_Mode = CommandLine::Explain;
    } else if (argument == "--empty-exit") {
      o_CommandLine.m_EmptyExit = true;
    } else if (argument == "--stdin") {
      o_CommandLine.m_FilesFromInput = true;
    } else if (argument == "--scalar") {
      o_CommandLine.m_Scalar = true;
    } else if (argument == "--must-exist") {
      o_CommandLine.m_MustExist = true;
    } else if (argument == "--json") {
      o_CommandLine.m_Json = true;
    } else if (argument == "--batch") {
      o_CommandLine.m_Mode = CommandLine::Batch;
    } else if (argument == "--trace") {
      int level = 0;
      if (!takeValue(i_Argc, i_Argv, i, value) || !readTraceLevel(value, level)) {
        o_Error = "--trace needs a level from 0 to 3";
        return false;
      }
      o_CommandLine.m_TraceLevel = level;
    } else if (argument == "--plugin") {
      if (!takeValue(i_Argc, i_Argv, i, o_CommandLine.m_PluginPath)) {
        o_Error = "--plugin needs a path";
        return false;
      }
    } else {
      o_Error = "unknown option " + argument + " (put -- before an XPATH that starts with -)";
      return false;
    }
  }
  return checkOperands(operands, o_CommandLine, o_Error);
}

}  // namespace XmlQuery
