#pragma once

#include <string>
#include <string_view>

#include "core/state/tray_geometry.h"

namespace zorvel {

// The outcome of reading a tray geometry file. A refused file leaves an empty tray, and the
// message names the file and the line that was refused.
struct TrayLoadResult {
  bool loaded = false;
  std::string message;
  explicit operator bool() const { return loaded; }
};

// Reads a tray geometry file: free-format numbers, three to a record (X, Y, Number), the first
// record being position 0. A file that cannot be read (a folder, no positions at all), a value
// that is no number, a last record of fewer than three values or a 502nd record is refused; the
// reading stops there, so nothing past the table is looked at. Positions beyond the arm's
// travel are read as they stand: the arm clamps X when it moves.
TrayLoadResult LoadTrayGeometry(const std::string& path, TrayGeometry& tray);
// The same from text already in memory; fileName only names the file in the message.
TrayLoadResult ParseTrayGeometry(std::string_view text, const std::string& fileName,
                                 TrayGeometry& tray);

// One line for the program log naming the positions that lie outside the arm's travel (X 0 to
// 302, Y 0 to 181 mm) and how they will be sent; empty when every position lies within it.
std::string TrayReachNote(const TrayGeometry& tray, const std::string& fileName);

}  // namespace zorvel
