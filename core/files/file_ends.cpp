#include "core/files/file_ends.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "core/files/descriptor.h"

namespace zorvel {

namespace {

bool readAt(int fd, std::size_t start, std::size_t length, std::string& bytes) {
  bytes.assign(length, '\0');
  std::size_t got = 0;
  while (got < length) {
    const ssize_t n =
        ::pread(fd, bytes.data() + got, length - got, static_cast<off_t>(start + got));
    if (n < 0) return false;
    if (n == 0) break;  // the file is shorter than it was a moment ago
    got += static_cast<std::size_t>(n);
  }
  bytes.resize(got);
  return true;
}

}  // namespace

bool ReadFileEnds(const std::string& path, std::size_t endBytes, FileEnds& ends) {
  files::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat info {};
  if (!file.valid() || ::fstat(file.get(), &info) != 0) return false;
  ends.size = static_cast<std::size_t>(info.st_size);
  if (ends.size <= 2 * endBytes) {
    ends.tailStart = 0;
    if (!readAt(file.get(), 0, ends.size, ends.head)) return false;
    ends.size = ends.head.size();
    ends.tail = ends.head;
    return true;
  }
  ends.tailStart = ends.size - endBytes;
  return readAt(file.get(), 0, endBytes, ends.head) &&
         readAt(file.get(), ends.tailStart, endBytes, ends.tail);
}

bool ReadFileHead(const std::string& path, std::size_t length, std::string& bytes) {
  files::Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  return file.valid() && readAt(file.get(), 0, length, bytes);
}

}  // namespace zorvel
