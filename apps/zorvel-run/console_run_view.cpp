#include "apps/zorvel-run/console_run_view.h"

#include <algorithm>

#include "core/state/app_state.h"

namespace zorvel::headless {

namespace {

// The palette colours the control and blank checks paint a reading's cells in.
std::string paletteName(int paletteIndex) {
  switch (static_cast<PaletteColour>(paletteIndex)) {
    case PaletteColour::LightBlue:
      return "light blue";
    case PaletteColour::LightGreen:
      return "light green";
    case PaletteColour::LightRed:
      return "light red";
    case PaletteColour::Yellow:
      return "yellow";
    case PaletteColour::White:
      return "white";
    default:
      return "palette " + std::to_string(paletteIndex);
  }
}

}  // namespace

void ConsoleRunView::setFilenameCaption(const std::string& caption) {
  out_ << "Data files: " << caption << "\n";
}

void ConsoleRunView::setGridColumns(const std::vector<std::string>& heads) {
  if (heads.empty()) return;
  out_ << "Colours:";
  for (const auto& head : heads) out_ << " " << head;
  out_ << "\n";
}

void ConsoleRunView::setMedianRow(const std::vector<std::string>& medians) {
  if (std::all_of(medians.begin(), medians.end(), [](const auto& m) { return m.empty(); })) return;
  out_ << "Median:";
  for (const auto& median : medians) out_ << " " << (median.empty() ? "-" : median);
  out_ << "\n";
}

void ConsoleRunView::setRowLabel(int row, const std::string& label) {
  out_ << "Row " << row << ": " << label << "\n";
}

void ConsoleRunView::setCell(int row, int column, const std::string& text) {
  out_ << "Row " << row << " colour " << column << ": " << text << "\n";
}

void ConsoleRunView::setCellColour(int row, int column, int paletteIndex) {
  out_ << "Row " << row << " colour " << column << " shaded " << paletteName(paletteIndex) << "\n";
}

void ConsoleRunView::setTimeInfo(const std::vector<std::string>& lines) {
  for (const auto& line : lines) out_ << line << "\n";
}

void ConsoleRunView::closeWindow() {
  out_ << "Run window closed.\n";
}

std::string RunOperator::inputBox(const std::string& prompt, const std::string& title,
                                  const std::string& defaultText) {
  if (input_.empty()) return inner_.inputBox(prompt, title, defaultText);
  std::string answer;
  answer.swap(input_);
  out_ << title << ": " << prompt << " -> " << answer << "\n";
  return answer;
}

std::string RunOperator::fileDialog(const FileDialogRequest& request) {
  if (file_.empty()) return inner_.fileDialog(request);
  std::string answer;
  answer.swap(file_);
  out_ << "Data set: " << answer << "\n";
  return answer;
}

}  // namespace zorvel::headless
