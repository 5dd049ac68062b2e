#include "core/run/stop_keys.h"

#include "core/run/run_prompts.h"

namespace zorvel {

void StopKeys::terminate() {
  terminate_ = true;
  StopRequested = true;
}

StopKeys::Request StopKeys::keyDown(Key key) {
  if (key == Key::F5 && !PauseRequested.load()) {
    StopRequested = true;
    PauseRequested = false;
    legend_("Aborting.  Please Wait.");
    return Request::Abort;
  }
  if (key == Key::F11 && PauseRequested.load() && !StopRequested.load()) {
    StopRequested = true;
    PauseRequested = false;
    legend_(prompt::kKeyLegend);
    return Request::Resume;
  }
  if (key == Key::F11) {
    StopRequested = true;
    PauseRequested = true;
    legend_("Pausing.  Please Wait.");
    return Request::Pause;
  }
  return Request::None;
}

void StopKeys::reset() {
  StopRequested = false;
  PauseRequested = false;
  legend_(prompt::kKeyLegend);
}

bool StopKeys::CheckStopKeys(const Checkpoint& at) {
  if (terminate_.load()) return true;
  if (!StopRequested.load()) return false;
  if (!PauseRequested.load()) {
    const bool aborted = at.op.message("Do you want to abort the current run", prompt::kQueryTitle,
                                       BoxIcon::Question, BoxButtons::YesNo) == answer::kYes;
    reset();
    return aborted;
  }
  legend_("Paused.  Press F11 to Restart");
  StopRequested = false;
  if (at.pausing) at.pausing(true);
  while (!StopRequested.load()) {
    if (at.yield) at.yield();
    if (StopRequested.load()) break;
    at.clock.sleepFor(kPausePollS);
  }
  // The flags are down before the run counts as going again, so a key pressed from then on
  // counts at the next checkpoint.
  reset();
  if (at.pausing) at.pausing(false);
  return terminate_.load();
}

}  // namespace zorvel
