// The host's tracer.
//
// A Tracer per component writes one line per record: level, component, function,
// source position and text. The threshold comes from XMLHOST_TRACE_LEVEL (0-3,
// default 0 = off) and the destination from XMLHOST_TRACE_FILE (default stderr),
// both read once. Levels: 1 error, 2 warning, 3 detail; a record is written when its
// level is at most the threshold.
//
// Tracing costs nothing when off: HOST_TRACE compares one integer and evaluates no
// operand of the streaming when the level is filtered out.
//
//   Trace trace(Tracer::getInstance(5), "XPathEngine::start");
//   HOST_TRACE(trace, 3) << "Parsing [" << xpath << "]";
#pragma once

#include <functional>
#include <sstream>
#include <string>

#include "host/String.h"

struct TraceRecord {
  int level;
  int component;
  const char* function;
  const char* file;
  int line;
  std::wstring text;
};

class Tracer {
 public:
  typedef std::function<void(const TraceRecord&)> Listener;

  static Tracer& getInstance(int i_Component);

  bool isEnabled(int i_Level) const { return i_Level <= m_Level && i_Level > 0; }
  int getLevel() const { return m_Level; }
  // Overrides the threshold of every component (tests).
  static void setLevel(int i_Level);
  // Records go to the listener instead of the file while one is set (tests); an empty
  // listener restores the file.
  static void setListener(Listener i_Listener);

  void write(const TraceRecord& i_Record);
  // Writes the record as a line to the trace file, whether or not a listener is set (a
  // listener that keeps some records and passes the others on).
  static void writeLine(const TraceRecord& i_Record);
  int component() const { return m_Component; }

 private:
  explicit Tracer(int i_Component);
  int m_Component;
  int m_Level;
};

class Trace {
 public:
  // One record under construction; written when it goes out of scope.
  class Record {
   public:
    Record(Tracer& i_Tracer, int i_Level, const char* i_Function, const char* i_File, int i_Line);
    Record(Record&& i_Other) noexcept;
    ~Record();

    Record& operator<<(const String& i_Value);
    Record& operator<<(const wchar_t* i_Value);
    Record& operator<<(const char* i_Value);
    Record& operator<<(wchar_t i_Value);
    Record& operator<<(bool i_Value);
    Record& operator<<(int i_Value);
    Record& operator<<(unsigned i_Value);
    Record& operator<<(long i_Value);
    Record& operator<<(unsigned long i_Value);
    Record& operator<<(long long i_Value);
    Record& operator<<(unsigned long long i_Value);
    Record& operator<<(double i_Value);
    Record& operator<<(const void* i_Value);

   private:
    template <typename T>
    Record& append(const T& i_Value) {
      m_Text << i_Value;
      return *this;
    }

    Tracer* m_pTracer;
    int m_Level;
    const char* m_Function;
    const char* m_File;
    int m_Line;
    std::wostringstream m_Text;
  };

  Trace(Tracer& i_Tracer, const char* i_Function) : m_Tracer(i_Tracer), m_Function(i_Function) {}

  bool on(int i_Level) const { return m_Tracer.isEnabled(i_Level); }
  Record record(int i_Level, const char* i_File, int i_Line) const {
    return Record(m_Tracer, i_Level, m_Function, i_File, i_Line);
  }

 private:
  Tracer& m_Tracer;
  const char* m_Function;
};

// Streams a record only when its level passes the threshold.
#define HOST_TRACE(trace, level) \
  if (!(trace).on(level)) {      \
  } else                         \
    (trace).record((level), __FILE__, __LINE__)
