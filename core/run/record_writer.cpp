#include "core/run/record_writer.h"

#include "core/datafiles/record_lines.h"
#include "core/files/log_line.h"
#include "core/files/record_filing.h"
#include "core/text/number_format.h"

namespace zorvel {

RecordWriter::RecordWriter(const AppState& state, Operator& op, Printer& printer,
                           QualityCheck& checks)
    : state_(state), op_(op), printer_(printer), checks_(checks) {}

void RecordWriter::markSimulated(Clock& clock, std::string marking) {
  clock_ = &clock;
  simulated_ = std::move(marking);
}

void RecordWriter::beforeFiling() {
  if (simulated_.empty() || simulatedLogged_) return;
  simulatedLogged_ = true;
  WriteLogEntry(state_.LogPath, *clock_,
                simulated_ + " readings in data set " + state_.DataSet.FixPath);
}

void RecordWriter::countFiled() {
  ++filed_;
  if (filedListener_) filedListener_(filed_);
}

bool RecordWriter::append(const std::string& path, const std::string& record) {
  if (FileRecord(op_, path, record, state_.LineEnding)) return true;
  ++notRecorded_;
  return false;
}

Verdict RecordWriter::WriteFixedRecord(SampleType type, char letter, const RecordContent& content,
                                       bool filed) {
  beforeFiling();
  if (filed) {
    CheckedReading reading;
    reading.kind = type == SampleType::Control ? CheckKind::Control : CheckKind::Blank;
    reading.sampleNumber = content.sampleNumber;
    reading.readings = content.readings;
    reading.comment = content.comment;
    reading.unattended = unattended_;
    const int lostBefore = checks_.notRecorded();
    const Verdict verdict = checks_.check(reading);
    if (verdict == Verdict::Keep && checks_.notRecorded() == lostBefore) countFiled();
    if (state_.Method.PrintResults) PrintResult(type, content);
    return verdict;
  }
  if (state_.Method.PrintResults) PrintResult(type, content);
  const bool written =
      append(state_.DataSet.FixPath,
             FixedRecordLine(letter, content.sampleNumber, content.tube, content.readings,
                             content.comment, state_.LineEnding));
  if (!written) return Verdict::NotRecorded;
  if (letter != record_letter::kReplicate) countFiled();
  return Verdict::Keep;
}

bool RecordWriter::WriteSynchRecord(SampleType type, char letter, const RecordContent& content,
                                    bool filed) {
  beforeFiling();
  const std::string* path = &state_.DataSet.SynPath;
  if (filed) path = type == SampleType::Control ? &state_.DataSet.StlPath : &state_.DataSet.SlkPath;
  if (filed && !state_.Method.Fixed) {
    checks_.countScanOnly(type == SampleType::Control ? CheckKind::Control : CheckKind::Blank);
  }
  const bool written = append(
      *path, ScanRecordLine(letter, content.sampleNumber, content.points, state_.LineEnding));
  if (written && !state_.Method.Fixed) countFiled();
  return written;
}

std::string RecordWriter::ResultLine(SampleType type, const RecordContent& content) {
  const std::string label = type == SampleType::Sample
                                ? text::fixed(static_cast<double>(content.sampleNumber), 0)
                                : SampleTypeName(type);
  std::string line = text::padRight(label, 8);
  for (float reading : content.readings) line += text::padLeft(text::fixed(reading, 1), 7);
  if (!TrimmedComment(content.comment).empty()) line += " ***";
  return line;
}

void RecordWriter::PrintResult(SampleType type, const RecordContent& content) {
  printer_.print(ResultLine(type, content));
  printer_.endLine();
}

}  // namespace zorvel
