#pragma once

#include <QPointer>
#include <QWidget>

#include "core/platform/operator.h"

namespace zorvel::ui {

// The desktop operator: Qt message boxes, input dialog and file dialogs, safe to call from the
// instrument worker thread (the question is asked on the window thread).
class QtOperator final : public Operator {
 public:
  explicit QtOperator(QWidget* parent = nullptr) : parent_(parent) {}
  void setParent(QWidget* parent) { parent_ = parent; }

  int messageBox(const MessageBoxRequest& box) override;
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;
  std::string fileDialog(const FileDialogRequest& request) override;
  void beep() override;
  void setBusy(bool busy) override;
  void endProgram(int exitCode) override;

  bool endRequested() const { return ended_; }
  int exitCode() const { return exitCode_; }

 private:
  QPointer<QWidget> parent_;
  bool ended_ = false;
  int exitCode_ = 0;
};

// Turns the filter text of a file request ("Selected Files (*.MTH)|*.MTH|All files (*.*)|*.*")
// into Qt's form ("Selected Files (*.MTH);;All files (*)").
QString qtFilter(const std::string& filter);
// A message's text for a Qt box: CR and CR LF become line breaks.
QString displayText(const std::string& text);

}  // namespace zorvel::ui
