#include "core/datafiles/last_sample_number.h"

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

#include "core/datafiles/data_file_shape.h"
#include "core/files/file_output.h"

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

bool isPureOrBlank(char c) {
  return c == 'P' || c == 'B';
}

// The records after the heading line that contains `lastHeading`.
LastSample lastSampleAfter(std::string_view text, std::string_view lastHeading,
                           bool anyRecordIsASample) {
  LastSample last;
  bool inRecords = false;
  for (std::string_view line : splitLines(text)) {
    if (!inRecords) {
      inRecords = line.find(lastHeading) != std::string_view::npos;
      continue;
    }
    RecordLabel label;
    if (!ParseRecordLabel(line, label)) continue;
    if (label.letter != 'R') last.lastLabel = label.letter + std::to_string(label.number);
    if (isPureOrBlank(label.letter)) continue;
    last.number = static_cast<int>(std::min<long>(label.number, INT_MAX));
    if (label.letter == 'S' || anyRecordIsASample) last.samplesPresent = true;
  }
  return last;
}

std::string fileName(const std::string& path) {
  return path.substr(path.find_last_of('/') + 1);
}

}  // namespace

LastSample LastSampleInFixedText(std::string_view text) {
  return lastSampleAfter(text, "em wl", false);
}

LastSample LastSampleInScanText(std::string_view text) {
  return lastSampleAfter(text, "Initial", true);
}

LastSample FindLastSample(const MethodSettings& method, const DataSetPaths& paths) {
  LastSample fixed;
  LastSample scans;
  std::string bytes;
  if (method.Fixed && ReadWholeFile(paths.FixPath, bytes)) fixed = LastSampleInFixedText(bytes);
  bytes.clear();
  if (method.Synch && ReadWholeFile(paths.SynPath, bytes)) scans = LastSampleInScanText(bytes);
  if (!method.Synch) return fixed;
  if (!method.Fixed) return scans;
  LastSample last = fixed;
  last.number = std::max(fixed.number, scans.number);
  last.samplesPresent = fixed.samplesPresent || scans.samplesPresent;
  if (fixed.lastLabel != scans.lastLabel) {
    auto ends = [](const std::string& label) { return label.empty() ? "no record" : label; };
    last.mismatch =
        "The last reading of the data set is not in both of its files: " + fileName(paths.FixPath) +
        " ends with " + ends(fixed.lastLabel) + ", " + fileName(paths.SynPath) + " with " +
        ends(scans.lastLabel) +
        ".  A run was interrupted between the two records; numbering continues "
        "after " +
        std::to_string(last.number) + ".";
  }
  return last;
}

}  // namespace zorvel
