#pragma once

#include <string>

namespace zorvel {

enum class BoxIcon { None, Critical, Question, Exclamation, Information };
enum class BoxButtons { Ok, OkCancel, AbortRetryIgnore, YesNoCancel, YesNo, RetryCancel };

// Answers of a message box, with the codes the program's rules are written in.
namespace answer {
inline constexpr int kOk = 1;
inline constexpr int kCancel = 2;
inline constexpr int kAbort = 3;
inline constexpr int kRetry = 4;
inline constexpr int kIgnore = 5;
inline constexpr int kYes = 6;
inline constexpr int kNo = 7;
}  // namespace answer

// Title used where a box carries the program's own name only.
inline constexpr const char* kAppTitle = "ZORVEL";

struct MessageBoxRequest {
  std::string text;
  std::string title = kAppTitle;
  BoxIcon icon = BoxIcon::None;
  BoxButtons buttons = BoxButtons::Ok;
};

enum class FileDialogAction { Open = 1, SaveAs = 2 };

// One request of the common file dialog; flags 4096 mean "file must exist", 2 "ask before
// overwriting".
struct FileDialogRequest {
  std::string initialDirectory;
  std::string defaultExtension;
  std::string filter;  // "Selected Files (*.MTH)|*.MTH|All files (*.*)|*.*"
  std::string fileName;
  FileDialogAction action = FileDialogAction::Open;
  int flags = 0;
  // The dialog's title, saying what is opened or saved; empty for the toolkit's own.
  std::string title;
};

// Everything the program asks of the person at the bench, and the end of the program.
class Operator {
 public:
  virtual ~Operator() = default;

  // Shows a modal box and returns the answer code of the button pressed.
  virtual int messageBox(const MessageBoxRequest& box) = 0;
  // Asks for a line of text; cancelling yields the empty text.
  virtual std::string inputBox(const std::string& prompt, const std::string& title,
                               const std::string& defaultText) = 0;
  // Returns the chosen full path, or the empty text when the dialog was cancelled.
  virtual std::string fileDialog(const FileDialogRequest& request) = 0;
  virtual void beep() = 0;
  virtual void setBusy(bool busy) = 0;
  // Ends the program once the current work returns; callers return at once after it.
  virtual void endProgram(int exitCode) = 0;
  // True once nobody is left to answer (an unattended run whose answer file is used up or went
  // wrong): a loop that asks again and again stops at once instead.
  virtual bool answersExhausted() const { return false; }

  int message(const std::string& text, const std::string& title = kAppTitle,
              BoxIcon icon = BoxIcon::None, BoxButtons buttons = BoxButtons::Ok) {
    return messageBox(MessageBoxRequest{text, title, icon, buttons});
  }
};

}  // namespace zorvel
