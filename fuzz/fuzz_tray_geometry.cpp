// Parses arbitrary bytes as a tray geometry file: the table must stay within its 501
// positions and the tube count must be the largest number read.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/autosampler/tray_geometry_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zorvel;
  TrayGeometry tray;
  ParseTrayGeometry(std::string_view(reinterpret_cast<const char*>(data), size), "fuzz.tgf", tray);
  if (tray.positionCount < 0 || tray.positionCount > kMaxTrayPosition + 1) __builtin_trap();
  std::int16_t largest = 0;
  for (int k = 0; k < tray.positionCount; ++k) {
    if (tray.positions[static_cast<std::size_t>(k)].Number > largest)
      largest = tray.positions[static_cast<std::size_t>(k)].Number;
  }
  if (largest != tray.TubeCount) __builtin_trap();
  return 0;
}
