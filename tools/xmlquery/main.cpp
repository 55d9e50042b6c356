// xmlquery: a host for the XML query plug-in. It loads the plug-in library with dlopen and
// drives it only through the SDK interfaces, as the scanning engine does.
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "JsonProtocol.h"
#include "PluginLibrary.h"
#include "PluginSession.h"
#include "ReasonCollector.h"
#include "TextExcerpt.h"
#include "XPathLint.h"
#include "host/PluginSDK.h"
#include "host/String.h"
#include "host/Trace.h"

namespace {

const int EXIT_PLUGIN_ERROR = 1;
const int EXIT_USAGE = 2;
const int EXIT_NOTHING_SELECTED = 3;
const int EXIT_LINT_WARNINGS = 1;

using namespace XmlQuery;

bool isBlank(const std::string& i_Line) {
  return i_Line.find_first_not_of(" \t\r\n") == std::string::npos;
}

// The files named on the command line, then those listed on standard input.
std::vector<std::string> filesToQuery(const CommandLine& i_CommandLine) {
  std::vector<std::string> files = i_CommandLine.m_Files;
  std::string line;
  while (i_CommandLine.m_FilesFromInput && std::getline(std::cin, line)) {
    if (!isBlank(line)) {
      files.push_back(line);
    }
  }
  return files;
}

bool selectedNothing(const QueryResponse& i_Response) {
  return i_Response.m_Values.empty() ||
         (i_Response.m_Shape == QueryResponse::Scalar && i_Response.m_Values.front().empty());
}

// Runs the query over one file and prints its values (or its JSON response) to standard
// output and its error to standard error, each line after i_Prefix.
// The plug-in's reasons follow the error line, or warn after a success (a failing function
// in a predicate only drops candidates).
QueryResponse runOne(const CommandLine& i_CommandLine, const std::string& i_File,
                     const std::string& i_Prefix, PluginSession& io_Session,
                     ReasonCollector& io_Reasons) {
  QueryRequest request;
  request.m_Type = i_CommandLine.m_Scalar ? "XmlValue" : "XmlValues";
  request.m_File = i_File;
  request.m_XPath = i_CommandLine.m_XPath;
  if (i_CommandLine.m_MustExist) {
    request.m_MustExist = String(PLUGIN_RESULT_TRUE).toNarrow();
  }
  const QueryResponse response = io_Session.run(request);
  if (i_CommandLine.m_Json) {
    std::cout << i_Prefix << formatResponse(response) << '\n';
  } else if (response.m_Code == 0) {
    for (const std::string& value : response.m_Values) {
      std::cout << i_Prefix << value << '\n';
    }
  }
  if (response.m_Code != 0) {
    std::cerr << i_Prefix << "error " << response.m_Code << ' ' << errorName(response.m_Code)
              << '\n';
  }
  printReason(io_Reasons.take(), i_CommandLine.m_XPath,
              i_Prefix + (response.m_Code != 0 ? "" : "warning: "), std::cerr);
  return response;
}

int runQueries(const CommandLine& i_CommandLine, PluginSession& io_Session) {
  const std::vector<std::string> files = filesToQuery(i_CommandLine);
  if (files.empty()) {
    std::cerr << "xmlquery: no FILE names on standard input\n";
    return EXIT_USAGE;
  }
  ReasonCollector reasons;
  bool failed = false;
  bool selected = false;
  for (const std::string& file : files) {
    const std::string prefix = files.size() > 1 ? file + ":" : "";
    const QueryResponse response = runOne(i_CommandLine, file, prefix, io_Session, reasons);
    failed = failed || response.m_Code != 0;
    selected = selected || (response.m_Code == 0 && !selectedNothing(response));
  }
  if (failed) {
    return EXIT_PLUGIN_ERROR;
  }
  return i_CommandLine.m_EmptyExit && !selected ? EXIT_NOTHING_SELECTED : EXIT_SUCCESS;
}

void runBatch(std::istream& i_Input, PluginSession& io_Session) {
  std::string line;
  while (std::getline(i_Input, line)) {
    if (isBlank(line)) {
      continue;
    }
    QueryRequest request;
    std::string error;
    if (parseRequest(line, request, error)) {
      std::cout << formatResponse(io_Session.run(request)) << std::endl;
    } else {
      std::cout << formatError(error) << std::endl;
    }
  }
}

// Writes each warning after i_Prefix: its column, rule and message, the text around the
// column and the form that works.
void printLintWarnings(const std::vector<LintWarning>& i_Warnings, const std::string& i_XPath,
                       const std::string& i_Prefix) {
  for (const LintWarning& warning : i_Warnings) {
    std::cout << i_Prefix << "column " << warning.m_Column << ": " << warning.m_Rule << ": "
              << warning.m_Message << '\n';
    printExcerpt(i_XPath, static_cast<size_t>(warning.m_Column), i_Prefix, std::cout);
    std::cout << i_Prefix << "  instead: " << warning.m_Instead << '\n';
  }
}

int runLint(const std::string& i_XPath) {
  const std::vector<LintWarning> warnings = lintXPath(i_XPath);
  printLintWarnings(warnings, i_XPath, "");
  return warnings.empty() ? EXIT_SUCCESS : EXIT_LINT_WARNINGS;
}

// The query, its lint warnings, the plug-in's account of the evaluation and its outcome, all
// on standard output.
int runExplain(const CommandLine& i_CommandLine, const PluginLibrary& i_Library) {
  const std::string& xpath = i_CommandLine.m_XPath;
  if (i_Library.explain() == nullptr) {
    std::cerr << "xmlquery: the plug-in cannot explain an evaluation\n";
    return EXIT_PLUGIN_ERROR;
  }
  std::cout << "query: " << xpath << '\n';
  printLintWarnings(lintXPath(xpath), xpath, "lint: ");
  ReasonCollector reasons;
  const TErrorCode code = i_Library.explain()(
      String(i_CommandLine.m_Files.front().c_str()).c_str(), String(xpath.c_str()).c_str(),
      [](void* io_pOutput, const char* i_Line) {
        *static_cast<std::ostream*>(io_pOutput) << i_Line << '\n';
      },
      &std::cout);
  if (code != 0) {
    std::cout << "error " << code << ' ' << errorName(code) << '\n';
  }
  printReason(reasons.take(), xpath, code != 0 ? "" : "warning: ", std::cout);
  return code != 0 ? EXIT_PLUGIN_ERROR : EXIT_SUCCESS;
}

int run(const CommandLine& i_CommandLine) {
  if (i_CommandLine.m_TraceLevel) {
    Tracer::setLevel(*i_CommandLine.m_TraceLevel);
  }
  std::ifstream batchFile;
  if (i_CommandLine.m_Mode == CommandLine::Batch && i_CommandLine.m_BatchInput != "-") {
    batchFile.open(i_CommandLine.m_BatchInput);
    if (!batchFile) {
      std::cerr << "xmlquery: cannot read " << i_CommandLine.m_BatchInput << '\n';
      return EXIT_USAGE;
    }
  }
  const std::string pluginPath =
      i_CommandLine.m_PluginPath.empty() ? defaultPluginPath() : i_CommandLine.m_PluginPath;
  PluginLibrary library;
  std::string error;
  if (!library.load(pluginPath, error)) {
    std::cerr << "xmlquery: cannot load the plug-in: " << error << '\n';
    return EXIT_PLUGIN_ERROR;
  }
  PluginSession session(library);
  if (!session.isReady()) {
    std::cerr << "xmlquery: createPlugin returned no plug-in\n";
    return EXIT_PLUGIN_ERROR;
  }
  if (i_CommandLine.m_Mode == CommandLine::Single) {
    return runQueries(i_CommandLine, session);
  }
  if (i_CommandLine.m_Mode == CommandLine::Explain) {
    return runExplain(i_CommandLine, library);
  }
  runBatch(batchFile.is_open() ? batchFile : std::cin, session);
  return EXIT_SUCCESS;
}

}  // namespace

int main(int i_Argc, char** i_Argv) {
  CommandLine commandLine;
  std::string error;
  if (!parseCommandLine(i_Argc, i_Argv, commandLine, error)) {
    std::cerr << "xmlquery: " << error << "\n\n" << USAGE_TEXT;
    return EXIT_USAGE;
  }
  if (commandLine.m_Mode == CommandLine::Help) {
    std::cout << USAGE_TEXT;
    return EXIT_SUCCESS;
  }
  if (commandLine.m_Mode == CommandLine::Lint) {
    return runLint(commandLine.m_XPath);
  }
  if (commandLine.m_Mode == CommandLine::Version) {
    std::cout << "xmlquery " << XMLPLUGIN_VERSION << '\n';
    return EXIT_SUCCESS;
  }
  try {
    return run(commandLine);
  } catch (const std::exception& exception) {
    std::cerr << "xmlquery: " << exception.what() << '\n';
    return EXIT_PLUGIN_ERROR;
  }
}
