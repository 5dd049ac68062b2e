#include "core/quality/filing_check.h"

#include <algorithm>

#include "core/datafiles/record_lines.h"
#include "core/files/file_output.h"
#include "core/files/record_filing.h"

namespace zorvel {

namespace {

// A database holds at most this many entries; more records on file do not count beyond it.
constexpr int kDatabaseCapacity = 50;

}  // namespace

FilingCheck::FilingCheck(const AppState& state, Clock& clock, Operator& op)
    : state_(state), clock_(clock), op_(op) {}

Verdict FilingCheck::check(const CheckedReading& reading) {
  const bool control = reading.kind == CheckKind::Control;
  const std::string& path = control ? state_.DataSet.CtlPath : state_.DataSet.BlkPath;
  const std::string line = DatabaseRecordLine(
      control ? record_letter::kControl : record_letter::kBlank, reading.sampleNumber,
      reading.readings, clock_.now(), reading.comment, state_.LineEnding);
  if (!FileRecord(op_, path, line, state_.LineEnding)) {
    ++notRecorded_;
    return Verdict::Keep;
  }
  countScanOnly(reading.kind);
  return Verdict::Keep;
}

void FilingCheck::countScanOnly(CheckKind kind) {
  int& count = kind == CheckKind::Control ? controls_ : blanks_;
  if (count < kDatabaseCapacity) ++count;
}

std::vector<std::string> FilingCheck::medianRow(int colours) const {
  return std::vector<std::string>(static_cast<std::size_t>(std::max(colours, 0)));
}

void FilingCheck::load(const std::string& ctlPath, const std::string& blkPath) {
  controls_ = recordsIn(ctlPath);
  blanks_ = recordsIn(blkPath);
}

int FilingCheck::recordsIn(const std::string& path) const {
  std::string bytes;
  if (!ReadWholeFile(path, bytes)) return 0;
  const std::string& end = state_.LineEnding;
  int lines = 0;
  for (std::size_t at = bytes.find(end); at != std::string::npos;
       at = bytes.find(end, at + end.size())) {
    ++lines;
  }
  return std::clamp(lines - state_.DatabaseHeaderLines, 0, kDatabaseCapacity);
}

}  // namespace zorvel
