#include "support/bytes.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace zorvel::testing {

std::string visible(std::string_view bytes) {
  std::string out;
  for (unsigned char c : bytes) {
    if (c == '\r') {
      out += "<CR>";
    } else if (c == '\n') {
      out += "<LF>\n";
    } else if (c == '\t') {
      out += "<TAB>";
    } else if (c < 32 || c >= 127) {
      char buf[8];
      std::snprintf(buf, sizeof buf, "<x%02X>", c);
      out += buf;
    } else {
      out += static_cast<char>(c);
    }
  }
  return out;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

void writeFile(const std::string& path, std::string_view bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string readGolden(const std::string& name) {
  const char* dir = std::getenv("ZORVEL_GOLDEN_DIR");
  const std::string base = dir != nullptr ? dir : ZORVEL_GOLDEN_DIR;
  const std::string path = base + "/" + name;
  if (!std::filesystem::exists(path)) ADD_FAILURE() << "golden file missing: " << path;
  return readFile(path);
}

std::string makeTempDir(const std::string& tag) {
  namespace fs = std::filesystem;
  std::string pattern = (fs::temp_directory_path() / ("zorvel-" + tag + "-XXXXXX")).string();
  if (mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "cannot make " << pattern;
  return pattern + "/";
}

}  // namespace zorvel::testing
