#pragma once

#include <deque>
#include <string>
#include <vector>

#include "core/platform/operator.h"

namespace zorvel {

// The test operator: answers come from a script, and every box, prompt and dialog is recorded
// so that a test can check each title, text, icon and button set the program showed.
class ScriptedOperator final : public Operator {
 public:
  struct Shown {
    enum class Kind { Message, Input, FileDialog } kind = Kind::Message;
    MessageBoxRequest box;     // Message; Input keeps its prompt and title here too
    FileDialogRequest dialog;  // FileDialog
  };

  // Queues the answer to the next message box; without one, a box is answered with its first
  // button (OK, Yes, Abort or Retry).
  void answerNext(int code) { answers_.push_back(code); }
  void typeNext(std::string text) { inputs_.push_back(std::move(text)); }
  void chooseNext(std::string path) { files_.push_back(std::move(path)); }

  int messageBox(const MessageBoxRequest& box) override;
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override;
  std::string fileDialog(const FileDialogRequest& request) override;
  void beep() override { ++beeps; }
  void setBusy(bool on) override { busy = on; }
  void endProgram(int code) override {
    ended = true;
    exitCode = code;
  }

  std::vector<Shown> shown;
  int beeps = 0;
  bool busy = false;
  bool ended = false;
  int exitCode = 0;

  // The message boxes alone, in order.
  std::vector<MessageBoxRequest> messages() const;

 private:
  std::deque<int> answers_;
  std::deque<std::string> inputs_;
  std::deque<std::string> files_;
};

int firstButtonAnswer(BoxButtons buttons);

}  // namespace zorvel
