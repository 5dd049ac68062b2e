#pragma once

#include <ostream>
#include <string>

#include "core/platform/operator.h"
#include "core/state/answer_script.h"

namespace zorvel {

// The operator of an unattended run: every box, prompt and dialog is printed, and answered from
// the answer script. An answer that does not fit the box, or a script that has run out, is
// recorded as the script's failure and answered as safely as the box allows (Cancel, else No,
// else its only button), so the run stops at its next checkpoint.
class AnswerFileOperator final : public Operator {
 public:
  AnswerFileOperator(AnswerScript& script, std::ostream& out) : script_(script), out_(out) {}

  int messageBox(const MessageBoxRequest& box) override;
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;
  std::string fileDialog(const FileDialogRequest& request) override;
  void beep() override {}
  void setBusy(bool) override {}
  void endProgram(int exitCode) override;
  bool answersExhausted() const override { return script_.failed(); }

  bool ended() const { return ended_; }
  int exitCode() const { return exitCode_; }

 private:
  AnswerScript& script_;
  std::ostream& out_;
  bool ended_ = false;
  int exitCode_ = 0;
};

// The answer code a word stands for (ok 1, cancel 2, abort 3, retry 4, ignore 5, yes 6, no 7),
// or 0 for any other word.
int AnswerCodeForWord(const std::string& word);
// Whether a box with these buttons can be answered with the code.
bool ButtonsAllow(BoxButtons buttons, int code);
// The buttons of a box as the words that answer them: "yes/no/cancel".
std::string ButtonWords(BoxButtons buttons);

}  // namespace zorvel
