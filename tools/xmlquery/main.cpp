// xmlquery: a host for the XML query plug-in. It loads the plug-in library with dlopen and
// drives it only through the SDK interfaces, as the scanning engine does.
#include <fstream>
#include <iostream>
#include <string>

#include "CommandLine.h"
#include "JsonProtocol.h"
#include "PluginLibrary.h"
#include "PluginSession.h"
#include "host/PluginSDK.h"
#include "host/String.h"
#include "host/Trace.h"

namespace {

const int EXIT_PLUGIN_ERROR = 1;
const int EXIT_USAGE = 2;

using namespace XmlQuery;

int runSingle(const CommandLine& i_CommandLine, const PluginLibrary& i_Library,
              PluginSession& io_Session) {
  QueryRequest request;
  request.m_Type = i_CommandLine.m_Scalar ? "XmlValue" : "XmlValues";
  request.m_File = i_CommandLine.m_File;
  request.m_XPath = i_CommandLine.m_XPath;
  if (i_CommandLine.m_MustExist) {
    request.m_MustExist = String(PLUGIN_RESULT_TRUE).toNarrow();
  }
  const QueryResponse response = io_Session.run(request);
  if (i_CommandLine.m_Json) {
    std::cout << formatResponse(response) << '\n';
  } else if (response.m_Code == 0) {
    for (const std::string& value : response.m_Values) {
      std::cout << value << '\n';
    }
  }
  if (response.m_Code != 0) {
    std::cerr << "error " << response.m_Code << ' ' << i_Library.errorName(response.m_Code) << '\n';
    return EXIT_PLUGIN_ERROR;
  }
  return EXIT_SUCCESS;
}

bool isBlank(const std::string& i_Line) {
  return i_Line.find_first_not_of(" \t\r\n") == std::string::npos;
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
    return runSingle(i_CommandLine, library, session);
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
  try {
    return run(commandLine);
  } catch (const std::exception& exception) {
    std::cerr << "xmlquery: " << exception.what() << '\n';
    return EXIT_PLUGIN_ERROR;
  }
}
