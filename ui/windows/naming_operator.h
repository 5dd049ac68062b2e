#pragma once

#include <mutex>
#include <string>
#include <thread>

#include "core/platform/operator.h"

namespace zorvel::ui {

// Passes every question on to the operator it wraps; while a field's entry is being committed
// its messages start with the field's name ("Ending Tube: Answer must be ..."), so a refusal
// says which box it is about even when the box is one of many.
class NamingOperator final : public Operator {
 public:
  explicit NamingOperator(Operator& inner) : inner_(inner) {}

  // The field being committed, by its caption ("Ending Tube:"); empty for none.
  void setSubject(const std::string& caption);

  int messageBox(const MessageBoxRequest& box) override;
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override {
    return inner_.inputBox(prompt, title, defaultText);
  }
  std::string fileDialog(const FileDialogRequest& request) override {
    return inner_.fileDialog(request);
  }
  void beep() override { inner_.beep(); }
  void setBusy(bool busy) override { inner_.setBusy(busy); }
  void endProgram(int exitCode) override { inner_.endProgram(exitCode); }
  bool answersExhausted() const override { return inner_.answersExhausted(); }

 private:
  Operator& inner_;
  // Set and read on the window thread; a question the instrument worker asks meanwhile is not
  // about the field and goes through unnamed.
  mutable std::mutex mutex_;
  std::string subject_;
  std::thread::id committer_;
};

}  // namespace zorvel::ui
