#include "core/datafiles/last_sample_number.h"

#include <optional>
#include <string>
#include <vector>

#include "core/files/file_output.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

// Lines ended by CR LF, CR or LF, so that sets in either line ending read alike.
std::vector<std::string_view> splitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = start;
    while (end < text.size() && text[end] != '\r' && text[end] != '\n') ++end;
    lines.push_back(text.substr(start, end - start));
    if (end < text.size() && text[end] == '\r') ++end;
    if (end < text.size() && text[end] == '\n') ++end;
    start = end;
  }
  return lines;
}

// The number a field begins with, as a sample number: leading blanks skipped, then an optional
// sign, digits and decimals; text without digits counts as 0. Nothing when it leaves 16 bits.
std::optional<int> leadingSampleNumber(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && text[i] == ' ') ++i;
  const std::size_t start = i;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  const std::size_t digitsStart = i;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
  }
  if (i == digitsStart) return 0;
  const auto value = text::parseNumber(text.substr(start, i - start));
  if (!value) return 0;
  const auto number = text::toInt16(*value);
  if (!number) return std::nullopt;
  return *number;
}

bool isPureOrBlank(char c) {
  return c == 'P' || c == 'B';
}

}  // namespace

LastSample LastSampleInFixedText(std::string_view text) {
  LastSample last;
  bool inRecords = false;
  for (std::string_view line : splitLines(text)) {
    if (!inRecords) {
      inRecords = line.find("em wl") != std::string_view::npos;
      continue;
    }
    if (line.size() <= 2) continue;
    const std::string_view field = line.substr(0, line.find('\t'));
    if (field.empty() || isPureOrBlank(field.front())) continue;
    if (const auto number = leadingSampleNumber(field.substr(1))) last.number = *number;
    if (field.front() == 'S') last.samplesPresent = true;
  }
  return last;
}

LastSample LastSampleInScanText(std::string_view text) {
  LastSample last;
  bool inRecords = false;
  for (std::string_view line : splitLines(text)) {
    if (!inRecords) {
      inRecords = line.find("Initial") != std::string_view::npos;
      continue;
    }
    if (line.empty() || isPureOrBlank(line.front())) continue;
    if (const auto number = leadingSampleNumber(line.substr(1))) last.number = *number;
    last.samplesPresent = true;
  }
  return last;
}

LastSample FindLastSample(const MethodSettings& method, const DataSetPaths& paths) {
  LastSample last;
  std::string bytes;
  if (method.Fixed && ReadWholeFile(paths.FixPath, bytes)) last = LastSampleInFixedText(bytes);
  bytes.clear();
  if (method.Synch && ReadWholeFile(paths.SynPath, bytes)) {
    const LastSample scans = LastSampleInScanText(bytes);
    last.number = scans.number;
    last.samplesPresent = last.samplesPresent || scans.samplesPresent;
  }
  return last;
}

}  // namespace zorvel
