#pragma once

#include <atomic>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

#include "core/run/run_types.h"

// The run window's states and the moves between them, declared once as a table so that a
// handler can only move the run where the table allows.
namespace zorvel {

enum class RunEvent {
  Init,         // OK(1) "&Init"
  SetUpDone,    // the set-up commands were accepted
  Read,         // OK(1) "&Read Sample"
  ReadingDone,  // the last replicate or the scan is in: the operator decides
  Decided,      // accept, control or blank filed, or a reject cancelled: the next cuvette
  Reread,       // reject with Retry, a scan after the fixed stage, a check asking again
  LinkFailed,   // the instrument conversation ended; the operator may try again
  Halted,       // the link failed for good and the program is ending
  Quit,         // OK(2) confirmed
  ReadTray,     // OK(1) "&Read Sample" in autosampler mode: the tray run starts
  Pause,        // F11 seen at a tray run's checkpoint
  Resume,       // F11 again while paused
  TrayDone,     // the tray run ended (completed or aborted)
};

struct RunTransition {
  RunState from;
  RunEvent event;
  RunState to;
};

// Every move the run may make.
std::span<const RunTransition> RunTransitions();

// The run's current state; moves only along the table.
class RunStateMachine {
 public:
  // Safe from any thread (the window asks while the worker reads).
  RunState state() const { return state_.load(); }
  // Whether the event is allowed now.
  bool accepts(RunEvent event) const;
  // Takes the move for the event; false (and no move) when the table has none.
  bool fire(RunEvent event);
  // Told every move taken, on the thread that fired it; set while no move can be under way.
  using Listener = std::function<void(RunEvent event, RunState to)>;
  void setListener(Listener listener) { listener_ = std::move(listener); }

 private:
  std::atomic<RunState> state_{RunState::AwaitingInit};
  Listener listener_;
};

}  // namespace zorvel
