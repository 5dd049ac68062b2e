#pragma once

#include <string>
#include <vector>

#include "core/run/run_view.h"

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

// Sits between the run controller and its window: passes every call on unchanged and keeps
// the row the run last labelled or filled, which is the row of the reading being checked, so
// the checks paint that row without the run telling them which it is.
class QcRowTracker final : public RunView, public QcGrid {
 public:
  explicit QcRowTracker(RunView& window) : window_(window) {}

  int currentRow() const { return row_; }

  void paintCell(int colour, int paletteIndex) override;
  void labelRow(const std::string& label) override;
  void showMedians(const std::vector<std::string>& medians) override;

  void layOut(bool fixed, bool synch) override { window_.layOut(fixed, synch); }
  void setFilenameCaption(const std::string& c) override { window_.setFilenameCaption(c); }
  void clearStatus() override { window_.clearStatus(); }
  void showStatus(const std::string& line) override { window_.showStatus(line); }
  void setGridColumns(const std::vector<std::string>& h) override { window_.setGridColumns(h); }
  void setMedianRow(const std::vector<std::string>& m) override { window_.setMedianRow(m); }
  void setRowLabel(int row, const std::string& label) override;
  void setCell(int row, int column, const std::string& text) override;
  void setCellColour(int row, int column, int paletteIndex) override {
    window_.setCellColour(row, column, paletteIndex);
  }
  void showRow(int row) override { window_.showRow(row); }
  void showChoices(const RunChoices& choices) override { window_.showChoices(choices); }
  void showComment(bool visible) override { window_.showComment(visible); }
  void clearComment() override { window_.clearComment(); }
  void showOkFrame(bool visible) override { window_.showOkFrame(visible); }
  void setOkCaption(const std::string& caption) override { window_.setOkCaption(caption); }
  void setFocus(RunButton button) override { window_.setFocus(button); }
  void setResetSampEnabled(bool enabled) override { window_.setResetSampEnabled(enabled); }
  void setKeyLegend(const std::string& text) override { window_.setKeyLegend(text); }
  void clearSpectra() override { window_.clearSpectra(); }
  void setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) override {
    window_.setSpectraScale(lowerNm, upperNm, yMin, yMax);
  }
  void plotPoint(double wavelengthNm, double value, int paletteIndex) override {
    window_.plotPoint(wavelengthNm, value, paletteIndex);
  }
  void setProgress(int percent) override { window_.setProgress(percent); }
  void setTimeInfo(const std::vector<std::string>& lines) override { window_.setTimeInfo(lines); }
  void closeWindow() override { window_.closeWindow(); }

 private:
  RunView& window_;
  int row_ = 0;  // 0: no reading yet
};

}  // namespace zorvel
