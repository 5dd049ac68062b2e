#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/run/run_alert_log.h"
#include "core/run/run_engine.h"
#include "core/run/run_plan.h"
#include "core/run/tray_plan.h"
#include "core/run/tray_resume.h"
#include "core/run/tube_cycle.h"

namespace zorvel {

// What a tray run offers its host, on the thread of the run: `yield` runs between the steps of
// a tray run and while it is paused (the window's events, signals); `note` is told each tube as
// it starts and each record as it is written. Either may be empty.
struct TrayHooks {
  std::function<void()> yield;
  std::function<void(const std::string&)> note;
};

// The run of one data set in autosampler delivery, a peer of the cuvette plan: one Read walks
// the tray unattended. Each tube is rinsed for, drawn into the flow cell, read (every replicate
// writing its records at once) and disposed of; the keys are looked at after the rinse and
// after every tube. Alerts and instrument errors that would wait for a person go to the set's
// run log and are summed up in one box at the end.
class TrayRun final : public RunPlan {
 public:
  TrayRun(RunEngine& engine, const RunSetup& setup, Arm& arm, Pump& pump,
          UnattendedOperator& unattended, TrayHooks hooks);

  std::vector<std::string> readyPrompt() const override { return {}; }
  std::string readLine() const override;
  std::string lampOnEntry() const override { return "AS Lamp On"; }
  void instrumentReady() override { log_.clear(); }
  // The tray run, from "AS Run Started" to "AS Run Complete" (long).
  void read() override;
  void decide(RunAction) override {}
  bool confirmQuit() override;
  void closing() override;

  // Form_Load in autosampler delivery initialises the dilutor.
  void formLoaded();
  // "Tube Range Reset" (instant).
  void TubeRange_Click();

  // One tube's cycle, including its number.
  enum class Cycle { Done, Aborted, Failed };
  Cycle ProcessTube(const TrayVisit& visit);

  RunAlertLog& log() { return log_; }
  TubeCycle& cycle() { return cycle_; }

 private:
  enum class Walk { Completed, AbortedAtCheck, AbortedInCycle, Lost, Halted };
  Walk walk(const std::vector<TrayVisit>& plan, std::size_t from);
  bool readTube(const TrayVisit& visit);
  bool readFixedReplicate(const TrayVisit& visit, char letter);
  bool scanReplicate(const TrayVisit& visit, char letter);
  bool afterTube(const TrayVisit& visit);
  // The journal of the set's tray run, written as it starts and once it completes.
  void startJournal(const TrayPlanInput& input);
  void completeJournal();
  void writeJournal();
  void finish(Walk walked);
  void showTimes();
  void status(const std::string& text);
  void note(const std::string& text);
  void noteRecord(const TrayVisit& visit, char letter, bool scan);
  bool checkpoint();
  RecordContent content(const TrayVisit& visit) const;
  std::string number() const;

  RunEngine& engine_;
  const MethodSettings& method_;
  Arm& arm_;
  Pump& pump_;
  UnattendedOperator& unattended_;
  TrayHooks hooks_;
  TubeCycle cycle_;
  RunAlertLog log_;

  // The plan's own variables, named as the operator's procedures know them.
  bool PuresPending;
  bool BuildingDatabases;
  bool PureStartPending;

  std::optional<TrayResume> resume_;
  int skipRecords_ = 0;
  TrayJournal journal_;

  std::string runEndMessage_;
  long startS_ = 0;
  int completed_ = 0;
  int total_ = 0;
};

}  // namespace zorvel
