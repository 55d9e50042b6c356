#include "host/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <tuple>

namespace {

auto fieldsOf(const FileIdentity& i_Identity) {
  return std::tie(i_Identity.m_Device, i_Identity.m_Inode, i_Identity.m_Size,
                  i_Identity.m_ModifiedSeconds, i_Identity.m_ModifiedNanoseconds);
}

}  // namespace

bool FileIdentity::operator<(const FileIdentity& i_Other) const {
  return fieldsOf(*this) < fieldsOf(i_Other);
}

bool FileIdentity::operator==(const FileIdentity& i_Other) const {
  return fieldsOf(*this) == fieldsOf(i_Other);
}

bool FileIdentity::ofDescriptor(int i_Descriptor, FileIdentity& o_Identity) {
  struct stat status;
  if (fstat(i_Descriptor, &status) != 0) {
    return false;
  }
  o_Identity.m_Device = status.st_dev;
  o_Identity.m_Inode = status.st_ino;
  o_Identity.m_Size = status.st_size;
  o_Identity.m_ModifiedSeconds = status.st_mtim.tv_sec;
  o_Identity.m_ModifiedNanoseconds = status.st_mtim.tv_nsec;
  return true;
}

File::File(const String& i_Path) : m_Path(i_Path) {}

bool File::exists() const {
  struct stat status;
  return stat(m_Path.toNarrow().c_str(), &status) == 0;
}

bool File::identity(FileIdentity& o_Identity) const {
  // Non-blocking, so that opening a FIFO without a writer returns at once.
  const int descriptor = open(m_Path.toNarrow().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    return false;
  }
  const bool known = FileIdentity::ofDescriptor(descriptor, o_Identity);
  close(descriptor);
  return known;
}
