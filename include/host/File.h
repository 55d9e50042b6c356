// The host's file handle: only the existence test is used by plug-ins.
#pragma once

#include "host/String.h"

class File {
 public:
  explicit File(const String& i_Path);
  bool exists() const;  // true when something exists under the path

 private:
  String m_Path;
};
