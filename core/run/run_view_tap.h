#pragma once

#include <functional>
#include <string>
#include <utility>

#include "core/run/run_view.h"

namespace zorvel {

// Passes everything on to the window and tells a listener each line the status box shows, so
// that what the operator last read can be followed from elsewhere.
class RunViewTap final : public RunView {
 public:
  explicit RunViewTap(RunView& view) : view_(view) {}
  // Set while no run call is under way.
  void setListener(std::function<void(const std::string&)> listener) {
    listener_ = std::move(listener);
  }

  void layOut(const RunLayout& layout) override { view_.layOut(layout); }
  void showScreen(const RunScreen& screen) override { view_.showScreen(screen); }
  void clearStatus() override { view_.clearStatus(); }
  void showStatus(const std::string& line) override {
    view_.showStatus(line);
    if (listener_) listener_(line);
  }
  void setCell(int row, int column, const std::string& text) override {
    view_.setCell(row, column, text);
  }
  void setCellColour(int row, int column, int paletteIndex) override {
    view_.setCellColour(row, column, paletteIndex);
  }
  void setMedianRow(const std::vector<std::string>& medians) override {
    view_.setMedianRow(medians);
  }
  void showRow(int row) override { view_.showRow(row); }
  void clearSpectra() override { view_.clearSpectra(); }
  void setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) override {
    view_.setSpectraScale(lowerNm, upperNm, yMin, yMax);
  }
  void plotPoint(double wavelengthNm, double value, int paletteIndex) override {
    view_.plotPoint(wavelengthNm, value, paletteIndex);
  }
  void setProgress(int percent) override { view_.setProgress(percent); }
  void clearComment() override { view_.clearComment(); }
  void closeWindow() override { view_.closeWindow(); }

 private:
  RunView& view_;
  std::function<void(const std::string&)> listener_;
};

}  // namespace zorvel
