#include "core/files/key_value_reader.h"

#include <utility>

#include "core/files/file_output.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {
bool isLineEnd(char c) {
  return c == '\r' || c == '\n';
}
}  // namespace

std::string_view ValueAfterEquals(std::string_view text) {
  const std::size_t at = text.find('=');
  return at == std::string_view::npos ? text : text.substr(at + 1);
}

bool KeyValueReader::open(const std::string& path) {
  std::string text;
  if (!ReadWholeFile(path, text)) return false;
  openText(std::move(text));
  return true;
}

void KeyValueReader::openText(std::string text) {
  text_ = std::move(text);
  pos_ = 0;
  open_ = true;
}

// A line ends at CR LF, CR or LF.
void KeyValueReader::skipLineEnd() {
  if (pos_ < text_.size() && text_[pos_] == '\r') ++pos_;
  if (pos_ < text_.size() && text_[pos_] == '\n') ++pos_;
}

int KeyValueReader::lastLine() const {
  int line = 1;
  for (std::size_t i = 0; i < lastStart_ && i < text_.size(); ++i) {
    // CR LF, CR and LF each end one line.
    if (text_[i] == '\n' || (text_[i] == '\r' && (i + 1 >= text_.size() || text_[i + 1] != '\n')))
      ++line;
  }
  return line;
}

std::string KeyValueReader::readLine() {
  const std::size_t start = pos_;
  lastStart_ = start;
  while (pos_ < text_.size() && !isLineEnd(text_[pos_])) ++pos_;
  std::string line = text_.substr(start, pos_ - start);
  skipLineEnd();
  return line;
}

// A comma-delimited field: leading blanks skipped, ended by a comma (consumed) or the line end
// (consumed); a field in double quotes runs to the closing quote.
std::string KeyValueReader::readField() {
  lastStart_ = pos_;
  while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t')) ++pos_;
  std::string field;
  if (pos_ < text_.size() && text_[pos_] == '"') {
    ++pos_;
    while (pos_ < text_.size() && text_[pos_] != '"' && !isLineEnd(text_[pos_]))
      field.push_back(text_[pos_++]);
    if (pos_ < text_.size() && text_[pos_] == '"') ++pos_;
    while (pos_ < text_.size() && text_[pos_] != ',' && !isLineEnd(text_[pos_])) ++pos_;
  } else {
    while (pos_ < text_.size() && text_[pos_] != ',' && !isLineEnd(text_[pos_]))
      field.push_back(text_[pos_++]);
    while (!field.empty() && (field.back() == ' ' || field.back() == '\t')) field.pop_back();
  }
  if (pos_ < text_.size() && text_[pos_] == ',') {
    ++pos_;
  } else {
    skipLineEnd();
  }
  return field;
}

bool KeyValueReader::ReadIntValue(std::int16_t& value) {
  if (atEnd()) {
    close();
    return false;
  }
  const std::string field = readField();
  lastValue_ = std::string(ValueAfterEquals(field));
  if (const auto number = text::parseNumber(lastValue_)) {
    if (const auto rounded = text::toInt16(*number)) value = *rounded;
  }
  return true;
}

bool KeyValueReader::ReadSingleValue(float& value) {
  if (atEnd()) {
    close();
    return false;
  }
  const std::string field = readField();
  lastValue_ = std::string(ValueAfterEquals(field));
  if (const auto number = text::parseNumber(lastValue_)) {
    value = static_cast<float>(*number);
  }
  return true;
}

std::string KeyValueReader::ReadTextValue() {
  if (atEnd()) {
    close();
    return std::string(kEofMarker);
  }
  lastValue_ = std::string(ValueAfterEquals(readLine()));
  return lastValue_;
}

}  // namespace zorvel
