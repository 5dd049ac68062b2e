#include "core/datafiles/data_file_repair.h"

#include <vector>

#include "core/files/file_ends.h"
#include "core/files/record_append.h"

namespace zorvel {

namespace {

// The lines that end with a line ending of either kind (CR LF counts once), without it.
std::vector<std::string_view> completeLines(std::string_view bytes) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  for (std::size_t at = bytes.find_first_of("\r\n"); at != std::string_view::npos;
       at = bytes.find_first_of("\r\n", start)) {
    lines.push_back(bytes.substr(start, at - start));
    start = at + (bytes[at] == '\r' && at + 1 < bytes.size() && bytes[at + 1] == '\n' ? 2 : 1);
  }
  return lines;
}

DataFileRepair refused(const std::string& text) {
  DataFileRepair r;
  r.refusal = text;
  return r;
}

std::string notOfThisSet(const std::string& path) {
  return path +
         " is not a data file of this data set: its header does not read as one.  The "
         "file was left as it is.";
}

std::string describeRepair(const std::string& path, std::string_view partial,
                           const TailRepair& plan, std::size_t size) {
  if (plan.keep < size) {
    return "Data file " + path + ": removed a partial last line of " +
           std::to_string(size - plan.keep) + " bytes: " + VisibleBytes(partial);
  }
  if (!partial.empty()) {
    return "Data file " + path + ": completed the whole last record " + VisibleBytes(partial) +
           " with its line ending";
  }
  return "Data file " + path + ": completed the line ending of its last line";
}

}  // namespace

DataFileRepair PlanDataFileRepair(const std::string& path, const DataFileShape& shape,
                                  const FileEnds& file) {
  const std::string_view head = file.head;
  if (head.substr(0, shape.firstLineStart.size()) != shape.firstLineStart)
    return refused(notOfThisSet(path));
  const std::vector<std::string_view> lines = completeLines(head);
  const auto headerLines = static_cast<std::size_t>(shape.headerLines);
  if (lines.size() < headerLines) {
    return refused(path + " lacks its header (" + std::to_string(lines.size()) + " of its " +
                   std::to_string(headerLines) +
                   " lines): nothing is appended to it.  The file was left as it is.");
  }
  if (lines[headerLines - 1].substr(0, shape.lastHeaderStart.size()) != shape.lastHeaderStart)
    return refused(notOfThisSet(path));
  DataFileRepair r;
  r.ok = true;
  r.lineEnding = std::string(FileLineEnding(head));
  const std::string_view tail = file.whole() ? head : std::string_view(file.tail);
  const std::string_view partial = LastPartialLine(tail);
  // The line before a partial one tells a scan record's length; the header is no record. The
  // tail of a long file starts inside a line, so its first piece is no line at all.
  std::string_view previous;
  if (file.whole()) {
    if (lines.size() > headerLines) previous = lines.back();
  } else if (const std::vector<std::string_view> tailLines = completeLines(tail);
             tailLines.size() > 1) {
    previous = tailLines.back();
  }
  const bool whole = !partial.empty() && IsWholeRecord(shape, partial, previous);
  r.plan = PlanTailRepair(tail, r.lineEnding, whole);
  r.plan.keep += file.tailStart;
  if (r.plan.changes(file.size)) r.logEntry = describeRepair(path, partial, r.plan, file.size);
  return r;
}

DataFileRepair RepairDataFile(const std::string& path, const DataFileShape& shape) {
  FileEnds file;
  if (!ReadFileEnds(path, kFileEndBytes, file)) {
    return refused(path + " is missing from the data set, so the set cannot be appended to.");
  }
  // A last line longer than the tail read: where it starts is only found by reading it all.
  if (!file.whole() && WholeLinesLength(file.tail) == 0 && !ReadFileEnds(path, file.size, file)) {
    return refused(path + " is missing from the data set, so the set cannot be appended to.");
  }
  DataFileRepair r = PlanDataFileRepair(path, shape, file);
  if (!r.ok || !r.plan.changes(file.size)) return r;
  std::string reason;
  if (!ApplyTailRepair(path, r.plan.keep, r.plan.complete, &reason)) {
    return refused(path + " could not be repaired (" + reason + ").  The set is not opened.");
  }
  return r;
}

}  // namespace zorvel
