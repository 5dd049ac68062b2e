#include "apps/zorvel-run/console_run_view.h"

#include <algorithm>

#include "core/files/paths.h"
#include "core/state/app_state.h"
#include "core/state/file_dialogs.h"

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

void ConsoleRunView::layOut(const RunLayout& layout) {
  if (layout.heads.empty()) return;
  out_ << "Colours:";
  for (const auto& head : layout.heads) out_ << " " << head;
  out_ << "\n";
}

// Prints what changed of what a reader of the run's output follows: the data files and the
// time lines; keeps the choices and the reset item to check the answer file against.
void ConsoleRunView::showScreen(const RunScreen& screen) {
  if (screen.filenameCaption != caption_) {
    caption_ = screen.filenameCaption;
    out_ << "Data files: " << caption_ << "\n";
  }
  if (screen.keyLegend != legend_) {
    legend_ = screen.keyLegend;
    if (!legend_.empty()) out_ << "Keys: " << legend_ << std::endl;
  }
  if (screen.timeInfo != timeInfo_) {
    timeInfo_ = screen.timeInfo;
    for (const auto& line : timeInfo_) out_ << line << "\n";
  }
  choices_ = screen.choices;
  resetEnabled_ = screen.resetEnabled;
}

void ConsoleRunView::setMedianRow(const std::vector<std::string>& medians) {
  if (std::all_of(medians.begin(), medians.end(), [](const auto& m) { return m.empty(); })) return;
  out_ << "Median:";
  for (const auto& median : medians) out_ << " " << (median.empty() ? "-" : median);
  out_ << "\n";
}

void ConsoleRunView::setCell(int row, int column, const std::string& text) {
  if (column == 0) {
    out_ << "Row " << row << ": " << text << "\n";
  } else {
    out_ << "Row " << row << " colour " << column << ": " << text << "\n";
  }
}

void ConsoleRunView::setCellColour(int row, int column, int paletteIndex) {
  out_ << "Row " << row << " colour " << column << " shaded " << paletteName(paletteIndex) << "\n";
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
  // The desktop's Save As dialog asks before it replaces a file; so does the answer file.
  const bool askFirst = (request.flags & file_dialogs::kAskBeforeOverwrite) != 0;
  if (askFirst && FileExists(answer) &&
      inner_.message(answer + " already exists.\rDo you want to replace it?", "Save As",
                     BoxIcon::Exclamation, BoxButtons::YesNo) != answer::kYes) {
    return {};
  }
  return answer;
}

}  // namespace zorvel::headless
