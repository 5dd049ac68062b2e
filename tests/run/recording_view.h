#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/run/run_view.h"

namespace zorvel::testing {

// The run window of the tests: keeps what is on show, and every status line ever shown.
class RecordingView final : public RunView {
 public:
  void layOut(const RunLayout& layout) override { heads = layout.heads; }
  void showScreen(const RunScreen& screen) override {
    caption = screen.filenameCaption;
    okCaption = screen.okCaption;
    okVisible = screen.okVisible;
    choices = screen.choices;
    commentVisible = screen.commentVisible;
    resetEnabled = screen.resetEnabled;
    legend = screen.keyLegend;
    timeInfo = screen.timeInfo;
  }
  void clearStatus() override { status.clear(); }
  void showStatus(const std::string& line) override {
    status.push_back(line);
    statusLog.push_back(line);
  }
  // Column 0 holds the row labels.
  void setCell(int row, int column, const std::string& text) override {
    if (column == 0) {
      rowLabels[row] = text;
    } else {
      cells[{row, column}] = text;
    }
  }
  void setCellColour(int, int, int) override {}
  void setMedianRow(const std::vector<std::string>&) override {}
  void showRow(int row) override { lastRow = row; }
  void clearSpectra() override { plotted.clear(); }
  void setSpectraScale(double, double, double, double yMax) override { scaleMax = yMax; }
  void plotPoint(double x, double value, int paletteIndex) override {
    plotted.push_back({x, value, paletteIndex});
  }
  void setProgress(int percent) override { progress = percent; }
  void clearComment() override { ++commentClears; }
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
  std::vector<std::string> status, statusLog, heads, timeInfo;
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
