#include "core/files/record_append.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "core/files/descriptor.h"
#include "core/files/torn_tail.h"

namespace zorvel {

using files::Descriptor;

namespace {

bool readAll(int fd, std::size_t size, std::string& bytes) {
  bytes.resize(size);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t n = ::pread(fd, bytes.data() + done, size - done, static_cast<off_t>(done));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

// Cuts what a write that failed half-way left of a record off the end of the file, so that
// the record going on now does not glue to it: the bytes after the last line ending of either
// kind, and, in a CR LF file, a line whose LF never came. Only the last byte is read when the
// file ends whole, which is the usual case. `size` becomes the length kept.
bool repairTail(int fd, std::size_t& size, std::string_view lineEnding) {
  if (size == 0) return true;
  char last = 0;
  if (::pread(fd, &last, 1, static_cast<off_t>(size - 1)) != 1) return false;
  if (last == '\n' || (last == '\r' && lineEnding != "\r\n")) return true;
  std::string bytes;
  if (!readAll(fd, size, bytes)) return false;
  std::string_view whole(bytes);
  if (last == '\r') whole.remove_suffix(1);
  size = WholeLinesLength(whole);
  return ::ftruncate(fd, static_cast<off_t>(size)) == 0;
}

// A record the disk took only part of (full, over quota) is taken off again at once, so the
// file ends with its last whole record whatever the operator decides next; cutting a file
// shorter needs no free space. The write's own failure stays the one reported.
bool writeWholeOrNothing(int fd, std::size_t start, std::string_view record) {
  if (files::WriteAll(fd, record) && ::fdatasync(fd) == 0) return true;
  const int cause = errno;
  if (::ftruncate(fd, static_cast<off_t>(start)) == 0) ::fdatasync(fd);
  errno = cause;
  return false;
}

bool appendDurably(const std::string& path, std::string_view record, std::string_view lineEnding) {
  struct stat before {};
  const bool existed = ::stat(path.c_str(), &before) == 0;
  Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  if (file.get() < 0) return false;
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) return false;
  std::size_t size = static_cast<std::size_t>(info.st_size);
  if (!repairTail(file.get(), size, lineEnding)) return false;
  if (!writeWholeOrNothing(file.get(), size, record)) return false;
  if (!file.close()) return false;
  return existed || files::SyncFolderOf(path);
}

}  // namespace

bool AppendRecordDurably(const std::string& path, std::string_view record,
                         std::string_view lineEnding, std::string* reason) {
  const bool ok = appendDurably(path, record, lineEnding);
  if (!ok && reason != nullptr) *reason = std::strerror(errno);
  return ok;
}

bool ApplyTailRepair(const std::string& path, std::size_t keep, std::string_view complete,
                     std::string* reason) {
  Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  bool ok = file.valid() && ::ftruncate(file.get(), static_cast<off_t>(keep)) == 0;
  if (ok && !complete.empty()) {
    ok = ::pwrite(file.get(), complete.data(), complete.size(), static_cast<off_t>(keep)) ==
         static_cast<ssize_t>(complete.size());
  }
  ok = ok && ::fdatasync(file.get()) == 0;
  if (!ok && reason != nullptr) *reason = std::strerror(errno);
  return file.close() && ok;
}

void RemoveFilesDurably(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) std::remove(path.c_str());
  if (!paths.empty()) files::SyncFolderOf(paths.front());
}

}  // namespace zorvel
