#include "core/datafiles/last_sample_number.h"

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

#include "core/datafiles/data_file_shape.h"
#include "core/files/backward_lines.h"
#include "core/files/file_ends.h"
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

// A line that begins as a record does but whose number cannot be read ("S-7", a number of
// more digits than a record holds): its label as found, or empty for any other line.
std::string unreadableLabel(std::string_view line) {
  RecordLabel label;
  // A heading such as "Color" starts with a record letter too; a record's number follows its
  // letter at once.
  if (line.size() < 2 || kRecordLetters.find(line.front()) == std::string_view::npos ||
      std::string_view("0123456789-+").find(line[1]) == std::string_view::npos ||
      ParseRecordLabel(line, label))
    return {};
  const std::size_t end = std::min(line.find_first_of("\t "), std::size_t{24});
  return std::string(line.substr(0, end));
}

// Where the records begin: just after the first whole line of the head that holds the heading;
// npos when the head holds none.
std::size_t recordsStart(std::string_view head, std::string_view heading, bool headIsWhole) {
  std::size_t start = 0;
  while (start < head.size()) {
    std::size_t end = head.find_first_of("\r\n", start);
    if (end == std::string_view::npos) return headIsWhole ? head.size() : std::string_view::npos;
    const bool holds = head.substr(start, end - start).find(heading) != std::string_view::npos;
    if (head[end] == '\r' && end + 1 < head.size() && head[end + 1] == '\n') ++end;
    // A CR at the end of the head may yet be followed by its LF.
    if (head[end] == '\r' && end + 1 == head.size() && !headIsWhole) return std::string_view::npos;
    start = end + 1;
    if (holds) return start;
  }
  return std::string_view::npos;
}

// The last records, read from the file's end back to `firstByte` only as far as needed: the
// last label, the last number and whether any sample is there.
LastSample lastSampleFromEnd(const std::string& path, std::size_t firstByte,
                             bool anyRecordIsASample) {
  LastSample last;
  bool haveLabel = false;
  bool haveNumber = false;
  BackwardLines lines(path, firstByte);
  std::string line;
  while (!(haveLabel && haveNumber && last.samplesPresent) && lines.previous(line)) {
    RecordLabel label;
    if (!ParseRecordLabel(line, label)) {
      // Only one after the last readable number would be numbered past.
      if (!haveNumber && last.unreadable.empty()) last.unreadable = unreadableLabel(line);
      continue;
    }
    if (!haveLabel && label.letter != 'R') {
      last.lastLabel = label.letter + std::to_string(label.number);
      haveLabel = true;
    }
    if (isPureOrBlank(label.letter)) continue;
    if (!haveNumber) last.number = static_cast<int>(std::min<long>(label.number, INT_MAX));
    haveNumber = true;
    if (label.letter == 'S' || anyRecordIsASample) last.samplesPresent = true;
  }
  return last;
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
    if (!ParseRecordLabel(line, label)) {
      if (last.unreadable.empty()) last.unreadable = unreadableLabel(line);
      continue;
    }
    if (!isPureOrBlank(label.letter)) last.unreadable.clear();
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

LastSample LastSampleInFile(const std::string& path, DataFileKind kind) {
  const bool fixed = kind == DataFileKind::Fixed;
  const std::string_view heading = fixed ? "em wl" : "Initial";
  std::string head;
  if (!ReadFileHead(path, kFileEndBytes + 1, head)) return {};
  const bool headIsWhole = head.size() <= kFileEndBytes;
  if (!headIsWhole) head.pop_back();
  const std::size_t start = recordsStart(head, heading, headIsWhole);
  if (start != std::string_view::npos) return lastSampleFromEnd(path, start, !fixed);
  if (headIsWhole) return {};
  // A header longer than any the program writes: the file is read whole, as it is written.
  std::string bytes;
  ReadWholeFile(path, bytes);
  return fixed ? LastSampleInFixedText(bytes) : LastSampleInScanText(bytes);
}

// Names the record whose number could not be read, so numbering never passes it in silence.
void tellUnreadable(LastSample& last, const std::string& path) {
  if (last.unreadable.empty()) return;
  last.unreadableMessage = "The data file " + fileName(path) + " holds the record \"" +
                           last.unreadable + "\" after its last readable record number (" +
                           std::to_string(last.number) +
                           "); its number cannot be read.  Numbering continues after " +
                           std::to_string(last.number) + ".";
}

LastSample FindLastSample(const MethodSettings& method, const DataSetPaths& paths) {
  LastSample fixed;
  LastSample scans;
  if (method.Fixed) fixed = LastSampleInFile(paths.FixPath, DataFileKind::Fixed);
  if (method.Synch) scans = LastSampleInFile(paths.SynPath, DataFileKind::Synch);
  tellUnreadable(fixed, paths.FixPath);
  tellUnreadable(scans, paths.SynPath);
  if (!method.Synch) return fixed;
  if (!method.Fixed) return scans;
  LastSample last = fixed;
  last.number = std::max(fixed.number, scans.number);
  last.samplesPresent = fixed.samplesPresent || scans.samplesPresent;
  if (last.unreadableMessage.empty()) last.unreadableMessage = scans.unreadableMessage;
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
