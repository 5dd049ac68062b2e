#include "core/files/record_append.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>

namespace zorvel {

namespace {

// Closes the descriptor however the function leaves.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }
  // Closes now and tells whether the close itself succeeded.
  bool close() {
    const int fd = fd_;
    fd_ = -1;
    return ::close(fd) == 0;
  }

 private:
  int fd_;
};

bool writeAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

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

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return path.substr(0, slash);
}

bool syncFolder(const std::string& path) {
  Descriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.get() < 0) return false;
  return ::fsync(folder.get()) == 0;
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
  if (!writeAll(file.get(), record)) return false;
  if (::fdatasync(file.get()) != 0) return false;
  if (!file.close()) return false;
  return existed || syncFolder(path);
}

}  // namespace zorvel
