#include "RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "host/NodeReader.h"

RegularFile::RegularFile(const String& i_Path, uint64_t i_MaxSize)
    : m_Descriptor(-1), m_MaxSize(i_MaxSize), m_BytesRead(0), m_Status(0) {
  // Non-blocking, so that opening a FIFO without a writer returns at once.
  m_Descriptor = open(i_Path.toNarrow().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (m_Descriptor < 0) {
    fail(NODE_READER_STATUS_UNREADABLE,
         String(L"cannot open file: ").concat(String(strerror(errno))));
    return;
  }
  struct stat status;
  if (fstat(m_Descriptor, &status) != 0 || !FileIdentity::ofDescriptor(m_Descriptor, m_Identity)) {
    fail(NODE_READER_STATUS_UNREADABLE,
         String(L"cannot examine file: ").concat(String(strerror(errno))));
  } else if (!S_ISREG(status.st_mode)) {
    fail(NODE_READER_STATUS_REFUSED, String(L"not a regular file"));
  } else if (static_cast<uint64_t>(status.st_size) > m_MaxSize) {
    failTooLarge();
  }
}

RegularFile::~RegularFile() {
  if (m_Descriptor >= 0) {
    close(m_Descriptor);
  }
}

void RegularFile::fail(int32_t i_Status, const String& i_Reason) {
  m_Status = i_Status;
  m_Failure = i_Reason;
}

void RegularFile::failTooLarge() {
  fail(NODE_READER_STATUS_REFUSED,
       String(L"file larger than " + std::to_wstring(m_MaxSize) + L" bytes"));
}

long RegularFile::read(void* o_pBuffer, size_t i_Size) {
  if (m_Status != 0) {
    return -1;
  }
  ssize_t count = 0;
  do {
    count = ::read(m_Descriptor, o_pBuffer, i_Size);
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    fail(NODE_READER_STATUS_UNREADABLE,
         String(L"cannot read file: ").concat(String(strerror(errno))));
    return -1;
  }
  // The file may have grown since it was opened.
  m_BytesRead += static_cast<uint64_t>(count);
  if (m_BytesRead > m_MaxSize) {
    failTooLarge();
    return -1;
  }
  return static_cast<long>(count);
}
