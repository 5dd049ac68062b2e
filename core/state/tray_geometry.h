#pragma once

#include <array>
#include <cstdint>

namespace zorvel {

// One position of the tray: arm coordinates in millimetres and the number written in the file.
struct TrayPosition {
  float X = 0;
  float Y = 0;
  std::int16_t Number = 0;
};

inline constexpr int kMaxTrayPosition = 500;

// Where each tube of the tray lies for the arm; position 0 is the rinse station.
struct TrayGeometry {
  std::array<TrayPosition, kMaxTrayPosition + 1> positions{};
  int positionCount = 0;       // records read from the file
  std::int16_t TubeCount = 0;  // the largest Number in the file
};

}  // namespace zorvel
