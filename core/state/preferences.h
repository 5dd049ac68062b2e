#pragma once

#include <cstdint>
#include <string>

namespace zorvel {

// Which instruments are attached and where, and where the data and method trees lie.
struct Preferences {
  std::int16_t Fluorimeter = 2;  // 1 "LS-50", 2 "LS-50B"
  std::int16_t FlComPort = 1;
  std::int16_t DilComPort = 2;
  std::int16_t AutoSampComPort = 3;
  std::int16_t Printer = 1;  // non-zero: a printer is available (-1 when read from a file)
  bool AutoSampler = false;
  std::string BaseDirectoryPath;
  std::string TrayGeometryFile;

  friend bool operator==(const Preferences&, const Preferences&) = default;
};

}  // namespace zorvel
