#pragma once

#include "core/datafiles/quality_databases.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/quality/quality_check.h"
#include "core/state/app_state.h"

namespace zorvel {

// The control and blank check before the statistics exist: every control or blank is kept
// (Verdict::Keep), appended to ".CTL" or ".BLK" and counted. It also keeps the counts of a created
// (0) or reopened set (the records in its files), so the run launch knows when the databases
// are too small.
class FilingCheck final : public QualityCheck, public QualityDatabases {
 public:
  FilingCheck(const AppState& state, Clock& clock, Operator& op);

  int ControlCount() const override { return controls_; }
  int BlankCount() const override { return blanks_; }
  int notRecorded() const override { return notRecorded_; }
  Verdict check(const CheckedReading& reading) override;
  void countScanOnly(CheckKind kind) override;
  std::vector<std::string> medianRow(int colours) const override;

  void resetCounts() override { controls_ = blanks_ = 0; }
  void load(const std::string& ctlPath, const std::string& blkPath) override;

 private:
  int recordsIn(const std::string& path) const;

  const AppState& state_;
  Clock& clock_;
  Operator& op_;
  int controls_ = 0;
  int blanks_ = 0;
  int notRecorded_ = 0;
};

}  // namespace zorvel
