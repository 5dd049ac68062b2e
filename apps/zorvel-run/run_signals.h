#pragma once

#include "core/run/run_controller.h"

namespace zorvel::headless {

// The signals of a run under zorvel-run. In a tray run they are the run window's keys: SIGINT
// is F5 (the abort question is answered from the answer file), SIGUSR1 is F11 (once to pause,
// again to resume), and SIGTERM stops the run at its next checkpoint as a confirmed abort does,
// so every record stays whole and the arm goes home. A cuvette run has no abort key to stand
// for: SIGINT and SIGTERM both stop it once the step under way (a reading, or a decision and
// its records) is over. The handlers only count; the run picks the signals up on its own thread
// between steps and while paused.
class RunSignals {
 public:
  explicit RunSignals(bool tray);
  ~RunSignals();
  RunSignals(const RunSignals&) = delete;
  RunSignals& operator=(const RunSignals&) = delete;

  // Hands what arrived since the last call to the run.
  void deliver(RunController& run);
  // The signal that is ending the program once the run has stopped, or 0.
  int stoppedBy() const;
};

}  // namespace zorvel::headless
