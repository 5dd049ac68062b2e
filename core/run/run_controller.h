#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/printer.h"
#include "core/platform/serial_line.h"
#include "core/quality/quality_check.h"
#include "core/run/run_view.h"
#include "core/state/app_state.h"

namespace zorvel {

// The states of the run window, in the order a run passes through them.
enum class RunState { AwaitingInit, SettingUp, AwaitingRead, Reading, AwaitingDecision, Closed };
std::string_view RunStateName(RunState state);

// How a run starts: what the run launch (a new data set, or an appended one) decided.
struct RunSetup {
  bool NewDataSet = true;  // numbering starts again at FirstSampleNumber
  bool PuresPending = false;
  bool BuildingDatabases = false;
  int FirstSampleNumber = 1;  // the main window's "Starting Number:"
  int SampleNumber = 0;       // an appended set: the last number on file
  int PureIndex = 0;
};

// What the run borrows from the program. The fluorimeter line is opened by Init.
struct RunServices {
  AppState& state;
  Operator& op;
  Clock& clock;
  Printer& printer;
  SerialLine& fluorimeterLine;
  QualityCheck& checks;
};

class RunSession;

// The run window's rules (SAMPLING) for cuvette delivery: initialisation, the order of the
// solvent blank, pures, database readings and samples, numbering, the operator's decisions,
// records and quitting. It owns the fluorimeter conversation of the run.
//
// Long calls (instrument work; the Qt window runs them on its worker thread, one at a time,
// and keeps its buttons hidden meanwhile): OK_Click(1), OK_KeyPress of "i"/"r",
// AcceptReject_Click, AcceptReject_KeyPress. They may also show message boxes.
// Instant calls (window thread, while no long call runs): Form_Load, OK_Click(2) (Quit; boxes
// and file deletion only), OK_KeyPress of "q", ResetSamp_Click (input box), Form_Unload.
// Any thread, any time: Form_KeyDown (F5/F11), Comment_Change, SetAutoHeight,
// SetVerticalScale, state() and the flags below. The flags are for the tray run, which tests
// them between tubes; a cuvette run has no loop to stop, so it only keeps them.
class RunController {
 public:
  RunController(RunServices services, const RunSetup& setup, RunView& view);
  ~RunController();
  RunController(const RunController&) = delete;
  RunController& operator=(const RunController&) = delete;

  // Called each time the operator is asked for a new cuvette and presses Read: the bench
  // (simulator) or nothing (a real operator already put the cuvette in).
  void setCuvetteChanger(std::function<void()> insertNext);

  void Form_Load();
  // 1: Init or Read (long); 2: Quit (instant).
  void OK_Click(int index);
  // "i" Init while the caption is "&Init", "r" Read while it is "&Read Sample", "q" Quit.
  void OK_KeyPress(char key);
  // 1 Accept, 2 Reject, 3 Control, 4 Blank.
  void AcceptReject_Click(int index);
  // "a", "r", "c", "b"; any other key beeps.
  void AcceptReject_KeyPress(char key);
  // "Sample Number Reset".
  void ResetSamp_Click();
  // F5 (116) abort, F11 (122) pause/resume.
  void Form_KeyDown(int keyCode);
  // Comment_Box's text, pushed on every change.
  void Comment_Change(const std::string& text);
  // AutoHeight and the YMin/YMax entries of the scan plot.
  void SetAutoHeight(bool on);
  void SetVerticalScale(double yMin, double yMax);
  // The window is closing: ends the printout and closes the fluorimeter port.
  void Form_Unload();

  RunState state() const;
  bool closed() const { return state() == RunState::Closed; }
  // After Quit: the control database holds entries, so the trend window is due.
  bool controlDataExist() const;
  int sampleNumber() const;

  std::atomic<bool> StopRequested{false};
  std::atomic<bool> PauseRequested{false};

 private:
  std::unique_ptr<RunSession> session_;
};

}  // namespace zorvel
