// One parse of one XML file through the host reader, done by the constructor.
#pragma once

#include <cstddef>
#include <cstdint>

#include "XmlNodeSink.h"
#include "host/File.h"
#include "host/String.h"

namespace XmlPlugin {

class XmlFileParser {
 public:
  // The tree, if the reader builds one, goes to i_Sink.
  XmlFileParser(const String& i_FileName, XmlNodeSink& i_Sink);
  virtual ~XmlFileParser() = default;

  // 0 on success, FILE_MISSING when nothing exists under the name, otherwise the
  // reader's non-zero status.
  int32_t getStatus() const { return m_Status; }

  // After a successful parse: the file that was read, and what its tree holds.
  const FileIdentity& getFileIdentity() const { return m_FileIdentity; }
  size_t getTreeBytes() const { return m_TreeBytes; }
  size_t getNodeCount() const { return m_NodeCount; }

  static constexpr int32_t FILE_MISSING = 1;

 private:
  int32_t m_Status = 0;
  FileIdentity m_FileIdentity;
  size_t m_TreeBytes = 0;
  size_t m_NodeCount = 0;
};

}  // namespace XmlPlugin
