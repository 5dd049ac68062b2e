#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/printer.h"
#include "core/quality/quality_check.h"
#include "core/run/sample_type.h"
#include "core/state/app_state.h"

namespace zorvel {

// What one record is made of: the reading as it stands when the record is written.
struct RecordContent {
  int sampleNumber = 0;
  std::span<const float> readings;  // colours 1..No.Colors
  std::span<const float> points;    // the scan
  std::string comment;              // as typed
  std::optional<int> tube;          // the tray position the reading came from
};

// Files the run's readings: samples, pures, solvent blanks and replicates in ".FIX"; scans in
// ".SYN", ".STL" or ".SLK"; controls and blanks through the quality check; and, when the
// method asks for it, one printed line per reading. A record counts as written only once it is
// on the disk.
class RecordWriter {
 public:
  RecordWriter(const AppState& state, Operator& op, Printer& printer, QualityCheck& checks);

  // A reading the operator filed as a control or blank (`filed`; type Control or Blank) goes
  // to the check and returns its verdict; any other reading, the solvent blank included, is
  // appended to ".FIX" with the letter and is kept, or NotRecorded when the operator gave up
  // writing it.
  Verdict WriteFixedRecord(SampleType type, char letter, const RecordContent& content, bool filed);
  // A filed scan goes to ".STL" or ".SLK" (and counts in its database when no fixed reading
  // was filed beside it), any other to ".SYN". False when the record was not written.
  bool WriteSynchRecord(SampleType type, char letter, const RecordContent& content, bool filed);
  void PrintResult(SampleType type, const RecordContent& content);
  // During a tray run the control check logs its alerts here instead of asking; null again
  // afterwards.
  void setUnattended(UnattendedAlerts* alerts) { unattended_ = alerts; }
  // The readings are the simulator's: the first filing of the run names the data set in the
  // program log with `marking`, so they can be told from real ones afterwards.
  void markSimulated(Clock& clock, std::string marking);

  // The printed line: the label in 8 places, each reading "0.0" in 7, " ***" after a comment.
  static std::string ResultLine(SampleType type, const RecordContent& content);

  // Readings whose record the operator gave up writing.
  int notRecorded() const { return notRecorded_; }
  // Readings filed so far, each once: when its fixed record is kept (in ".FIX", or by the
  // check), or, for a method without fixed readings, when its scan is written. A replicate
  // before the last is part of the reading that follows it and does not count.
  int filed() const { return filed_; }
  // Told the new count each time a reading is filed.
  void setFiledListener(std::function<void(int)> listener) { filedListener_ = std::move(listener); }

 private:
  bool append(const std::string& path, const std::string& record);
  void beforeFiling();
  void countFiled();

  const AppState& state_;
  Operator& op_;
  Printer& printer_;
  QualityCheck& checks_;
  UnattendedAlerts* unattended_ = nullptr;
  int notRecorded_ = 0;
  int filed_ = 0;
  std::function<void(int)> filedListener_;
  Clock* clock_ = nullptr;
  std::string simulated_;
  bool simulatedLogged_ = false;
};

}  // namespace zorvel
