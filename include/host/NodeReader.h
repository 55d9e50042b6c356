// The host's XML reader: reads one file into a Node tree and reports to a NodeSink.
//
// Hostile documents are refused, never trusted: no external entity, external DTD or
// parameter entity is loaded; a document that declares entities is refused; only
// regular files are read; files, nesting, names and attribute counts are bounded
// (see the limits below). Every refusal reports an error to the sink and makes the
// status non-zero.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/File.h"
#include "host/String.h"
#include "host/Types.h"

class Node;

class NodeSink {
 public:
  // The finished tree; the sink owns it from then on.
  virtual TErrorCode onNodeTree(Node* i_pTree) = 0;
  // Messages of the reader, with the line they concern.
  virtual TErrorCode onWarning(const String& i_Message, int i_Line);
  virtual TErrorCode onError(const String& i_Message, int i_Line);
  virtual TErrorCode onCriticalError(const String& i_Message, int i_Line);
  virtual ~NodeSink();
};

// Values of NodeReader::m_Status.
const int32_t NODE_READER_STATUS_OK = 0;
const int32_t NODE_READER_STATUS_UNREADABLE = 1;  // the file cannot be opened or read
const int32_t NODE_READER_STATUS_REFUSED = 2;     // refused: file kind, a limit, entities
const int32_t NODE_READER_STATUS_MALFORMED = 3;   // not well-formed, or an unknown encoding

// Limits of the reader.
const uint32_t NODE_READER_MAX_FILE_SIZE = 64u * 1024u * 1024u;  // bytes
const int NODE_READER_MAX_DEPTH = 2048;                          // nested elements
const int NODE_READER_MAX_NAME_LENGTH = 4096;                    // characters of a name
const int NODE_READER_MAX_ATTRIBUTES = 4096;                     // attributes of one element
const uint32_t NODE_READER_CHUNK_SIZE = 64u * 1024u;             // bytes parsed at a time

class NodeReader {
 public:
  explicit NodeReader(NodeSink& i_Sink);
  ~NodeReader();
  NodeReader(const NodeReader&) = delete;
  NodeReader& operator=(const NodeReader&) = delete;

  // Reads the file and hands the tree to the sink. Returns m_Status. i_Flags is reserved (0).
  // Every failure is reported once to the sink: a malformed document to onError, anything
  // refused or unreadable to onCriticalError, with the line it concerns (0 for the file).
  TErrorCode process(const String& i_FileName, int i_Flags);

  // Options; plug-ins set all four to zero before process().
  uint32_t m_MaxFileSize;   // 0: NODE_READER_MAX_FILE_SIZE
  uint8_t m_KeepBlankText;  // 1: keep text nodes made only of white space
  uint8_t m_SkipComments;   // 1: drop comments and processing instructions
  uint8_t m_TrimText;       // 1: trim white space around text
  // 0 after a successful process(), non-zero after a failure (NODE_READER_STATUS_*).
  int32_t m_Status;
  // Bytes read and parsed at a time; 0: NODE_READER_CHUNK_SIZE.
  uint32_t m_ChunkSize;
  // After a malformed document: the column (0-based, as Expat counts) of the error, on the
  // line reported to the sink.
  uint32_t m_ErrorColumn;

  // After a successful process(): the file read (as it was when opened), and the bytes and
  // nodes of the tree handed to the sink.
  FileIdentity m_FileIdentity;
  size_t m_TreeBytes;
  size_t m_NodeCount;

 private:
  NodeSink& m_Sink;
};
