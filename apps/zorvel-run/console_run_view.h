#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "core/platform/operator.h"
#include "core/run/run_view.h"

namespace zorvel::headless {

// The run window of an unattended run: every prompt and status line is printed as it comes,
// each reading as "row: label values", the checks' cell colours and the "Median" row once it
// holds figures; what the operator may press next is remembered so the answer file can be
// checked against it.
class ConsoleRunView final : public RunView {
 public:
  explicit ConsoleRunView(std::ostream& out) : out_(out) {}

  void layOut(const RunLayout& layout) override;
  void showScreen(const RunScreen& screen) override;
  void clearStatus() override {}
  // Flushed at once: whoever watches an unattended run sees where it is.
  void showStatus(const std::string& line) override { out_ << line << std::endl; }
  void setCell(int row, int column, const std::string& text) override;
  void setCellColour(int row, int column, int paletteIndex) override;
  void setMedianRow(const std::vector<std::string>& medians) override;
  void showRow(int) override {}
  void clearSpectra() override {}
  void setSpectraScale(double, double, double, double) override {}
  void plotPoint(double, double, int) override {}
  void setProgress(int) override {}
  void clearComment() override {}
  void closeWindow() override;

  const RunChoices& choices() const { return choices_; }
  bool resetEnabled() const { return resetEnabled_; }

 private:
  std::ostream& out_;
  RunChoices choices_;
  bool resetEnabled_ = true;
  std::string caption_;
  std::vector<std::string> timeInfo_;
  std::string legend_;
};

// The operator of an unattended run: the answer file's operator, except that the data set's
// Save As dialog is answered with the --data file and the sample-number box with the number of
// a "reset-number" line.
class RunOperator final : public Operator {
 public:
  RunOperator(Operator& inner, std::ostream& out) : inner_(inner), out_(out) {}

  void answerNextFileDialog(std::string path) { file_ = std::move(path); }
  void answerNextInputBox(std::string text) { input_ = std::move(text); }

  int messageBox(const MessageBoxRequest& box) override { return inner_.messageBox(box); }
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;
  std::string fileDialog(const FileDialogRequest& request) override;
  void beep() override { inner_.beep(); }
  void setBusy(bool busy) override { inner_.setBusy(busy); }
  void endProgram(int exitCode) override { inner_.endProgram(exitCode); }
  bool answersExhausted() const override { return inner_.answersExhausted(); }

 private:
  Operator& inner_;
  std::ostream& out_;
  std::string file_;
  std::string input_;
};

}  // namespace zorvel::headless
