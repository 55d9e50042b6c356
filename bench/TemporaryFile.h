// A generated document written to a temporary file, removed with the object.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

class TemporaryFile {
 public:
  // i_Name tells documents of one run apart; the process id tells runs apart.
  TemporaryFile(const std::string& i_Name, const std::string& i_Text) : m_Size(i_Text.size()) {
    const char* pDir = std::getenv("TMPDIR");
    m_Path = std::string(pDir != nullptr && *pDir != '\0' ? pDir : "/tmp") + "/" + i_Name + "-" +
             std::to_string(getpid()) + ".xml";
    std::ofstream(m_Path, std::ios::binary) << i_Text;
  }
  ~TemporaryFile() { std::remove(m_Path.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& path() const { return m_Path; }
  size_t size() const { return m_Size; }

 private:
  std::string m_Path;
  size_t m_Size;
};
