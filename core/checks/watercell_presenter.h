#pragma once

#include <atomic>
#include <string>

#include "core/checks/watercell_record.h"
#include "core/checks/watercell_view.h"
#include "core/instruments/fluorimeter.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"
#include "core/state/app_state.h"

namespace zorvel {

// Where the water-cell window stands.
enum class WaterCellStage {
  WaitingForStart,  // instructions shown, Start and Cancel
  Running,          // set-up and time drive, no buttons
  Within,           // the mean lies in the history's band: OK stores it
  Outside,          // outside the band: Rerun, or OK as cancel (nothing stored)
  Stopped,          // the fluorimeter link failed: Rerun, or OK as cancel
};

// The rules of the water-cell check: fixed set-up, a 240-point time drive of the water cell,
// its mean and standard deviation against the average of the earlier accepted checks in
// ZORVEL.MSF, and what OK and Cancel write.
class WaterCellPresenter {
 public:
  static constexpr int kPoints = 240;
  // The progress bar spans the drive's (points - 10) / 2 seconds.
  static constexpr double kProgressSpanS = (kPoints - 10) / 2.0;
  // The least mean that is a water signal at the check's conditions. With the lamp off or an
  // empty holder the detector reads its dark noise, a few hundredths either side of zero; the
  // water cell's Raman band reads tens of units. A mean at or below this is no water signal,
  // and it becomes a baseline only when the operator says so.
  static constexpr double kLeastWaterSignal = 1.0;

  // line: this window's fluorimeter port. lastResult: the session's last result, which
  // outlives the window (Cancel writes it into the program log).
  WaterCellPresenter(AppState& state, Operator& op, Clock& clock, SerialLine& line,
                     WaterCellResult& lastResult, WaterCellView& view);

  void opened();
  // Start and Rerun run the whole check before they return.
  void start() {
    if (beginStart()) runCheck();
  }
  void rerun() {
    if (beginRerun()) runCheck();
  }
  // The same in two halves, so that the window hides its buttons at once and runs the check
  // itself on the instrument worker. begin* is false when the button is not offered.
  bool beginStart();
  bool beginRerun();
  void runCheck();
  void ok();
  void cancel();
  // Stop, from any thread while the check runs: it ends at the next point where the fluorimeter
  // is idle (after the command in progress, or once a started drive has streamed its last
  // point), stores nothing, and says so.
  void requestStop() { stopRequested_ = true; }
  // Escape or the window's close box: Cancel before a run, OK where OK is the cancel button,
  // nothing otherwise.
  void closeRequested();

  WaterCellStage stage() const { return stage_; }
  const WaterCellVerdict& verdict() const { return verdict_; }
  std::string waterCellLogPath() const;

  static WaterCellButtons ButtonsFor(WaterCellStage stage);

 private:
  LinkFailure setUpInstrument(Fluorimeter& fluorimeter);
  LinkFailure collectDrive(FluorimeterLink& link);
  void endStoppedDrive(FluorimeterLink& link, int points, double elapsedS);
  void judge();
  void stopped(const std::string& when);
  // True when the mean may go on to be judged and stored.
  bool signalAccepted();
  void finish(WaterCellStage stage);
  void log(const std::string& entry);

  AppState& state_;
  Operator& op_;
  Clock& clock_;
  SerialLine& line_;
  WaterCellResult& result_;
  WaterCellView& view_;
  WaterCellStage stage_ = WaterCellStage::WaitingForStart;
  WaterCellVerdict verdict_;
  std::atomic<bool> stopRequested_{false};
  // Set when Stop ended the drive: how far it had come.
  std::string stoppedWhen_;
};

}  // namespace zorvel
