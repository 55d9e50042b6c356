#include "CommandLine.h"

#include <vector>

namespace XmlQuery {

const char* const USAGE_TEXT =
    "usage: xmlquery [OPTIONS] [--] FILE XPATH\n"
    "       xmlquery --batch [--trace LEVEL] [--plugin PATH] [FILE|-]\n"
    "\n"
    "Evaluates XPATH over the XML document FILE with the XML query plug-in and prints\n"
    "each value on its own line.\n"
    "\n"
    "  --scalar        use an XmlValue expression (one value) instead of XmlValues\n"
    "  --must-exist    set \"mustExist\" to true: selecting nothing is an error\n"
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
    "  --help          print this text\n"
    "\n"
    "Exit status: 0 success, 1 the plug-in returned an error code (printed to stderr) or\n"
    "could not be loaded, 2 usage error.\n";

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

bool checkOperands(const std::vector<std::string>& i_Operands, CommandLine& io_CommandLine,
                   std::string& o_Error) {
  if (io_CommandLine.m_Mode == CommandLine::Batch) {
    if (io_CommandLine.m_Scalar || io_CommandLine.m_MustExist || io_CommandLine.m_Json) {
      o_Error = "--batch takes its options from each request";
      return false;
    }
    if (i_Operands.size() > 1) {
      o_Error = "--batch takes at most one input file";
      return false;
    }
    if (i_Operands.size() == 1) {
      io_CommandLine.m_BatchInput = i_Operands[0];
    }
    return true;
  }
  if (i_Operands.size() != 2) {
    o_Error = "expected FILE and XPATH";
    return false;
  }
  io_CommandLine.m_File = i_Operands[0];
  io_CommandLine.m_XPath = i_Operands[1];
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
    } else if (argument == "--help") {
      o_CommandLine.m_Mode = CommandLine::Help;
      return true;
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
