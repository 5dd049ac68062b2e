#include "core/state/answer_script.h"

#include <sstream>

#include "core/files/file_output.h"

namespace zorvel {

namespace {

std::string trimmed(const std::string& text) {
  const auto begin = text.find_first_not_of(" \t\r\n");
  if (begin == std::string::npos) return {};
  const auto end = text.find_last_not_of(" \t\r\n");
  return text.substr(begin, end - begin + 1);
}

}  // namespace

bool AnswerScript::load(const std::string& path, std::string* error) {
  std::string text;
  if (!ReadWholeFile(path, text)) {
    if (error) *error = "cannot read the answer file " + path;
    return false;
  }
  loadText(text);
  return true;
}

void AnswerScript::loadText(const std::string& text) {
  lines_.clear();
  position_ = 0;
  std::istringstream in(text);
  std::string raw;
  int number = 0;
  while (std::getline(in, raw)) {
    ++number;
    const std::string line = trimmed(raw);
    if (line.empty() || line.front() == '#') continue;
    ScriptLine entry;
    entry.lineNumber = number;
    entry.text = line;
    const auto space = line.find_first_of(" \t");
    entry.word = line.substr(0, space);
    if (space != std::string::npos) entry.argument = trimmed(line.substr(space + 1));
    lines_.push_back(entry);
  }
}

std::optional<ScriptLine> AnswerScript::next() {
  if (usedUp()) return std::nullopt;
  return lines_[position_++];
}

std::optional<ScriptLine> AnswerScript::peek() const {
  if (usedUp()) return std::nullopt;
  return lines_[position_];
}

void AnswerScript::fail(const std::string& why) {
  if (failure_.empty()) failure_ = why;
}

}  // namespace zorvel
