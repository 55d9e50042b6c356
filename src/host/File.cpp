#include "host/File.h"

#include <sys/stat.h>

File::File(const String& i_Path) : m_Path(i_Path) {}

bool File::exists() const {
  struct stat status;
  return stat(m_Path.toNarrow().c_str(), &status) == 0;
}
