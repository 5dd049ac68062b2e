#pragma once

#include <string>
#include <string_view>

#include "core/state/tray_geometry.h"

namespace zorvel {

// Reads a tray geometry file: free-format numbers, three to a record (X, Y, Number), the first
// record being position 0. Records past position 500 are ignored. False when the file cannot
// be opened; a trailing incomplete record is dropped.
bool LoadTrayGeometry(const std::string& path, TrayGeometry& tray);
// The same from text already in memory (used by the loader and by the fuzz target).
void ParseTrayGeometry(std::string_view text, TrayGeometry& tray);

}  // namespace zorvel
