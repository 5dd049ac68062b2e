#pragma once

#include <QColor>

namespace zorvel::ui {

// The standard 16-colour palette the run window paints with: 0 black, 1 blue, 2 green, 3 cyan,
// 4 red, 5 magenta, 6 brown, 7 light grey, 8 dark grey, 9 light blue, 10 light green, 11 light
// cyan, 12 light red, 13 light magenta, 14 yellow, 15 white. Indices outside 0..15 are white.
QColor StandardColour(int index);

}  // namespace zorvel::ui
