// The tracer of the plug-in's trace component, looked up once for the process: the host's
// lookup searches a map, and many operations of an evaluation open a trace record. Its
// threshold still follows Tracer::setLevel.
#pragma once

#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {

inline Tracer& pluginTracer() {
  static Tracer& s_Tracer = Tracer::getInstance(TRACE_COMPONENT);
  return s_Tracer;
}

}  // namespace XmlPlugin
