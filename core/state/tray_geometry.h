#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

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

// Reads a tray geometry file: free-format numbers, three to a record (X, Y, Number), the first
// record being position 0. Records past position 500 are ignored. False when the file cannot
// be opened; a trailing incomplete record is dropped.
bool LoadTrayGeometry(const std::string& path, TrayGeometry& tray);
// The same from text already in memory (used by the loader and by the fuzz target).
void ParseTrayGeometry(std::string_view text, TrayGeometry& tray);

}  // namespace zorvel
