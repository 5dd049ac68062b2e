#pragma once

#include <string>
#include <vector>

namespace zorvel {

// The run window's results grid as the checks see it: the row of the reading being checked.
class QcGrid {
 public:
  virtual ~QcGrid() = default;
  // Paints a colour's cell (1-based) of the current row in a standard palette colour.
  virtual void paintCell(int colour, int paletteIndex) = 0;
  // The current row's first cell ("NS" for a refused control).
  virtual void labelRow(const std::string& label) = 0;
  // The "Median" row.
  virtual void showMedians(const std::vector<std::string>& medians) = 0;
};

}  // namespace zorvel
