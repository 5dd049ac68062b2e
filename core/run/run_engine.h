#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>

#include "core/instruments/fluorimeter_link.h"
#include "core/run/acquisition.h"
#include "core/run/record_writer.h"
#include "core/run/run_plan.h"
#include "core/run/run_services.h"
#include "core/run/run_state_machine.h"
#include "core/run/run_view.h"
#include "core/run/sample_type.h"
#include "core/run/tube_numbering.h"

namespace zorvel {

// The machinery every run plan shares: the declared state table, the abort and pause flags the
// plans test at their checkpoints, the fluorimeter conversation and its acquisition, record
// writing, sample numbering, the window's controls and what the operator types. It runs the
// steps that do not depend on the plan (load, set-up, quit, unload) and hands the plan what
// does.
class RunEngine {
 public:
  RunEngine(RunServices services, const RunSetup& setup, RunView& view,
            std::atomic<bool>& stopRequested, std::atomic<bool>& pauseRequested);

  // The window's calls that every plan shares.
  void Form_Load();
  void initialise(RunPlan& plan);
  void quit(RunPlan& plan);
  void Form_Unload();
  void ResetSamp_Click();
  void keyDown(Key key);
  void Comment_Change(const std::string& text);
  void SetAutoHeight(bool on) { acquisition_.setAutoHeight(on); }
  void SetVerticalScale(double yMin, double yMax) { acquisition_.setVerticalScale(yMin, yMax); }

  // What the plans use.
  AppState& state() { return state_; }
  const MethodSettings& method() const { return state_.Method; }
  Operator& op() { return op_; }
  QualityCheck& checks() { return checks_; }
  RunView& view() { return view_; }
  RecordWriter& writer() { return writer_; }
  RunStateMachine& machine() { return machine_; }
  RunState runState() const { return machine_.state(); }
  Clock& clock() { return clock_; }
  bool halted() const { return link_.halted(); }
  void log(const std::string& entry);
  // Quitting while pures are still due asks first; on Yes the set's reading files go, since
  // without its pures the set cannot be used. False keeps the run.
  bool confirmQuitDuringPures(bool puresPending);

  // The controls: change `screen()`, then show it; show() forgets a focus once it is sent.
  RunScreen& screen() { return screen_; }
  void show();
  // The reading is under way: no reset, no buttons, an empty plot and the next cuvette in.
  void beginReading();
  void setCuvetteChanger(std::function<void()> insertNext) { insertNext_ = std::move(insertNext); }

  // Numbering. A run's first reading starts it: a matrix at 0, anything but a sample of an
  // appended set just below the starting number. Every reading then counts on unless the number
  // is kept (a reading read again, a database entry, a blank before its pures).
  void numberReading(SampleType type);
  // A tray's tube: pures count from 1, controls and blanks after the first sample carry the
  // number of the sample before them.
  void numberTube(SampleType type, bool& pureStartPending);
  void readingCounted() { FirstRead = false; }
  bool firstRead() const { return FirstRead; }
  void keepNumber(bool keep) { KeepNumber = keep; }
  int sampleNumber() const { return SampleNumber; }
  // The number a reading of the type would be filed under if it were taken now.
  int NextSampleNumber(SampleType type) const;
  // False, with a message, when that number would pass kLargestSampleNumber.
  bool numberWithinRange(SampleType type);
  // Sample numbers are 16-bit: a set goes no further than this.
  static constexpr int kLargestSampleNumber = 32767;
  // Readings whose records the operator gave up writing.
  int readingsNotRecorded() const { return writer_.notRecorded() + checks_.notRecorded(); }
  void stepNumberBack() { --SampleNumber; }
  void restartNumbering() { SampleNumber = 0; }
  void setResetEnabled(bool enabled);

  // One fixed reading into the next grid row, labelled with the sample number.
  bool readFixedRow(float readTimeS);
  // The synchronous scan, the instrument set up for it on the first reading or beside a fixed one.
  bool scan(const std::string& title);
  void labelRow(const std::string& label);
  void clearSpectra() { view_.clearSpectra(); }
  // The reading as it stands, for a record.
  RecordContent content() const;
  // Empties the comment once its reading is filed.
  void clearComment();

  // The reading is in (true) or the conversation ended. On a halted link the window closes;
  // otherwise the run awaits a read again and true comes back: the plan asks for the item anew.
  bool readingLost(bool ok);

 private:
  void logSimulatedFiling(const std::string& marking);
  bool SetUpInstrument(const RunPlan& plan);
  std::string comment() const;
  int viewRow() const { return GridRow; }

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
  RunScreen screen_;

  // Numbering, named as the operator's procedures know it.
  bool NewDataSet;
  int SampleNumber;
  int FirstSampleNumber;
  bool FirstRead = true;
  bool simulatedLogged_ = false;
  bool KeepNumber = false;
  int GridRow = 1;
  bool runStartRecorded_ = false;
  double runStartS_ = 0;
  bool unloaded_ = false;

  mutable std::mutex typedMutex_;
  std::string comment_;
};

}  // namespace zorvel
