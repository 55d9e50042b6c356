// Test helper: runs a command line through the shell and collects what it did.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "TestXml.h"

namespace TestCommand {

struct Outcome {
  int m_Exit = -1;  // exit status; -1 when the command did not exit normally
  std::string m_Out;
  std::string m_Err;
};

// One shell word, quoted.
inline std::string quote(const std::string& i_Word) {
  std::string quoted = "'";
  for (char c : i_Word) {
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return quoted + "'";
}

// Runs i_Program with i_Arguments, i_Input on its standard input.
inline Outcome run(const std::string& i_Program, const std::vector<std::string>& i_Arguments,
                   const std::string& i_Input = "") {
  TestXml::TempFile input(i_Input, ".in");
  TestXml::TempFile errors("", ".err");
  std::string command = quote(i_Program);
  for (const std::string& argument : i_Arguments) {
    command += " " + quote(argument);
  }
  command += " <" + quote(input.path()) + " 2>" + quote(errors.path());
  Outcome outcome;
  FILE* pPipe = popen(command.c_str(), "r");
  if (pPipe == nullptr) {
    return outcome;
  }
  std::array<char, 4096> buffer;
  size_t count = 0;
  while ((count = fread(buffer.data(), 1, buffer.size(), pPipe)) > 0) {
    outcome.m_Out.append(buffer.data(), count);
  }
  const int status = pclose(pPipe);
  outcome.m_Exit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  std::ostringstream errorText;
  errorText << std::ifstream(errors.path()).rdbuf();
  outcome.m_Err = errorText.str();
  return outcome;
}

}  // namespace TestCommand
