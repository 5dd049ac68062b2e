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
// How far the arm reaches, in millimetres from its home corner.
inline constexpr float kArmReachXMm = 302.0f;
inline constexpr float kArmReachYMm = 181.0f;

// Where each tube of the tray lies for the arm; position 0 is the rinse station.
struct TrayGeometry {
  std::array<TrayPosition, kMaxTrayPosition + 1> positions{};
  int positionCount = 0;       // records read from the file
  std::int16_t TubeCount = 0;  // the largest Number in the file
};

}  // namespace zorvel
