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

bool IsFolder(const std::string& path) {
  std::error_code ec;
  return !path.empty() && std::filesystem::is_directory(path, ec);
}

namespace {
std::string lowered(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}
}  // namespace

std::string FindFileIgnoringCase(const std::string& directory, const std::string& name) {
  const std::string exact = JoinPath(directory, name);
  if (FileExists(exact)) return exact;
  std::error_code ec;
  std::string found;
  for (const auto& entry : std::filesystem::directory_iterator(directory, ec)) {
    const std::string candidate = entry.path().filename().string();
    if (lowered(candidate) != lowered(name) || entry.is_directory(ec)) continue;
    if (found.empty() || candidate < found) found = candidate;
  }
  return found.empty() ? std::string() : JoinPath(directory, found);
}

std::string JoinPath(const std::string& directory, const std::string& name) {
  if (directory.empty()) return name;
  if (directory.back() == '/') return directory + name;
  return directory + "/" + name;
}

}  // namespace zorvel
