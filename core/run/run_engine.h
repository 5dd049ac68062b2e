#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "core/run/record_writer.h"
#include "core/run/run_display.h"
#include "core/run/run_instrument.h"
#include "core/run/run_numbering.h"
#include "core/run/run_plan.h"
#include "core/run/run_services.h"
#include "core/run/run_state_machine.h"
#include "core/run/run_status.h"
#include "core/run/run_view.h"
#include "core/run/sample_type.h"
#include "core/run/stop_keys.h"
#include "core/run/typed_comment.h"

namespace zorvel {

// The machinery every run plan shares, and the steps that do not depend on the plan (load,
// set-up, quit, unload, the keys and their checkpoints). It holds the parts a plan works with:
// the state table (machine), what the window shows (RunDisplay), the sample numbers
// (RunNumbering), the fluorimeter and its acquisition (RunInstrument), record writing
// (RecordWriter) and the typed comment. Its own calls join those parts for one reading.
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
  // F5 abort, F11 pause/resume: they only set the flags the checkpoints act on.
  void keyDown(Key key);
  void Comment_Change(const std::string& text) { comment_.set(text); }
  void SetAutoHeight(bool on) { instrument_.acquisition().setAutoHeight(on); }
  void SetVerticalScale(double yMin, double yMax) {
    instrument_.acquisition().setVerticalScale(yMin, yMax);
  }

  // A checkpoint of an unattended run: an abort pressed since the last one is asked about, a
  // pause waits here (the run's state Paused) with `yield` letting the window's events through.
  // True when the run is to end.
  bool checkpoint(const std::function<void()>& yield);
  // Ends the run at its next checkpoint as a confirmed abort does, without asking. Any thread.
  void terminate() { keys_.terminate(); }
  // The run is over: both keys' flags down and the legend back.
  void releaseKeys() { keys_.reset(); }
  bool terminating() const { return keys_.terminating(); }
  // Where a tray run stands; the keys tell it the moment they are pressed.
  RunStatusBoard& runStatus() { return runStatus_; }

  // The parts.
  AppState& state() { return state_; }
  const MethodSettings& method() const { return state_.Method; }
  Operator& op() { return op_; }
  Clock& clock() { return clock_; }
  QualityCheck& checks() { return checks_; }
  RunStateMachine& machine() { return machine_; }
  RunState runState() const { return machine_.state(); }
  RunDisplay& display() { return display_; }
  RunView& view() { return display_.view(); }
  RunNumbering& numbering() { return numbering_; }
  const RunNumbering& numbering() const { return numbering_; }
  RecordWriter& writer() { return writer_; }
  bool halted() const { return instrument_.halted(); }
  void log(const std::string& entry);

  // Quitting while pures are still due asks first; on Yes the set's reading files go, since
  // without its pures the set cannot be used. False keeps the run.
  bool confirmQuitDuringPures(bool puresPending);
  // The reading is under way: no reset, no buttons, an empty plot and, unless the item is read
  // again from the cuvette already in the holder, the next cuvette in.
  void beginReading(bool newCuvette);
  void setCuvetteChanger(std::function<void()> insertNext) { insertNext_ = std::move(insertNext); }

  // Numbers a cuvette's reading or a tray's tube; the run's first reading sends the slits
  // whatever they are.
  void numberReading(SampleType type);
  void numberTube(SampleType type, bool& pureStartPending);
  // False, with a message, when the next number would pass the largest a set can hold.
  bool numberWithinRange(SampleType type);
  // Readings whose records the operator gave up writing.
  int readingsNotRecorded() const { return writer_.notRecorded() + checks_.notRecorded(); }

  // One fixed reading into the next grid row, labelled with the sample number.
  bool readFixedRow(float readTimeS);
  // The synchronous scan, the instrument set up for it on the first reading or beside a fixed one.
  bool scan(const std::string& title);
  // The reading as it stands, for a record.
  RecordContent content() const;
  // Empties the comment once its reading is filed.
  void clearComment();

  // The reading is in (false) or the conversation ended. On a halted link the window closes
  // (false); otherwise the run awaits a read again and true comes back: the plan asks for the
  // item anew.
  bool readingLost(bool ok);

 private:
  bool setUpInstrument(const RunPlan& plan);

  AppState& state_;
  Operator& op_;
  Clock& clock_;
  Printer& printer_;
  QualityCheck& checks_;
  RunStateMachine machine_;
  RunDisplay display_;
  const bool newDataSet_;
  RunNumbering numbering_;
  RunInstrument instrument_;
  RecordWriter writer_;
  TypedComment comment_;
  StopKeys keys_;
  RunStatusBoard runStatus_;
  std::function<void()> insertNext_;
  bool unloaded_ = false;
};

}  // namespace zorvel
