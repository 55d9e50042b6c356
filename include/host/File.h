// The host's file handle: the existence test, and what tells one file from another.
#pragma once

#include <cstdint>

#include "host/String.h"

// A file as the system knows it, whatever path leads to it: two paths to the same file give
// equal identities as long as the file is not changed, and a change of its size or
// modification time gives another identity.
struct FileIdentity {
  uint64_t m_Device = 0;
  uint64_t m_Inode = 0;
  int64_t m_Size = 0;
  int64_t m_ModifiedSeconds = 0;
  int64_t m_ModifiedNanoseconds = 0;

  bool operator<(const FileIdentity& i_Other) const;
  bool operator==(const FileIdentity& i_Other) const;

  // The identity of the file open on the descriptor.
  static bool ofDescriptor(int i_Descriptor, FileIdentity& o_Identity);
};

class File {
 public:
  explicit File(const String& i_Path);
  bool exists() const;  // true when something exists under the path
  // The identity of the file under the path, taken from the file once opened; false (and
  // o_Identity untouched) when it cannot be opened.
  bool identity(FileIdentity& o_Identity) const;

 private:
  String m_Path;
};
