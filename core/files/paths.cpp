#include "core/files/paths.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace zorvel {

bool FileExists(const std::string& path) {
  if (path.empty()) return false;
  // A folder opens for reading on this system, but it is no file to read.
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) return false;
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

std::string JoinPath(const std::string& directory, const std::string& name) {
  if (directory.empty()) return name;
  if (directory.back() == '/') return directory + name;
  return directory + "/" + name;
}

}  // namespace zorvel
