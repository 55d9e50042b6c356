#include "host/Trace.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>

#include "Utf8.h"

namespace {

// Process-wide tracing state: the threshold and destination read once from the
// environment, the per-component tracers and the test listener.
class TraceSettings {
 public:
  static TraceSettings& get() {
    static TraceSettings s_Settings;
    return s_Settings;
  }

  int m_Level;
  Tracer::Listener m_Listener;
  std::map<int, std::unique_ptr<Tracer>> m_Tracers;

  void writeLine(const std::string& i_Line) {
    std::fputs(i_Line.c_str(), m_pOutput);
    std::fflush(m_pOutput);
  }

 private:
  TraceSettings() : m_Level(levelFromEnvironment()), m_pOutput(stderr) {
    const char* pFileName = std::getenv("XMLHOST_TRACE_FILE");
    if (pFileName != nullptr && *pFileName != '\0') {
      std::FILE* pFile = std::fopen(pFileName, "ae");
      if (pFile != nullptr) {
        m_pOutput = pFile;
      }
    }
  }

  ~TraceSettings() {
    if (m_pOutput != stderr) {
      std::fclose(m_pOutput);
    }
  }

  // A value that is not one of the levels is ignored, with one warning: read as a number it
  // would silently mean "everything" (9) or "off" (abc).
  static int levelFromEnvironment() {
    const char* pLevel = std::getenv("XMLHOST_TRACE_LEVEL");
    if (pLevel == nullptr || *pLevel == '\0') {
      return 0;
    }
    if (pLevel[1] != '\0' || pLevel[0] < '0' || pLevel[0] > '3') {
      std::fprintf(stderr, "XMLHOST_TRACE_LEVEL=%s ignored: the trace level is 0, 1, 2 or 3\n",
                   pLevel);
      return 0;
    }
    return pLevel[0] - '0';
  }

  std::FILE* m_pOutput;
};

}  // namespace

Tracer::Tracer(int i_Component) : m_Component(i_Component), m_Level(TraceSettings::get().m_Level) {}

Tracer& Tracer::getInstance(int i_Component) {
  std::unique_ptr<Tracer>& pTracer = TraceSettings::get().m_Tracers[i_Component];
  if (!pTracer) {
    pTracer.reset(new Tracer(i_Component));
  }
  return *pTracer;
}

void Tracer::setLevel(int i_Level) {
  TraceSettings& settings = TraceSettings::get();
  settings.m_Level = i_Level;
  for (auto& entry : settings.m_Tracers) {
    entry.second->m_Level = i_Level;
  }
}

void Tracer::setListener(Listener i_Listener) {
  TraceSettings::get().m_Listener = std::move(i_Listener);
}

void Tracer::write(const TraceRecord& i_Record) {
  TraceSettings& settings = TraceSettings::get();
  if (settings.m_Listener) {
    settings.m_Listener(i_Record);
    return;
  }
  writeLine(i_Record);
}

void Tracer::writeLine(const TraceRecord& i_Record) {
  std::string line = std::to_string(i_Record.level) + " " + std::to_string(i_Record.component) +
                     " " + i_Record.function + " " + i_Record.file + ":" +
                     std::to_string(i_Record.line) + " ";
  HostUtf8::appendEncoded(i_Record.text.data(), i_Record.text.size(), line);
  line.push_back('\n');
  TraceSettings::get().writeLine(line);
}

Trace::Record::Record(Tracer& i_Tracer, int i_Level, const char* i_Function, const char* i_File,
                      int i_Line)
    : m_pTracer(&i_Tracer),
      m_Level(i_Level),
      m_Function(i_Function),
      m_File(i_File),
      m_Line(i_Line) {}

Trace::Record::Record(Record&& i_Other) noexcept
    : m_pTracer(i_Other.m_pTracer),
      m_Level(i_Other.m_Level),
      m_Function(i_Other.m_Function),
      m_File(i_Other.m_File),
      m_Line(i_Other.m_Line),
      m_Text(std::move(i_Other.m_Text)) {
  i_Other.m_pTracer = nullptr;
}

Trace::Record::~Record() {
  if (m_pTracer == nullptr) {
    return;
  }
  // A trace must never take the traced operation down.
  try {
    m_pTracer->write(
        TraceRecord{m_Level, m_pTracer->component(), m_Function, m_File, m_Line, m_Text.str()});
  } catch (...) {
  }
}

Trace::Record& Trace::Record::operator<<(const String& i_Value) {
  m_Text << i_Value.c_str();
  return *this;
}

Trace::Record& Trace::Record::operator<<(const wchar_t* i_Value) {
  m_Text << (i_Value == nullptr ? L"(null)" : i_Value);
  return *this;
}

Trace::Record& Trace::Record::operator<<(const char* i_Value) {
  return *this << String(i_Value == nullptr ? "(null)" : i_Value);
}

Trace::Record& Trace::Record::operator<<(wchar_t i_Value) {
  return append(i_Value);
}

Trace::Record& Trace::Record::operator<<(bool i_Value) {
  m_Text << (i_Value ? L"true" : L"false");
  return *this;
}

Trace::Record& Trace::Record::operator<<(int i_Value) {
  return append(i_Value);
}

Trace::Record& Trace::Record::operator<<(unsigned i_Value) {
  return append(i_Value);
}

Trace::Record& Trace::Record::operator<<(long i_Value) {
  return append(i_Value);
}

Trace::Record& Trace::Record::operator<<(unsigned long i_Value) {
  return append(i_Value);
}

Trace::Record& Trace::Record::operator<<(long long i_Value) {
  return append(i_Value);
}

Trace::Record& Trace::Record::operator<<(unsigned long long i_Value) {
  return append(i_Value);
}

Trace::Record& Trace::Record::operator<<(double i_Value) {
  return append(i_Value);
}

Trace::Record& Trace::Record::operator<<(const void* i_Value) {
  return append(i_Value);
}
