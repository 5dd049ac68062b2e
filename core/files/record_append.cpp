#include "core/files/record_append.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "core/files/descriptor.h"

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

// Cuts a partial last line off. Only the tail is read when the file ends whole, which is the
// usual case; the whole file is read only to find where a broken tail starts.
bool repairTail(int fd, std::size_t size, std::string_view lineEnding) {
  if (size == 0 || lineEnding.empty()) return true;
  const std::size_t tailLength = std::min(size, lineEnding.size());
  std::string tail(tailLength, '\0');
  const ssize_t n = ::pread(fd, tail.data(), tailLength, static_cast<off_t>(size - tailLength));
  if (n != static_cast<ssize_t>(tailLength)) return false;
  if (tail.size() == lineEnding.size() && tail == lineEnding) return true;
  std::string bytes;
  if (!readAll(fd, size, bytes)) return false;
  const std::size_t whole = WholeLinesLength(bytes, lineEnding);
  if (::ftruncate(fd, static_cast<off_t>(whole)) != 0) return false;
  return ::fdatasync(fd) == 0;
}

}  // namespace

std::size_t WholeLinesLength(std::string_view bytes, std::string_view lineEnding) {
  if (lineEnding.empty()) return bytes.size();
  const std::size_t last = bytes.rfind(lineEnding);
  if (last == std::string_view::npos) return 0;
  return last + lineEnding.size();
}

bool RepairDataFile(const std::string& path) {
  Descriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  if (file.get() < 0) return errno == ENOENT;
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) return false;
  std::string bytes;
  if (!readAll(file.get(), static_cast<std::size_t>(info.st_size), bytes)) return false;
  const std::string_view ending = bytes.find("\r\n") != std::string::npos ? "\r\n" : "\r";
  if (!repairTail(file.get(), bytes.size(), ending)) return false;
  return file.close();
}

bool AppendRecordDurably(const std::string& path, std::string_view record,
                         std::string_view lineEnding) {
  struct stat before {};
  const bool existed = ::stat(path.c_str(), &before) == 0;
  Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
  if (file.get() < 0) return false;
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) return false;
  if (!repairTail(file.get(), static_cast<std::size_t>(info.st_size), lineEnding)) return false;
  if (!files::WriteAll(file.get(), record)) return false;
  if (::fdatasync(file.get()) != 0) return false;
  if (!file.close()) return false;
  return existed || files::SyncFolderOf(path);
}

}  // namespace zorvel
