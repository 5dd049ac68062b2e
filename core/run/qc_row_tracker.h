#pragma once

#include <string>
#include <vector>

#include "core/quality/quality_grid.h"
#include "core/run/run_view.h"

namespace zorvel {

// Sits between the run and its window: passes every call on unchanged and keeps the row the
// run last labelled or filled, which is the row of the reading being checked, so the checks
// paint that row without the run telling them which it is.
class QcRowTracker final : public RunView, public QcGrid {
 public:
  explicit QcRowTracker(RunView& window) : window_(window) {}

  int currentRow() const { return row_; }

  void paintCell(int colour, int paletteIndex) override;
  void labelRow(const std::string& label) override;
  void showMedians(const std::vector<std::string>& medians) override;

  void layOut(const RunLayout& layout) override { window_.layOut(layout); }
  void showScreen(const RunScreen& screen) override { window_.showScreen(screen); }
  void clearStatus() override { window_.clearStatus(); }
  void showStatus(const std::string& line) override { window_.showStatus(line); }
  void setCell(int row, int column, const std::string& text) override;
  void setCellColour(int row, int column, int paletteIndex) override {
    window_.setCellColour(row, column, paletteIndex);
  }
  void setMedianRow(const std::vector<std::string>& m) override { window_.setMedianRow(m); }
  void showRow(int row) override { window_.showRow(row); }
  void clearSpectra() override { window_.clearSpectra(); }
  void setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) override {
    window_.setSpectraScale(lowerNm, upperNm, yMin, yMax);
  }
  void plotPoint(double wavelengthNm, double value, int paletteIndex) override {
    window_.plotPoint(wavelengthNm, value, paletteIndex);
  }
  void setProgress(int percent) override { window_.setProgress(percent); }
  void clearComment() override { window_.clearComment(); }
  void closeWindow() override { window_.closeWindow(); }

 private:
  RunView& window_;
  int row_ = 0;  // 0: no reading yet
};

}  // namespace zorvel
