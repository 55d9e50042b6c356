// Test helper: the trace records written while a collector lives.
#pragma once

#include <string>
#include <vector>

#include "XmlPlugin/XmlPluginReasons.h"
#include "XmlPluginConstants.h"
#include "host/String.h"
#include "host/Trace.h"

// Raises the trace level to i_Level and keeps every record written until it is destroyed, which
// removes the listener and restores the level the component had.
class TraceCollector {
 public:
  explicit TraceCollector(int i_Level)
      : m_PreviousLevel(Tracer::getInstance(XmlPlugin::TRACE_COMPONENT).getLevel()) {
    Tracer::setLevel(i_Level);
    Tracer::setListener([this](const TraceRecord& i_Record) { m_Records.push_back(i_Record); });
  }
  ~TraceCollector() {
    Tracer::setListener(Tracer::Listener());
    Tracer::setLevel(m_PreviousLevel);
  }

  // The texts of the records of i_Function, or of every record but the rule authors' reasons.
  std::vector<std::string> texts(const std::string& i_Function = "") const {
    std::vector<std::string> result;
    for (const TraceRecord& record : m_Records) {
      const bool reason = record.function == std::string(XML_PLUGIN_REASON_FUNCTION);
      if (i_Function.empty() ? !reason : record.function == i_Function) {
        result.push_back(String(record.text.c_str()).toNarrow());
      }
    }
    return result;
  }

  // "level function: text" for each record of the plug-in's component.
  std::vector<std::string> lines() const {
    std::vector<std::string> result;
    for (const TraceRecord& record : m_Records) {
      if (record.component == XmlPlugin::TRACE_COMPONENT) {
        result.push_back(std::to_string(record.level) + " " + record.function + ": " +
                         String(record.text.c_str()).toNarrow());
      }
    }
    return result;
  }

  std::vector<TraceRecord> m_Records;

 private:
  int m_PreviousLevel;
};
