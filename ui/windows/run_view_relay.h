#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

#include "core/run/run_view.h"

namespace zorvel::ui {

// Hands every call of the run controller on to the run window on the window's own thread.
// Calls made on that thread go straight through; calls from the instrument worker are queued
// in order and the worker goes on at once, so instrument work never waits for a repaint.
// Calls still queued when the window is gone are dropped.
class RunViewRelay final : public RunView {
 public:
  // window: the Qt object whose thread and lifetime the calls follow; target: its view.
  RunViewRelay(QObject& window, RunView& target) : window_(&window), target_(target) {}

  void layOut(const RunLayout& layout) override;
  void showScreen(const RunScreen& screen) override;
  void clearStatus() override;
  void showStatus(const std::string& line) override;
  void setCell(int row, int column, const std::string& text) override;
  void setCellColour(int row, int column, int paletteIndex) override;
  void setMedianRow(const std::vector<std::string>& medians) override;
  void showRow(int row) override;
  void clearSpectra() override;
  void setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) override;
  void plotPoint(double wavelengthNm, double value, int paletteIndex) override;
  void setProgress(int percent) override;
  void clearComment() override;
  void closeWindow() override;

 private:
  void deliver(std::function<void(RunView&)> call);

  QPointer<QObject> window_;
  RunView& target_;
};

}  // namespace zorvel::ui
