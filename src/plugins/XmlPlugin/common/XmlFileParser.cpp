#include "XmlFileParser.h"

#include "host/File.h"
#include "host/NodeReader.h"

namespace XmlPlugin {

XmlFileParser::XmlFileParser(const String& i_FileName, XmlNodeSink& i_Sink) {
  if (!File(i_FileName).exists()) {
    m_Status = FILE_MISSING;
    return;
  }
  NodeReader reader(i_Sink);
  reader.m_MaxFileSize = 0;
  reader.m_KeepBlankText = 0;
  reader.m_SkipComments = 0;
  reader.m_TrimText = 0;
  // The reader's status, not process()'s result, tells whether the parse failed.
  reader.process(i_FileName, 0);
  m_Status = reader.m_Status;
  m_FileIdentity = reader.m_FileIdentity;
  m_TreeBytes = reader.m_TreeBytes;
  m_NodeCount = reader.m_NodeCount;
}

}  // namespace XmlPlugin
