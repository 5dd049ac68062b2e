#include "core/files/file_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace zorvel {

namespace {

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

bool writeAndClose(const std::string& path, int openFlags, std::string_view bytes) {
  const int fd = ::open(path.c_str(), openFlags | O_WRONLY | O_CLOEXEC, 0644);
  if (fd < 0) return false;
  const bool written = writeAll(fd, bytes) && ::fsync(fd) == 0;
  const bool closed = ::close(fd) == 0;
  return written && closed;
}

}  // namespace

bool WriteWholeFile(const std::string& path, std::string_view bytes) {
  const std::string temporary = path + ".new";
  if (!writeAndClose(temporary, O_CREAT | O_TRUNC, bytes)) {
    std::remove(temporary.c_str());
    return false;
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    return false;
  }
  return true;
}

bool CreateTextFile(const std::string& path, std::string_view bytes) {
  return writeAndClose(path, O_CREAT | O_TRUNC, bytes);
}

bool AppendRecord(const std::string& path, std::string_view bytes) {
  return writeAndClose(path, O_CREAT | O_APPEND, bytes);
}

bool ReadWholeFile(const std::string& path, std::string& bytes) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream text;
  text << in.rdbuf();
  bytes = text.str();
  return true;
}

}  // namespace zorvel
