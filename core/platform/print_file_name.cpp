#include "core/platform/print_file_name.h"

#include <filesystem>
#include <system_error>

namespace zorvel {

std::string NumberedPrintFile(const std::string& path, int n) {
  if (n <= 1) return path;
  const std::filesystem::path p(path);
  std::filesystem::path numbered = p;
  numbered.replace_filename(p.stem().string() + "-" + std::to_string(n) + p.extension().string());
  return numbered.string();
}

std::string NextFreePrintFile(const std::string& path, int& n) {
  if (n < 1) n = 1;
  std::error_code ec;
  while (std::filesystem::exists(NumberedPrintFile(path, n), ec)) ++n;
  return NumberedPrintFile(path, n++);
}

}  // namespace zorvel
