#pragma once

#include <span>
#include <string>
#include <vector>

// The seam between the run and the control and blank checks. The run hands every fixed
// reading the operator files as a control or a blank to check(); the check decides whether it
// is kept (and files it in ".CTL" or ".BLK"), read again, or the run gives up on it.
namespace zorvel {

enum class CheckKind { Control, Blank };

// What the check decides about a reading, in the answer codes of the alert's buttons; and,
// beside them, a reading whose record could not be written and that the operator gave up.
enum class Verdict { Keep = 6, ReadAgain = 7, Abort = 2, NotRecorded = -1 };

// A colour of a reading outside its band: the value and the band's limits (mean +/- 3 or 4 SD).
struct OutOfRange {
  int colour = 0;  // 1-based
  float value = 0;
  double low = 0;
  double high = 0;
  int sds = 0;  // 3 or 4
};

// Where a check with nobody at the bench reports an alert: the reading is kept (verdict 6)
// instead of asking the operator, and its colours out of range are told here.
class UnattendedAlerts {
 public:
  virtual ~UnattendedAlerts() = default;
  virtual void alertKept(const std::vector<OutOfRange>& colours) = 0;
};

// One fixed reading as the check sees it.
struct CheckedReading {
  CheckKind kind = CheckKind::Control;
  int sampleNumber = 0;
  std::span<const float> readings;  // colours 1..No.Colors
  std::string comment;              // as typed
  // Set during a tray run: an alert is logged there instead of asking the operator.
  UnattendedAlerts* unattended = nullptr;
};

class QualityCheck {
 public:
  virtual ~QualityCheck() = default;

  // Entries in the control and blank databases.
  virtual int ControlCount() const = 0;
  virtual int BlankCount() const = 0;
  // Checks a reading and, when it is kept, appends it to its file and database.
  virtual Verdict check(const CheckedReading& reading) = 0;
  // A scan filed as control or blank with no fixed reading beside it still counts as an entry.
  virtual void countScanOnly(CheckKind kind) = 0;
  // The grid's "Median" row: each colour's control median ("0.0"), empty when none is known.
  virtual std::vector<std::string> medianRow(int colours) const = 0;
  // Readings whose record the operator gave up writing (disk full, read-only folder).
  virtual int notRecorded() const { return 0; }
};

}  // namespace zorvel
