#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/checks/intensity_view.h"
#include "core/checks/watercell_view.h"

namespace zorvel::testing {

// The lines each area of a check window holds, as the window would show them.
struct CheckLines {
  std::map<CheckArea, std::map<int, std::string>> areas;
  void print(CheckArea area, int line, const std::string& text, bool clearFirst) {
    if (clearFirst) areas[area].clear();
    areas[area][line] = text;
  }
  std::string at(CheckArea area, int line) {
    return areas[area].count(line) ? areas[area][line] : "";
  }
};

class FakeWaterCellView final : public WaterCellView {
 public:
  void printLine(CheckArea area, int line, const std::string& text, bool clearFirst) override {
    lines.print(area, line, text, clearFirst);
    printed.push_back(text);
  }
  void clearArea(CheckArea area) override { lines.areas[area].clear(); }
  void showButtons(const WaterCellButtons& b) override { buttons = b; }
  void setProgressVisible(bool visible) override { progressVisible = visible; }
  void setProgress(int percent) override {
    progress.push_back(percent);
    if (onProgress) onProgress(percent);
  }
  void close() override { closed = true; }
  void showStep(const std::string& text) override {
    step = text;
    if (onStep) onStep(text);
  }

  CheckLines lines;
  std::vector<std::string> printed;
  WaterCellButtons buttons;
  bool progressVisible = false;
  std::vector<int> progress;
  bool closed = false;
  std::string step;
  std::function<void(const std::string&)> onStep;
  std::function<void(int)> onProgress;
};

class FakeIntensityView final : public IntensityView {
 public:
  void showBoxText(IntensityBox box, const std::string& text) override { boxes[box] = text; }
  void showFilter(int position) override { filter = position; }
  void showVoltageOption(int option) override { voltageOption = option; }
  void setVoltageBoxVisible(bool visible) override { voltageBoxVisible = visible; }
  void selectBoxText(IntensityBox box) override { selected.push_back(box); }
  void printStatus(int line, const std::string& text, bool clearFirst) override {
    lines.print(CheckArea::Status, line, text, clearFirst);
  }
  void clearStatus() override { lines.areas[CheckArea::Status].clear(); }
  void close() override { closed = true; }

  std::map<IntensityBox, std::string> boxes;
  int filter = 0;
  int voltageOption = 0;
  bool voltageBoxVisible = false;
  std::vector<IntensityBox> selected;
  CheckLines lines;
  bool closed = false;
};

}  // namespace zorvel::testing
