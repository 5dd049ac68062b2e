#include "core/datafiles/data_file_shape.h"

#include <algorithm>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool allDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

std::vector<std::string_view> split(std::string_view line, char separator) {
  std::vector<std::string_view> fields;
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = line.find(separator, start);
    fields.push_back(line.substr(start, end == std::string_view::npos ? end : end - start));
    if (end == std::string_view::npos) return fields;
    start = end + 1;
  }
}

// "0.000": an optional minus, digits, a point and exactly three decimals.
bool isFixedReading(std::string_view field) {
  if (!field.empty() && field.front() == '-') field.remove_prefix(1);
  const std::size_t point = field.find('.');
  return point != std::string_view::npos && allDigits(field.substr(0, point)) &&
         field.size() == point + 4 && allDigits(field.substr(point + 1));
}

// Print form: a blank or "-", a number, one trailing blank.
bool isPrintForm(std::string_view field) {
  if (field.size() < 3 || (field.front() != ' ' && field.front() != '-') || field.back() != ' ')
    return false;
  return text::parseNumber(field.substr(1, field.size() - 2)).has_value();
}

bool isDate(std::string_view f) {
  return f.size() == 10 && f[2] == '-' && f[5] == '-' && allDigits(f.substr(0, 2)) &&
         allDigits(f.substr(3, 2)) && allDigits(f.substr(6));
}

bool isTime(std::string_view f) {
  return f.size() == 8 && f[2] == ':' && f[5] == ':' && allDigits(f.substr(0, 2)) &&
         allDigits(f.substr(3, 2)) && allDigits(f.substr(6));
}

// The fields after the label: the expected ones, then at most one comment.
bool wholeTabRecord(const DataFileShape& shape, std::string_view line) {
  const std::vector<std::string_view> fields = split(line, '\t');
  RecordLabel label;
  if (!ParseRecordLabel(fields[0], label) || !allDigits(fields[0].substr(1))) return false;
  std::size_t k = 1;
  auto take = [&](auto&& accepts) { return k < fields.size() && accepts(fields[k++]); };
  if (shape.kind == DataFileKind::Fixed) {
    if (shape.tubeColumn && !take(allDigits)) return false;
    for (int c = 0; c < shape.colours; ++c)
      if (!take(isFixedReading)) return false;
  } else {
    for (int c = 0; c < shape.colours; ++c)
      if (!take(isPrintForm)) return false;
    if (!take(isDate) || !take(isTime)) return false;
  }
  return fields.size() == k || (fields.size() == k + 1 && !fields[k].empty());
}

// The points of a scan record, or -1 when the line is not one.
int scanPoints(std::string_view line) {
  RecordLabel label;
  if (!ParseRecordLabel(line, label)) return -1;
  const std::size_t blank = line.find(' ');
  if (blank == std::string_view::npos || line.back() != ' ') return -1;
  int points = 0;
  for (std::string_view token : split(line.substr(blank + 1), ' ')) {
    if (token.empty()) continue;
    if (!text::parseNumber(token)) return -1;
    ++points;
  }
  return points;
}

}  // namespace

DataFileShape ShapeOf(DataFileKind kind, const MethodSettings& method) {
  DataFileShape s;
  s.kind = kind;
  s.colours = std::clamp<int>(method.NoColors, 0, kMaxColours);
  s.tubeColumn = method.DeliveryMethod == Delivery::Autosampler;
  switch (kind) {
    case DataFileKind::Fixed:
      s = {kind, 19, "Data File\t", "Color", s.colours, s.tubeColumn};
      break;
    case DataFileKind::Synch:
      s = {kind, 17, "Data File\t", "Initial Date/Time\t", 0, false};
      break;
    case DataFileKind::Control:
      s = {kind, 3, "CONTROL FILE: ", "emwl/emsl", s.colours, false};
      break;
    case DataFileKind::Blank:
      s = {kind, 3, "BLANK FILE: ", "emwl/emsl", s.colours, false};
      break;
    case DataFileKind::ScanControl:
      s = {kind, 16, "CONTROL FILE:\t", "Initial Date/Time\t", 0, false};
      break;
    case DataFileKind::ScanBlank:
      s = {kind, 16, "BLANK FILE:\t", "Initial Date/Time\t", 0, false};
      break;
    case DataFileKind::RunLog:
      s = {kind, 1, "LOG FILE:\t", "LOG FILE:\t", 0, false};
      break;
  }
  return s;
}

std::vector<DataFileEntry> FilesOfSet(const DataSetPaths& p) {
  std::vector<DataFileEntry> files;
  const std::pair<const std::string*, DataFileKind> all[] = {
      {&p.FixPath, DataFileKind::Fixed},       {&p.CtlPath, DataFileKind::Control},
      {&p.BlkPath, DataFileKind::Blank},       {&p.SynPath, DataFileKind::Synch},
      {&p.StlPath, DataFileKind::ScanControl}, {&p.SlkPath, DataFileKind::ScanBlank},
      {&p.LogFilePath, DataFileKind::RunLog}};
  for (const auto& [path, kind] : all) {
    if (!path->empty()) files.push_back({*path, kind});
  }
  return files;
}

bool ParseRecordLabel(std::string_view line, RecordLabel& label) {
  if (line.empty() || kRecordLetters.find(line.front()) == std::string_view::npos) return false;
  std::size_t end = 1;
  while (end < line.size() && isDigit(line[end])) ++end;
  if (end == 1 || end > 10) return false;
  if (end < line.size() && line[end] != '\t' && line[end] != ' ') return false;
  label.letter = line.front();
  label.number = std::stol(std::string(line.substr(1, end - 1)));
  return true;
}

bool IsWholeRecord(const DataFileShape& shape, std::string_view line,
                   std::string_view previousRecord) {
  switch (shape.kind) {
    case DataFileKind::Fixed:
    case DataFileKind::Control:
    case DataFileKind::Blank:
      return wholeTabRecord(shape, line);
    case DataFileKind::Synch:
    case DataFileKind::ScanControl:
    case DataFileKind::ScanBlank: {
      const int points = scanPoints(line);
      if (points <= 0) return false;
      const int before = previousRecord.empty() ? -1 : scanPoints(previousRecord);
      return before < 0 || before == points;
    }
    case DataFileKind::RunLog:
      return false;  // nothing is ever appended to it
  }
  return false;
}

}  // namespace zorvel
