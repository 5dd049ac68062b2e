#include "core/datafiles/record_lines.h"

#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string label(char letter, int sampleNumber) {
  return std::string(1, letter) + text::fixed(static_cast<double>(sampleNumber), 0);
}

void appendComment(std::string& line, std::string_view comment) {
  const std::string trimmed = TrimmedComment(comment);
  if (!trimmed.empty()) line += "\t" + trimmed;
}

}  // namespace

std::string TrimmedComment(std::string_view comment) {
  const std::size_t first = comment.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  const std::size_t last = comment.find_last_not_of(' ');
  return std::string(comment.substr(first, last - first + 1));
}

std::string FixedRecordLine(char letter, int sampleNumber, std::optional<int> tube,
                            std::span<const float> readings, std::string_view comment,
                            std::string_view lineEnding) {
  std::string line = label(letter, sampleNumber);
  if (tube) line += "\t" + text::fixed(static_cast<double>(*tube), 0);
  for (float reading : readings) line += "\t" + text::fixed(reading, 3);
  appendComment(line, comment);
  line += lineEnding;
  return line;
}

std::string DatabaseRecordLine(char letter, int sampleNumber, std::span<const float> readings,
                               const CalendarTime& when, std::string_view comment,
                               std::string_view lineEnding) {
  std::string line = label(letter, sampleNumber);
  for (float reading : readings) line += "\t" + text::printForm(reading);
  line += "\t" + text::formatDate(when) + "\t" + text::formatTime(when);
  appendComment(line, comment);
  line += lineEnding;
  return line;
}

std::string ScanRecordLine(char letter, int sampleNumber, std::span<const float> points,
                           std::string_view lineEnding) {
  std::string line = label(letter, sampleNumber) + " ";
  for (float point : points) line += text::printForm(point);
  line += lineEnding;
  return line;
}

}  // namespace zorvel
