#pragma once

#include "core/run/run_controller.h"

namespace zorvel::headless {

// The signals of a tray run under zorvel-run, as the run window's keys: SIGINT is F5 (the
// abort question is answered from the answer file), SIGUSR1 is F11 (once to pause, again to
// resume), and SIGTERM stops the run at its next checkpoint as a confirmed abort does, so every
// record stays whole and the arm goes home. The handlers only count; the run picks the signals
// up on its own thread between steps and while paused.
class TraySignals {
 public:
  TraySignals();
  ~TraySignals();
  TraySignals(const TraySignals&) = delete;
  TraySignals& operator=(const TraySignals&) = delete;

  // Hands what arrived since the last call to the run.
  void deliver(RunController& run);
  // SIGTERM has come: the program ends once the run has stopped.
  bool terminated() const;
};

}  // namespace zorvel::headless
