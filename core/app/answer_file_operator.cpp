#include "core/app/answer_file_operator.h"

#include <array>

namespace zorvel {

namespace {

// Line breaks of a message shown on one console line: each run of them (CR LF, a blank line
// between paragraphs) becomes one " | ".
std::string oneLine(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (c != '\r' && c != '\n') {
      out += c;
    } else if (!out.ends_with(" | ")) {
      out += " | ";
    }
  }
  return out;
}

int safestAnswer(BoxButtons buttons) {
  for (int code : {answer::kCancel, answer::kNo, answer::kOk, answer::kAbort}) {
    if (ButtonsAllow(buttons, code)) return code;
  }
  return answer::kOk;
}

}  // namespace

int AnswerCodeForWord(const std::string& word) {
  static constexpr std::array<const char*, 8> kWords = {"",      "ok",     "cancel", "abort",
                                                        "retry", "ignore", "yes",    "no"};
  for (int code = 1; code < static_cast<int>(kWords.size()); ++code) {
    if (word == kWords[static_cast<std::size_t>(code)]) return code;
  }
  return 0;
}

std::string ButtonWords(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::Ok:
      return "ok";
    case BoxButtons::OkCancel:
      return "ok/cancel";
    case BoxButtons::AbortRetryIgnore:
      return "abort/retry/ignore";
    case BoxButtons::YesNoCancel:
      return "yes/no/cancel";
    case BoxButtons::YesNo:
      return "yes/no";
    case BoxButtons::RetryCancel:
      return "retry/cancel";
  }
  return "ok";
}

bool ButtonsAllow(BoxButtons buttons, int code) {
  const std::string words = "/" + ButtonWords(buttons) + "/";
  for (const char* word : {"ok", "cancel", "abort", "retry", "ignore", "yes", "no"}) {
    if (AnswerCodeForWord(word) == code)
      return words.find("/" + std::string(word) + "/") != std::string::npos;
  }
  return false;
}

int AnswerFileOperator::messageBox(const MessageBoxRequest& box) {
  out_ << "[" << box.title << "] " << oneLine(box.text) << " (" << ButtonWords(box.buttons)
       << ")\n";
  if (script_.failed()) return safestAnswer(box.buttons);
  const auto line = script_.next();
  if (!line) {
    script_.fail("the answer file ran out at the box \"" + oneLine(box.text) + "\"");
    return safestAnswer(box.buttons);
  }
  const int code = AnswerCodeForWord(line->word);
  if (code == 0 || !ButtonsAllow(box.buttons, code)) {
    script_.fail("line " + std::to_string(line->lineNumber) + " \"" + line->text +
                 "\" does not answer the box \"" + oneLine(box.text) + "\" (" +
                 ButtonWords(box.buttons) + ")");
    return safestAnswer(box.buttons);
  }
  out_ << "  > " << line->word << "\n";
  return code;
}

std::string AnswerFileOperator::inputBox(const std::string& prompt, const std::string& title,
                                         const std::string&) {
  out_ << "[" << title << "] " << oneLine(prompt) << " (text VALUE)\n";
  if (script_.failed()) return {};
  const auto line = script_.next();
  if (!line || line->word != "text") {
    script_.fail(line ? "line " + std::to_string(line->lineNumber) + " \"" + line->text +
                            "\" does not answer the input box \"" + oneLine(prompt) + "\""
                      : "the answer file ran out at the input box \"" + oneLine(prompt) + "\"");
    return {};
  }
  out_ << "  > " << line->argument << "\n";
  return line->argument;
}

std::string AnswerFileOperator::fileDialog(const FileDialogRequest& request) {
  script_.fail("an unattended run cannot choose a file (asked for *." + request.defaultExtension +
               " in " + request.initialDirectory + ")");
  return {};
}

void AnswerFileOperator::endProgram(int exitCode) {
  ended_ = true;
  exitCode_ = exitCode;
}

}  // namespace zorvel
