#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/run/run_types.h"

namespace zorvel {

// The abort and pause flags that F5 and F11 set, and what an unattended run does with them at
// its checkpoints. The keys only set the flags and change the legend.
class StopKeys {
 public:
  // legend shows a text in AbortMsg.
  StopKeys(std::atomic<bool>& stopRequested, std::atomic<bool>& pauseRequested,
           std::function<void(const std::string&)> legend)
      : StopRequested(stopRequested), PauseRequested(pauseRequested), legend_(std::move(legend)) {}

  // Stops the run at its next checkpoint as a confirmed abort does, without the question
  // (the program is being ended). Any thread.
  void terminate();
  // What a key asked for.
  enum class Request { None, Abort, Pause, Resume };
  // F5 asks for an abort, F11 for a pause, or while one is asked for, to go on; the legend says
  // which. Any other key does nothing.
  Request keyDown(Key key);
  bool terminating() const { return terminate_.load(); }

  // What the run waits on while paused: `yield` lets the window's events (and so the keys)
  // through, `pausing` tells the run's state of the pause starting (true) and ending (false).
  struct Checkpoint {
    Operator& op;
    Clock& clock;
    std::function<void()> yield;
    std::function<void(bool)> pausing;
  };
  // Acts on a pending request: an abort is asked about ("Do you want to abort the current
  // run"); a pause waits until F11 is pressed again. True when the run is to be aborted.
  bool CheckStopKeys(const Checkpoint& at);
  // Both flags down and the legend back, as at the end of a run.
  void reset();

  // How often a paused run looks at the keys.
  static constexpr double kPausePollS = 0.1;

 private:
  std::atomic<bool>& StopRequested;
  std::atomic<bool>& PauseRequested;
  std::function<void(const std::string&)> legend_;
  std::atomic<bool> terminate_{false};
};

}  // namespace zorvel
