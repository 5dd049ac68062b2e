#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "core/run/run_services.h"
#include "core/run/run_status.h"
#include "core/run/run_types.h"
#include "core/run/run_view.h"

namespace zorvel {

class Arm;
class CuvetteStatusFeed;
class Pump;
class RunEngine;
class RunPlan;
class RunViewTap;
class TrayRun;
class UnattendedOperator;
struct TrayHooks;

// The run window's rules (SAMPLING) for cuvette delivery: initialisation, the order of the
// solvent blank, pures, database readings and samples, numbering, the operator's decisions,
// records and quitting. It owns the fluorimeter conversation of the run. The engine holds what
// every run shares; the cuvette plan decides what comes next.
//
// Long calls (instrument work; the Qt window runs them on its worker thread, one at a time,
// and keeps its buttons hidden meanwhile): InitialiseAutosampler, act() and press() for Init, Read
// and the decisions, OK_KeyPress of "i"/"r", AcceptReject_KeyPress. They may also show message
// boxes. Instant calls (window thread, while no long call runs): LayOut, Quit (boxes and file
// deletion only), OK_KeyPress of "q", ResetSamp_Click (input box), Form_Unload.
// Any thread, any time: keyDown (F5/F11), Comment_Change, SetAutoHeight, SetVerticalScale,
// state() and the flags below. The flags are for the tray run, which tests them between tubes;
// a cuvette run has no loop to stop, so it only keeps them.
class RunController {
 public:
  RunController(RunServices services, const RunSetup& setup, RunView& view);
  ~RunController();
  RunController(const RunController&) = delete;
  RunController& operator=(const RunController&) = delete;

  // Called each time the operator is asked for a new cuvette and presses Read: the bench
  // (simulator) or nothing (a real operator already put the cuvette in).
  void setCuvetteChanger(std::function<void()> insertNext);
  // Autosampler delivery: the arm and the dilutor the tray run drives (before Form_Load, which
  // initialises the dilutor); the hooks run on the run's thread (see TrayHooks).
  void attachAutosampler(Arm& arm, Pump& pump, const TrayHooks& hooks);
  // "Tube Range Reset" (autosampler delivery; instant).
  void TubeRange_Click();
  // The program is being stopped. A tray run ends at its next checkpoint as a confirmed abort
  // does, without asking; a cuvette run, which has no checkpoint, ends when the window unloads
  // before Quit. Any thread.
  void Terminate();

  // Lays the window out (instant), then, for autosampler delivery, initialises the dilutor (a
  // long call: the window runs it on its worker). Form_Load does both, for callers without a
  // window thread.
  void Form_Load();
  void LayOut();
  void InitialiseAutosampler();
  // What the operator asks; an action the run's state does not allow, or a decision the open
  // decision does not offer, does nothing.
  void act(RunAction action);
  // A button: OK(1) is Init while the run awaits Init, Read afterwards.
  void press(RunButton button);
  // On OK_Frame: "i" Init, "r" Read, "q" Quit.
  void OK_KeyPress(char key);
  // On AR_Frame: "a", "r", "c", "b" for the choices offered; any other key beeps.
  void AcceptReject_KeyPress(char key);
  // "Sample Number Reset".
  void ResetSamp_Click();
  // F5 abort, F11 pause/resume.
  void keyDown(Key key);
  // Comment_Box's text, pushed on every change.
  void Comment_Change(const std::string& text);
  // AutoHeight and the YMin/YMax entries of the scan plot.
  void SetAutoHeight(bool on);
  void SetVerticalScale(double yMin, double yMax);
  // The window is closing: ends the printout and closes the fluorimeter port. A cuvette run
  // told to terminate ends here, as terminated.
  void Form_Unload();

  RunState state() const;
  bool closed() const { return state() == RunState::Closed; }
  // After Quit: the control database holds entries, so the trend window is due.
  bool controlDataExist() const;
  int sampleNumber() const;
  // Where the run stands (any thread): a tray run's tubes, or a cuvette run's states.
  RunStatusBoard& runStatus();
  // Readings the operator gave up writing (the disk refused their records).
  int readingsNotRecorded() const;

  std::atomic<bool> StopRequested{false};
  std::atomic<bool> PauseRequested{false};

 private:
  std::unique_ptr<UnattendedOperator> unattended_;
  std::unique_ptr<RunViewTap> viewTap_;
  std::unique_ptr<RunEngine> engine_;
  std::unique_ptr<RunPlan> plan_;
  std::unique_ptr<CuvetteStatusFeed> cuvetteStatus_;
  TrayRun* tray_ = nullptr;
  RunSetup setup_;
};

}  // namespace zorvel
