// A regular file opened for reading within a size limit.
//
// Anything but a regular file (a FIFO, a device, a directory) is refused before a byte is
// read, so a scan cannot block on a pipe or read an endless device.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/File.h"
#include "host/String.h"

class RegularFile {
 public:
  RegularFile(const String& i_Path, uint64_t i_MaxSize);
  ~RegularFile();
  RegularFile(const RegularFile&) = delete;
  RegularFile& operator=(const RegularFile&) = delete;

  // Reads up to i_Size bytes: the count read, 0 at the end of the file, -1 on failure.
  long read(void* o_pBuffer, size_t i_Size);

  // The file as it was when opened.
  const FileIdentity& identity() const { return m_Identity; }

  // 0 while the file is usable, else a NODE_READER_STATUS_* value; failure() says why.
  int32_t status() const { return m_Status; }
  const String& failure() const { return m_Failure; }

 private:
  void fail(int32_t i_Status, const String& i_Reason);
  void failTooLarge();

  int m_Descriptor;
  FileIdentity m_Identity;
  uint64_t m_MaxSize;
  uint64_t m_BytesRead;
  int32_t m_Status;
  String m_Failure;
};
