#pragma once

#include <vector>

namespace zorvel {

// A drawing in user units, as the alert and trend windows draw their plots: x runs from left
// to right, y from top (upper edge) to bottom (lower edge). Colours are standard palette
// indices; widths are pen widths in pixels.
struct QcPlot {
  struct Line {
    double x1, y1, x2, y2;
    int paletteIndex;
    int width;
  };
  struct Point {
    double x, y;
    int paletteIndex;
    int width;
  };
  double left = 0;
  double right = 1;
  double top = 1;
  double bottom = 0;
  std::vector<Line> lines;
  std::vector<Point> points;
};

}  // namespace zorvel
