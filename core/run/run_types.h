#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/run/tray_resume.h"

// The run's plain types: its states, how it starts, and the operator's actions and keys as the
// core takes them. The windows map their own controls to these; nothing in the run compares a
// caption.
namespace zorvel {

// The states of the run window, in the order a run passes through them.
enum class RunState {
  AwaitingInit,
  SettingUp,
  AwaitingRead,
  Reading,
  AwaitingDecision,
  TrayRun,
  Paused,
  Closed
};
std::string_view RunStateName(RunState state);

// How a run starts: what the run launch (a new data set, or an appended one) decided.
struct RunSetup {
  bool NewDataSet = true;  // numbering starts again at FirstSampleNumber
  bool PuresPending = false;
  bool BuildingDatabases = false;
  int FirstSampleNumber = 1;  // the main window's "Starting Number:"
  int SampleNumber = 0;       // an appended set: the last number on file
  int PureIndex = 0;
  // Autosampler delivery with the pures: the first pure tube is number 1.
  bool PureStartPending = false;
  // False when the run goes on from readings already taken (a resumed tray run).
  bool FirstRead = true;
  // A reopened set whose last tray run did not complete, its resume answered Yes: the next tray
  // run carries that one on.
  std::optional<TrayResume> resume;
  // "SIMULATED fluorimeter" when the run's readings come from the simulator; empty when real.
  std::string simulated;
};

// What the operator asks of the run: OK(1) is Init or Read by the run's state, OK(2) Quit,
// AcceptReject(1..4) the four decisions.
enum class RunAction { Init, Read, Quit, Accept, Reject, Control, Blank };

// The buttons of the window: OK(1) Init/Read, OK(2) Quit, and AcceptReject(1..4).
enum class RunButton { InitRead, Quit, Accept, Reject, Control, Blank };

// The keys that act whatever has the focus, even while the instrument works.
enum class Key { F5, F11 };

// Which choices AR_Frame offers.
struct RunChoices {
  bool accept = false;
  bool reject = false;
  bool control = false;
  bool blank = false;

  friend bool operator==(const RunChoices&, const RunChoices&) = default;
};

// The window's controls as the run wants them; the run sends the whole of it whenever any part
// changes, so a new piece of run status is one more field here.
struct RunScreen {
  std::string filenameCaption;        // MenuFilename: "NAME.FIX", "NAME.SYN" or "NAME.FIX/NAME.SYN"
  bool okVisible = true;              // OK_Frame
  std::string okCaption;              // OK(1): "&Init" or "&Read Sample"
  RunChoices choices;                 // AR_Frame's buttons; the first one offered takes the focus
  bool commentVisible = false;        // Comment_Box and Comment_Label
  bool resetEnabled = true;           // the menu items ResetSamp and TubeRange
  std::string keyLegend;              // AbortMsg ("F5 - Abort      F11 - Pause"); empty hides it
  std::vector<std::string> timeInfo;  // TimeInfo: the elapsed/estimated lines of a tray run
  std::optional<RunButton> focus;     // moves the focus to the button with this showing

  friend bool operator==(const RunScreen&, const RunScreen&) = default;
};

// What Form_Load lays out once: the frames for fixed readings, the synchronous scan or both,
// and the colours' heads "ex/em" ("0") for the grid's columns 1..n.
struct RunLayout {
  bool fixed = false;
  bool synch = false;
  std::vector<std::string> heads;
};

}  // namespace zorvel
