#include "ReasonCollector.h"

#include <algorithm>
#include <cstring>

#include "TextExcerpt.h"
#include "XmlPlugin/XmlPluginReasons.h"
#include "host/String.h"
#include "host/Trace.h"

namespace XmlQuery {

namespace {

const int TRACE_COMPONENT = 5;

// The column a reason names ("... at column N: ..."), 0 when it names none.
size_t columnOf(const std::string& i_Reason) {
  static const char COLUMN[] = "at column ";
  const size_t at = i_Reason.find(COLUMN);
  return at == std::string::npos
             ? 0
             : std::strtoul(i_Reason.c_str() + at + strlen(COLUMN), nullptr, 10);
}
}  // namespace

ReasonCollector::ReasonCollector() : m_UserLevel(Tracer::getInstance(TRACE_COMPONENT).getLevel()) {
  Tracer::setLevel(std::max(m_UserLevel, 1));
  Tracer::setListener([this](const TraceRecord& i_Record) {
    if (i_Record.level == 1 && i_Record.component == TRACE_COMPONENT &&
        std::strcmp(i_Record.function, XML_PLUGIN_REASON_FUNCTION) == 0) {
      if (m_Reason.empty()) {
        m_Reason = String(i_Record.text).toNarrow();
      }
    }
    if (i_Record.level <= m_UserLevel) {
      Tracer::writeLine(i_Record);
    }
  });
}

ReasonCollector::~ReasonCollector() {
  Tracer::setListener(Tracer::Listener());
  Tracer::setLevel(m_UserLevel);
}

std::string ReasonCollector::take() {
  std::string reason;
  reason.swap(m_Reason);
  return reason;
}

void printReason(const std::string& i_Reason, const std::string& i_XPath,
                 const std::string& i_Prefix, std::ostream& o_Output) {
  if (i_Reason.empty()) {
    return;
  }
  o_Output << i_Prefix << i_Reason << '\n';
  if (const size_t column = columnOf(i_Reason)) {
    printExcerpt(i_XPath, column, i_Prefix, o_Output);
  }
}

}  // namespace XmlQuery
