#include "XmlNodeSink.h"

#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

TErrorCode XmlNodeSink::onNodeTree(Node* i_pTree) {
  m_pRoot.reset(i_pTree);
  return 0;
}

TErrorCode XmlNodeSink::onWarning(const String& i_Message, int i_Line) {
  Trace trace(Tracer::getInstance(TRACE_COMPONENT), "XmlNodeSink::onWarning");
  HOST_TRACE(trace, 2) << "Warning parsing XML file at line " << i_Line
                       << " message is: " << i_Message;
  return 0;
}

TErrorCode XmlNodeSink::onError(const String& i_Message, int i_Line) {
  Trace trace(Tracer::getInstance(TRACE_COMPONENT), "XmlNodeSink::onError");
  HOST_TRACE(trace, 1) << "Error parsing XML file at line " << i_Line
                       << " message is: " << i_Message;
  return 0;
}

TErrorCode XmlNodeSink::onCriticalError(const String& i_Message, int i_Line) {
  Trace trace(Tracer::getInstance(TRACE_COMPONENT), "XmlNodeSink::onCriticalError");
  HOST_TRACE(trace, 1) << "Critical error parsing XML file at line " << i_Line
                       << " message is: " << i_Message;
  return 0;
}

}  // namespace XmlPlugin
