#include "XmlNodeSink.h"

#include "PluginTracer.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {
namespace {

TErrorCode traceReaderMessage(const char* i_Function, int i_Level, const char* i_Kind,
                              const String& i_Message, int i_Line) {
  Trace trace(pluginTracer(), i_Function);
  HOST_TRACE(trace, i_Level) << i_Kind << " parsing XML file at line " << i_Line
                             << " message is: " << i_Message;
  return 0;
}

}  // namespace

TErrorCode XmlNodeSink::onNodeTree(Node* i_pTree) {
  m_pRoot.reset(i_pTree);
  return 0;
}

TErrorCode XmlNodeSink::onWarning(const String& i_Message, int i_Line) {
  return traceReaderMessage("XmlNodeSink::onWarning", 2, "Warning", i_Message, i_Line);
}

TErrorCode XmlNodeSink::onError(const String& i_Message, int i_Line) {
  keepFailure(i_Message, i_Line);
  return traceReaderMessage("XmlNodeSink::onError", 1, "Error", i_Message, i_Line);
}

TErrorCode XmlNodeSink::onCriticalError(const String& i_Message, int i_Line) {
  keepFailure(i_Message, i_Line);
  return traceReaderMessage("XmlNodeSink::onCriticalError", 1, "Critical error", i_Message, i_Line);
}

void XmlNodeSink::keepFailure(const String& i_Message, int i_Line) {
  if (m_Failure.isEmpty()) {
    m_Failure = i_Message;
    m_FailureLine = i_Line;
  }
}

}  // namespace XmlPlugin
