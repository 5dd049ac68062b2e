#pragma once

#include <functional>
#include <mutex>
#include <string>

#include "core/text/calendar_time.h"

namespace zorvel {

// Where a run stands (a tray run, or a cuvette run as its table moves it).
enum class RunStatusState {
  Idle,            // no tray run has started in this window
  SettingUp,       // from Read to the first tube
  Reading,         // a tube's cycle, or the rinse that ends the run
  PauseRequested,  // F11: the run pauses after the tube now in the cycle
  Paused,          // waiting for F11
  AbortRequested,  // F5: the question comes after the tube now in the cycle
  Ended,
  // A cuvette run's waits for the operator (a tray run never shows them).
  AwaitingInit,      // the window is open, Init not pressed
  AwaitingRead,      // the next cuvette is asked for
  AwaitingDecision,  // the reading is in: accept, reject, control or blank
};

// Why a run ended.
enum class RunEnd {
  None,            // not ended
  Completed,       // every tube read
  Aborted,         // the operator confirmed an abort
  Terminated,      // the program was being ended
  InstrumentLost,  // an instrument stopped answering
  Quit,            // the operator quit a cuvette run
};

// What a run tells about itself, whole: the run window shows it and a watcher may copy it
// elsewhere. Times are clock times of the run's day in seconds since midnight (an estimate may
// pass 86400 when the run goes over midnight).
struct RunStatus {
  RunStatusState state = RunStatusState::Idle;
  RunEnd end = RunEnd::None;
  int tubeOfRange = 0;      // n: the tube of the sample range reached, 1-based; 0 before the first
  int tubesInRange = 0;     // N: Starting Tube to Ending Tube
  int tube = 0;             // the tray position in the cycle now (controls and blanks included)
  std::string sampleType;   // "Sample", "Pure", "Control", "Blank" of that tube
  int sampleNumber = 0;     // the number its records carry
  int completed = 0;        // tubes finished, controls and blanks included; of a cuvette run,
                            // the readings filed
  int planned = 0;          // tubes the run plans to read, controls and blanks included
  std::string step;         // the step under way ("Locating Sample", ...)
  CalendarTime startedAt;   // the date and time the tray run started
  long startS = -1;         // the same as seconds since midnight; -1 before a start
  long perTubeS = 0;        // time per tube as of the last tube done
  long estimatedEndS = -1;  // from the time per tube so far; -1 until a tube is done
  int alerts = 0;           // lines written to the run log
  std::string lastAlert;
  std::string alertLogPath;
  std::string lastMessage;  // the last line the run's status box showed

  friend bool operator==(const RunStatus&, const RunStatus&) = default;
};

// The one copy of a run's status, changed by the run (on its worker) and by the keys (on
// the window's thread), read whole by whoever shows it. Every change is told to the listener
// with the status as it then stands, on the thread that made the change.
class RunStatusBoard {
 public:
  using Listener = std::function<void(const RunStatus&)>;
  void setListener(Listener listener);
  RunStatus snapshot() const;

  // Read was pressed: a new run, nothing read yet.
  void settingUp(int planned, int tubesInRange, long startS, const CalendarTime& startedAt,
                 const std::string& alertLogPath);
  void tubeStarted(int tube, int tubeOfRange, const std::string& sampleType, int sampleNumber);
  // A step of the cycle; it is also the last message shown.
  void step(const std::string& text);
  // A line of the status box that is not a step (the end message, a prompt).
  void message(const std::string& text);
  void tubeDone(long nowS);
  // The keys, as they are pressed; a pause or abort request holds until the run acts on it.
  void pauseRequested();
  void abortRequested();
  void paused();
  // The run goes on: after a pause, or an abort the operator answered No to.
  void resumed();
  void alert(const std::string& line);
  void ended(RunEnd why);
  // A cuvette run's state, as its table moves it.
  void moved(RunStatusState state);
  // A cuvette run has filed `count` readings.
  void filed(int count);

 private:
  template <typename Change>
  void change(Change&& apply);

  mutable std::mutex mutex_;
  RunStatus status_;
  Listener listener_;
};

std::string RunStatusStateName(RunStatusState state);
std::string RunEndName(RunEnd end);

}  // namespace zorvel
