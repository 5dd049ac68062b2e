#include "core/run/qc_row_tracker.h"

namespace zorvel {

namespace {

// Rows 0 and 1 hold the heads and "Median"; readings start below them.
constexpr int kFirstReadingRow = 2;

}  // namespace

void QcRowTracker::paintCell(int colour, int paletteIndex) {
  if (row_ > 0) window_.setCellColour(row_, colour, paletteIndex);
}

void QcRowTracker::labelRow(const std::string& label) {
  if (row_ > 0) window_.setCell(row_, 0, label);
}

void QcRowTracker::showMedians(const std::vector<std::string>& medians) {
  window_.setMedianRow(medians);
}

void QcRowTracker::setCell(int row, int column, const std::string& text) {
  if (row >= kFirstReadingRow) row_ = row;
  window_.setCell(row, column, text);
}

}  // namespace zorvel
