#include "core/files/file_output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include "core/files/descriptor.h"
#include "core/files/file_ends.h"

namespace zorvel {

namespace {

// Opens, writes every byte, forces them to the disk and closes; true only when all succeeded.
bool writeAndClose(const std::string& path, int openFlags, std::string_view bytes) {
  files::Descriptor file(::open(path.c_str(), openFlags | O_WRONLY | O_CLOEXEC, 0644));
  if (!file.valid()) return false;
  const bool written = files::WriteAll(file.get(), bytes) && ::fsync(file.get()) == 0;
  return file.close() && written;
}

void removeAll(const std::vector<NewFile>& newFiles, const std::string& suffix) {
  for (const NewFile& file : newFiles) std::remove((file.path + suffix).c_str());
}

}  // namespace

bool CreateFilesTogether(const std::vector<NewFile>& newFiles, std::string* reason) {
  auto fail = [&](std::size_t renamed) {
    if (reason != nullptr) *reason = std::strerror(errno);
    removeAll(newFiles, ".new");
    removeAll(std::vector<NewFile>(newFiles.begin(), newFiles.begin() + static_cast<long>(renamed)),
              "");
    return false;
  };
  for (const NewFile& file : newFiles) {
    if (!writeAndClose(file.path + ".new", O_CREAT | O_TRUNC, file.bytes)) return fail(0);
  }
  for (std::size_t k = 0; k < newFiles.size(); ++k) {
    const std::string& path = newFiles[k].path;
    if (std::rename((path + ".new").c_str(), path.c_str()) != 0) return fail(k);
  }
  if (!newFiles.empty() && !files::SyncFolderOf(newFiles.front().path)) {
    return fail(newFiles.size());
  }
  return true;
}

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
  // The rename is only durable once the folder that holds both names is on the disk.
  return files::SyncFolderOf(path);
}

bool CreateTextFile(const std::string& path, std::string_view bytes) {
  return writeAndClose(path, O_CREAT | O_TRUNC, bytes);
}

bool AppendRecord(const std::string& path, std::string_view bytes) {
  return writeAndClose(path, O_CREAT | O_APPEND, bytes);
}

bool ReadWholeFile(const std::string& path, std::string& bytes) {
  // A regular file is read straight into the string, once: a long data set is not copied
  // through a stream buffer on its way. Pipes and devices are read as streams.
  struct stat info {};
  if (::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode))
    return ReadFileHead(path, static_cast<std::size_t>(info.st_size), bytes);
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream text;
  text << in.rdbuf();
  bytes = text.str();
  return true;
}

}  // namespace zorvel
