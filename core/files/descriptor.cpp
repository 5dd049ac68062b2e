#include "core/files/descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace zorvel::files {

Descriptor::~Descriptor() {
  if (fd_ >= 0) ::close(fd_);
}

bool Descriptor::close() {
  const int fd = fd_;
  fd_ = -1;
  return ::close(fd) == 0;
}

bool WriteAll(int fd, std::string_view bytes) {
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

namespace {

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return path.substr(0, slash);
}

}  // namespace

bool SyncFolderOf(const std::string& path) {
  Descriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder.valid()) return false;
  return ::fsync(folder.get()) == 0;
}

}  // namespace zorvel::files
