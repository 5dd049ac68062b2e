#include "apps/zorvel-run/console_run_view.h"

namespace zorvel::headless {

void ConsoleRunView::setFilenameCaption(const std::string& caption) {
  out_ << "Data files: " << caption << "\n";
}

void ConsoleRunView::setGridColumns(const std::vector<std::string>& heads) {
  if (heads.empty()) return;
  out_ << "Colours:";
  for (const auto& head : heads) out_ << " " << head;
  out_ << "\n";
}

void ConsoleRunView::setRowLabel(int row, const std::string& label) {
  out_ << "Row " << row << ": " << label << "\n";
}

void ConsoleRunView::setCell(int row, int column, const std::string& text) {
  out_ << "Row " << row << " colour " << column << ": " << text << "\n";
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
