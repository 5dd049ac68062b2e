#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/run/run_view.h"

namespace zorvel::testing {

// The run window of the tests: keeps what is on show, and every status line ever shown.
class RecordingView final : public RunView {
 public:
  void layOut(bool, bool) override {}
  void setFilenameCaption(const std::string& c) override { caption = c; }
  void clearStatus() override { status.clear(); }
  void showStatus(const std::string& line) override {
    status.push_back(line);
    statusLog.push_back(line);
  }
  void setGridColumns(const std::vector<std::string>& h) override { heads = h; }
  void setMedianRow(const std::vector<std::string>&) override {}
  void setRowLabel(int row, const std::string& label) override { rowLabels[row] = label; }
  void setCell(int row, int column, const std::string& text) override {
    cells[{row, column}] = text;
  }
  void setCellColour(int, int, int) override {}
  void showRow(int row) override { lastRow = row; }
  void showChoices(const RunChoices& c) override { choices = c; }
  void showComment(bool visible) override { commentVisible = visible; }
  void clearComment() override { ++commentClears; }
  void showOkFrame(bool visible) override { okVisible = visible; }
  void setOkCaption(const std::string& c) override { okCaption = c; }
  void setFocus(RunButton) override {}
  void setResetSampEnabled(bool enabled) override { resetEnabled = enabled; }
  void setKeyLegend(const std::string& text) override { legend = text; }
  void clearSpectra() override { plotted.clear(); }
  void setSpectraScale(double, double, double, double yMax) override { scaleMax = yMax; }
  void plotPoint(double x, double value, int paletteIndex) override {
    plotted.push_back({x, value, paletteIndex});
  }
  void setProgress(int percent) override { progress = percent; }
  void setTimeInfo(const std::vector<std::string>&) override {}
  void closeWindow() override { closed = true; }

  // The prompt on show, its lines joined by "|".
  std::string prompt() const {
    std::string text;
    for (const auto& line : status) text += (text.empty() ? "" : "|") + line;
    return text;
  }

  struct Point {
    double x, value;
    int colour;
  };
  std::string caption, okCaption, legend;
  std::vector<std::string> status, statusLog, heads;
  std::map<int, std::string> rowLabels;
  std::map<std::pair<int, int>, std::string> cells;
  int lastRow = 0;
  RunChoices choices;
  bool commentVisible = false, okVisible = false, resetEnabled = false, closed = false;
  int commentClears = 0;
  std::vector<Point> plotted;
  double scaleMax = 0;
  int progress = 0;
};

}  // namespace zorvel::testing
