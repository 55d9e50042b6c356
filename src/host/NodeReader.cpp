// The reader drives Expat over a regular file, chunk by chunk, and hands its events to a
// TreeBuilder. Anything that could pull in outside content is refused: parameter entities
// and the external DTD are never read, entity declarations stop the parse, and so do
// references to entities that were not declared (their text would otherwise vanish).
#include "host/NodeReader.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <new>

#include "RegularFile.h"
#include "TreeBuilder.h"
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

namespace {

struct ParserDeleter {
  void operator()(XML_Parser i_pParser) const { XML_ParserFree(i_pParser); }
};

// One parse of one file: the Expat parser, its userData, and the outcome.
class ExpatSession {
 public:
  explicit ExpatSession(TreeBuilder& i_Builder)
      : m_Builder(i_Builder), m_pParser(XML_ParserCreate(nullptr)), m_Stopped(false), m_Line(0) {
    if (!m_pParser) {
      throw std::bad_alloc();
    }
    XML_Parser pParser = m_pParser.get();
    XML_SetUserData(pParser, this);
    XML_SetParamEntityParsing(pParser, XML_PARAM_ENTITY_PARSING_NEVER);
    XML_SetElementHandler(pParser, onStartElement, onEndElement);
    XML_SetCharacterDataHandler(pParser, onCharacters);
    XML_SetCommentHandler(pParser, onComment);
    XML_SetProcessingInstructionHandler(pParser, onProcessingInstruction);
    XML_SetEntityDeclHandler(pParser, onEntityDeclaration);
    XML_SetSkippedEntityHandler(pParser, onSkippedEntity);
    XML_SetExternalEntityRefHandler(pParser, onExternalEntity);
  }

  // Parses the whole file. On failure the sink has been told and the status is returned.
  int32_t parse(RegularFile& io_File, size_t i_ChunkSize, NodeSink& io_Sink) {
    for (;;) {
      void* pBuffer = XML_GetBuffer(m_pParser.get(), static_cast<int>(i_ChunkSize));
      if (pBuffer == nullptr) {
        return malformed(io_Sink);
      }
      const long count = io_File.read(pBuffer, i_ChunkSize);
      if (count < 0) {
        io_Sink.onCriticalError(io_File.failure(), 0);
        return io_File.status();
      }
      const bool isFinal = count == 0;
      if (XML_ParseBuffer(m_pParser.get(), static_cast<int>(count), isFinal) != XML_STATUS_OK) {
        return m_Stopped ? refused(io_Sink) : malformed(io_Sink);
      }
      if (isFinal) {
        return NODE_READER_STATUS_OK;
      }
    }
  }

  uint32_t errorColumn() const { return m_ErrorColumn; }

 private:
  static ExpatSession& session(void* i_pUserData) {
    return *static_cast<ExpatSession*>(i_pUserData);
  }

  // Runs one event on the builder; the first refusal stops the parser for good.
  template <typename Event>
  static void handle(void* i_pUserData, Event i_Event) {
    ExpatSession& self = session(i_pUserData);
    if (self.m_Stopped) {
      return;
    }
    bool accepted = false;
    try {
      accepted = i_Event(self.m_Builder);
    } catch (...) {
      // Out of memory: nothing may unwind through Expat's C frames.
    }
    if (!accepted) {
      self.m_Stopped = true;
      self.m_Line = lineOf(self.m_pParser.get());
      XML_StopParser(self.m_pParser.get(), XML_FALSE);
    }
  }

  static void XMLCALL onStartElement(void* i_pUserData, const XML_Char* i_Name,
                                     const XML_Char** i_Attributes) {
    handle(i_pUserData,
           [&](TreeBuilder& io_Builder) { return io_Builder.startElement(i_Name, i_Attributes); });
  }

  static void XMLCALL onEndElement(void* i_pUserData, const XML_Char*) {
    handle(i_pUserData, [](TreeBuilder& io_Builder) { return io_Builder.endElement(); });
  }

  static void XMLCALL onCharacters(void* i_pUserData, const XML_Char* i_Text, int i_Length) {
    handle(i_pUserData,
           [&](TreeBuilder& io_Builder) { return io_Builder.characters(i_Text, i_Length); });
  }

  static void XMLCALL onComment(void* i_pUserData, const XML_Char* i_Text) {
    handle(i_pUserData, [&](TreeBuilder& io_Builder) { return io_Builder.comment(i_Text); });
  }

  static void XMLCALL onProcessingInstruction(void* i_pUserData, const XML_Char* i_Target,
                                              const XML_Char*) {
    handle(i_pUserData,
           [&](TreeBuilder& io_Builder) { return io_Builder.processingInstruction(i_Target); });
  }

