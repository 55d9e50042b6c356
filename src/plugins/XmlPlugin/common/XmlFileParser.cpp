#include "XmlFileParser.h"

#include "PluginTracer.h"
#include "XmlPlugin/XmlPluginReasons.h"
#include "XmlPluginConstants.h"
#include "host/File.h"
#include "host/NodeReader.h"
#include "host/Trace.h"

namespace XmlPlugin {

namespace {

// One record, in the words of a rule author, of why the file gave no tree.
void traceReason(const String& i_FileName, int32_t i_Status, const XmlNodeSink& i_Sink,
                 uint32_t i_Column) {
  Trace reason(pluginTracer(), XML_PLUGIN_REASON_FUNCTION);
  if (!reason.on(1)) {
    return;
  }
  Trace::Record record = reason.record(1, __FILE__, __LINE__);
  record << "XML file " << i_FileName;
  if (i_Status == XmlFileParser::FILE_MISSING) {
    record << ": not found";
  } else if (i_Status == NODE_READER_STATUS_MALFORMED) {
    // Expat counts columns from 0.
    record << ": not well-formed at line " << i_Sink.getFailureLine() << " column " << i_Column + 1
           << ": " << i_Sink.getFailure();
  } else if (i_Sink.getFailureLine() > 0) {
    record << ": refused at line " << i_Sink.getFailureLine() << ": " << i_Sink.getFailure();
  } else {
    record << ": " << i_Sink.getFailure();
  }
}

}  // namespace

XmlFileParser::XmlFileParser(const String& i_FileName, XmlNodeSink& i_Sink) {
  if (!File(i_FileName).exists()) {
    m_Status = FILE_MISSING;
    traceReason(i_FileName, m_Status, i_Sink, 0);
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
  if (m_Status != 0) {
    traceReason(i_FileName, m_Status, i_Sink, reader.m_ErrorColumn);
  }
  m_FileIdentity = reader.m_FileIdentity;
  m_TreeBytes = reader.m_TreeBytes;
  m_NodeCount = reader.m_NodeCount;
}

}  // namespace XmlPlugin
