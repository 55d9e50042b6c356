#include "host/NodeReader.h"

#include "host/Node.h"

TErrorCode NodeSink::onWarning(const String&, int) {
  return 0;
}
TErrorCode NodeSink::onError(const String&, int) {
  return 0;
}
TErrorCode NodeSink::onCriticalError(const String&, int) {
  return 0;
}
NodeSink::~NodeSink() {}

NodeReader::NodeReader(NodeSink& i_Sink)
    : m_MaxFileSize(0),
      m_KeepBlankText(0),
      m_SkipComments(0),
      m_TrimText(0),
      m_Status(0),
      m_Sink(i_Sink) {}

NodeReader::~NodeReader() {}

TErrorCode NodeReader::process(const String&, int) {
  m_Status = HOST_ERROR_NOT_SUPPORTED;
  return m_Status;
}