  static void XMLCALL onEntityDeclaration(void* i_pUserData, const XML_Char* i_Name, int,
                                          const XML_Char*, int, const XML_Char*, const XML_Char*,
                                          const XML_Char*, const XML_Char*) {
    handle(i_pUserData, [&](TreeBuilder& io_Builder) {
      return io_Builder.refuse(
          String(L"entity declarations are not allowed: ").concat(String(i_Name)));
    });
  }

  static void XMLCALL onSkippedEntity(void* i_pUserData, const XML_Char* i_Name, int) {
    handle(i_pUserData, [&](TreeBuilder& io_Builder) {
      return io_Builder.refuse(
          String(L"reference to an undeclared entity: ").concat(String(i_Name)));
    });
  }

  static int XMLCALL onExternalEntity(XML_Parser i_pParser, const XML_Char*, const XML_Char*,
                                      const XML_Char*, const XML_Char*) {
    handle(XML_GetUserData(i_pParser), [](TreeBuilder& io_Builder) {
      return io_Builder.refuse(String(L"external entities are not loaded"));
    });
    return XML_STATUS_ERROR;
  }

  static int lineOf(XML_Parser i_pParser) {
    const XML_Size line = XML_GetCurrentLineNumber(i_pParser);
    return line > static_cast<XML_Size>(INT32_MAX) ? INT32_MAX : static_cast<int>(line);
  }

  int32_t malformed(NodeSink& io_Sink) {
    const XML_Size column = XML_GetCurrentColumnNumber(m_pParser.get());
    m_ErrorColumn =
        column > static_cast<XML_Size>(UINT32_MAX) ? UINT32_MAX : static_cast<uint32_t>(column);
    io_Sink.onError(String(XML_ErrorString(XML_GetErrorCode(m_pParser.get()))),
                    lineOf(m_pParser.get()));
    return NODE_READER_STATUS_MALFORMED;
  }

  int32_t refused(NodeSink& io_Sink) {
    const String& reason = m_Builder.failure();
    io_Sink.onCriticalError(reason.isEmpty() ? String(L"out of memory") : reason, m_Line);
    return NODE_READER_STATUS_REFUSED;
  }

  TreeBuilder& m_Builder;
  std::unique_ptr<XML_ParserStruct, ParserDeleter> m_pParser;
  bool m_Stopped;
  int m_Line;                  // where the parse was stopped
  uint32_t m_ErrorColumn = 0;  // where a malformed document went wrong
};

}  // namespace

NodeReader::NodeReader(NodeSink& i_Sink)
    : m_MaxFileSize(0),
      m_KeepBlankText(0),
      m_SkipComments(0),
      m_TrimText(0),
      m_Status(NODE_READER_STATUS_OK),
      m_ChunkSize(0),
      m_ErrorColumn(0),
      m_TreeBytes(0),
      m_NodeCount(0),
      m_Sink(i_Sink) {}

NodeReader::~NodeReader() {}

TErrorCode NodeReader::process(const String& i_FileName, int) {
  try {
    RegularFile file(i_FileName, m_MaxFileSize != 0 ? m_MaxFileSize : NODE_READER_MAX_FILE_SIZE);
    if (file.status() != 0) {
      m_Sink.onCriticalError(file.failure(), 0);
      return m_Status = file.status();
    }
    TreeBuilder builder(TreeOptions{m_KeepBlankText != 0, m_SkipComments != 0, m_TrimText != 0});
    ExpatSession session(builder);
    // No read is larger than the largest file, which keeps the size an int for Expat. Reading
    // the whole file at once was measured twice: no faster, as its buffer misses the processor's
    // cache that a 64 KiB one stays in, and it holds the file's size more while loading. Parsed
    // as one final chunk, it spares Expat counting lines and columns after every chunk (a tenth
    // of Expat's instructions), which the fresh pages of the large buffer cost back.
    const uint32_t chunkSize = m_ChunkSize != 0 ? std::min(m_ChunkSize, NODE_READER_MAX_FILE_SIZE)
                                                : NODE_READER_CHUNK_SIZE;
    m_Status = session.parse(file, chunkSize, m_Sink);
    m_ErrorColumn = session.errorColumn();
    if (m_Status != NODE_READER_STATUS_OK) {
      return m_Status;
    }
    std::unique_ptr<DocumentRoot> pTree = builder.finish();
    m_FileIdentity = file.identity();
    m_TreeBytes = pTree ? pTree->bytes() : 0;
    m_NodeCount = pTree ? pTree->nodeCount() : 0;
    m_Sink.onNodeTree(pTree.release());
  } catch (...) {
    m_Status = NODE_READER_STATUS_REFUSED;
    m_Sink.onCriticalError(String(L"out of memory"), 0);
  }
  return m_Status;
}
