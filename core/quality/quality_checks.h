#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "core/datafiles/quality_databases.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/quality/quality_check.h"
#include "core/quality/quality_database.h"
#include "core/quality/quality_grid.h"
#include "core/quality/quality_snapshot.h"
#include "core/state/app_state.h"

namespace zorvel {

// What the last check decided, per colour (1-based): outside the 3-SD band, and the cell
// colour it was given.
struct QcCheckState {
  std::array<bool, kMaxColours + 1> flags{};
  std::array<int, kMaxColours + 1> cellColours{};
  bool alert = false;
  Verdict verdict = Verdict::Keep;
};

// The control and blank checks over their databases. Every control or blank the run files is
// checked against the statistics of its database: beyond 3 SD the cell turns light green,
// beyond 4 SD light blue, and a control beyond 4 SD that is also more than 5 % from the mean
// turns light red and raises the alert, where the operator keeps it, reads it again or aborts
// it. Kept readings are appended to ".CTL" or ".BLK" and to the database at once.
class QualityChecks final : public QualityCheck, public QualityDatabases {
 public:
  QualityChecks(const AppState& state, Clock& clock, Operator& op, AlertDialog& alert);

  // The run window's grid for as long as a run is open; null: nothing is painted. A run hands
  // its view through a QcRowTracker, which is also this grid.
  void attachGrid(QcGrid* grid) { grid_ = grid; }
  // Told the control medians ("0.0" per colour) whenever they change: the main window's display.
  // Called on the thread that runs the check or the load (during a run, the instrument worker).
  void onMediansChanged(std::function<void(const std::vector<std::string>&)> listener) {
    mediansChanged_ = std::move(listener);
  }

  int ControlCount() const override;
  int BlankCount() const override;
  int notRecorded() const override { return notRecorded_; }
  Verdict check(const CheckedReading& reading) override;
  void countScanOnly(CheckKind kind) override;
  std::vector<std::string> medianRow(int colours) const override;

  void resetCounts() override;
  void load(const std::string& ctlPath, const std::string& blkPath) override;
  void setBuilding(bool building) override { building_ = building; }

  Verdict CheckControl(std::span<const float> readings, int sampleNumber,
                       const std::string& comment, UnattendedAlerts* unattended = nullptr);
  Verdict CheckBlank(std::span<const float> readings, int sampleNumber, const std::string& comment);

  const QcDatabase& controls() const { return controls_; }
  const QcDatabase& blanks() const { return blanks_; }
  const QcCheckState& lastCheck() const { return check_; }
  // Both databases with the method's pairs, for the trend window (no reading being checked).
  QcSnapshot snapshot() const { return snapshotOf({}); }

 private:
  int colours() const;
  // Flags the reading against the database's bands; true when a control raised the alert.
  void flag(const QcDatabase& db, std::span<const float> readings, bool alertRule);
  Verdict ShowQcFlags(bool withAlert, std::span<const float> readings);
  // The flagged colours with the widest band each lies outside.
  std::vector<OutOfRange> outOfRange(const QcDatabase& db, std::span<const float> readings) const;
  void AddControl(std::span<const float> readings, int sampleNumber, const std::string& comment);
  void AddBlank(std::span<const float> readings, int sampleNumber, const std::string& comment);
  void add(QcDatabase& db, char letter, const std::string& path, std::span<const float> readings,
           int sampleNumber, const std::string& comment);
  void showMedians();
  QcSnapshot snapshotOf(std::span<const float> readings) const;

  const AppState& state_;
  Clock& clock_;
  Operator& op_;
  AlertDialog& alert_;
  QcGrid* grid_ = nullptr;
  std::function<void(const std::vector<std::string>&)> mediansChanged_;
  QcDatabase controls_;
  QcDatabase blanks_;
  // Scans filed as controls or blanks with no fixed reading beside them.
  int scanOnlyControls_ = 0;
  int scanOnlyBlanks_ = 0;
  int notRecorded_ = 0;
  bool building_ = false;
  bool mediansKnown_ = false;
  QcCheckState check_;
};

// The control medians as the grids show them: "0.0" per colour 1..colours, empty when the
// database is empty.
std::vector<std::string> MedianTexts(const QcDatabase& controls, int colours);

}  // namespace zorvel
