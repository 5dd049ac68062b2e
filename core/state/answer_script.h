#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zorvel {

// One line of an answer file: a word and what follows it ("comment Cloudy", "text 12").
struct ScriptLine {
  int lineNumber = 0;
  std::string word;
  std::string argument;
  std::string text;  // the whole line as written, for messages
};

// The answers of an unattended run, one line each, in the order the program asks: message-box
// answers (ok, yes, no, cancel, retry), input-box text (text VALUE), and the run window's and
// checks' actions. Blank lines and lines starting with "#" are skipped.
class AnswerScript {
 public:
  // False with a message in `error` when the file cannot be read.
  bool load(const std::string& path, std::string* error);
  void loadText(const std::string& text);

  // The next answer, or nothing when the script is used up.
  std::optional<ScriptLine> next();
  // The next answer without taking it.
  std::optional<ScriptLine> peek() const;
  bool usedUp() const { return position_ >= lines_.size(); }

  // The first thing that went wrong (an answer that does not fit the question, a script that
  // ran out); empty while all is well. The run stops at its next checkpoint once it is set.
  const std::string& failure() const { return failure_; }
  bool failed() const { return !failure_.empty(); }
  void fail(const std::string& why);

 private:
  std::vector<ScriptLine> lines_;
  std::size_t position_ = 0;
  std::string failure_;
};

}  // namespace zorvel
