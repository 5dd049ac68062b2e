#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "core/instruments/fluorimeter_link.h"
#include "core/run/acquisition.h"
#include "core/run/record_writer.h"
#include "core/run/run_controller.h"
#include "core/run/run_state_machine.h"
#include "core/run/sample_type.h"

namespace zorvel {

// Which reading the open decision is about.
enum class DecisionStage { Fixed, Synch };

// The run of one data set in cuvette mode: the state behind RunController.
class RunSession {
 public:
  RunSession(RunServices services, const RunSetup& setup, RunView& view,
             std::atomic<bool>& stopRequested, std::atomic<bool>& pauseRequested);

  void setCuvetteChanger(std::function<void()> insertNext) { insertNext_ = std::move(insertNext); }

  void Form_Load();
  void OK_Click(int index);
  void OK_KeyPress(char key);
  void AcceptReject_Click(int index);
  void AcceptReject_KeyPress(char key);
  void ResetSamp_Click();
  void Form_KeyDown(int keyCode);
  void Comment_Change(const std::string& text);
  void SetAutoHeight(bool on);
  void SetVerticalScale(double yMin, double yMax);
  void Form_Unload();

  RunState state() const { return machine_.state(); }
  int sampleNumber() const { return SampleNumber; }
  bool controlDataExist() const { return checks_.ControlCount() > 0; }

 private:
  // Instrument set-up and the two OK buttons.
  void initialise();
  bool SetUpInstrument();
  void readCuvette();
  void quit();

  // Numbering, then the replicates; false when the instrument link ended.
  bool ReadSample(SampleType type);
  bool readFixedReplicate(bool lastReplicate);
  bool scanStage(SampleType type);
  void presentFixedDecision();
  void presentSynchDecision();
  // The reading is in: wait for the operator, or give up on a lost link.
  void readingEnded(bool ok);

  // The decisions.
  void fixedDecision(int index);
  void synchDecision(int index);
  void rejectFixed();
  void rejectSynch();
  void fileFixedAsDatabase(SampleType kind);
  void acceptClassifiedScan();
  void classifyScanOnly(SampleType kind);
  void FinishSample(bool accepted);
  void RepromptSample(bool aborted);
  void endPuresWhenDone();
  void rereadAs(SampleType type);

  // Prompts and display helpers.
  SampleType CurrentSampleType() const;
  bool purePhase() const { return PuresPending && !BuildingDatabases; }
  void endBuildingWhenFull();
  void promptNextItem(bool advancePures);
  void promptPure();
  void promptDatabases();
  void ShowChoices(const RunChoices& choices);
  void ShowComment(bool show);
  void hideDecision();
  void showReadButton();
  void labelRow(const std::string& label);
  RecordContent content() const;
  float readTime() const;
  int viewRow() const { return GridRow + 1; }
  std::string comment() const;

  AppState& state_;
  Operator& op_;
  Clock& clock_;
  Printer& printer_;
  SerialLine& line_;
  QualityCheck& checks_;
  RunView& view_;
  std::atomic<bool>& StopRequested;
  std::atomic<bool>& PauseRequested;
  FluorimeterLink link_;
  Acquisition acquisition_;
  RecordWriter writer_;
  RunStateMachine machine_;
  std::function<void()> insertNext_;

  // The run's own variables, named as the operator's procedures know them.
  bool NewDataSet;
  int SampleNumber;
  int FirstSampleNumber;
  bool FirstRead = true;
  bool KeepNumber = false;
  bool PuresPending;
  bool BlankPending = false;
  int PureIndex;
  bool BuildingDatabases;
  int GridRow = 1;
  bool runStartRecorded_ = false;
  double runStartS_ = 0;

  DecisionStage stage_ = DecisionStage::Fixed;
  std::optional<SampleType> classified_;
  RunChoices offered_;
  std::string okCaption_;
  bool resetEnabled_ = true;
  bool puresFinished_ = false;
  bool unloaded_ = false;

  mutable std::mutex typedMutex_;
  std::string comment_;
};

}  // namespace zorvel
