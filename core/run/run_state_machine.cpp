#include "core/run/run_state_machine.h"

#include <array>

namespace zorvel {

namespace {

using S = RunState;
using E = RunEvent;

constexpr std::array kTransitions = {
    RunTransition{S::AwaitingInit, E::Init, S::SettingUp},
    RunTransition{S::AwaitingInit, E::Quit, S::Closed},
    RunTransition{S::SettingUp, E::SetUpDone, S::AwaitingRead},
    RunTransition{S::SettingUp, E::LinkFailed, S::AwaitingInit},
    RunTransition{S::SettingUp, E::Halted, S::Closed},
    RunTransition{S::AwaitingRead, E::Read, S::Reading},
    RunTransition{S::AwaitingRead, E::Quit, S::Closed},
    // A check that wants the cuvette read again after its reading was finished.
    RunTransition{S::AwaitingRead, E::Reread, S::Reading},
    RunTransition{S::Reading, E::ReadingDone, S::AwaitingDecision},
    RunTransition{S::Reading, E::LinkFailed, S::AwaitingRead},
    RunTransition{S::Reading, E::Halted, S::Closed},
    RunTransition{S::AwaitingDecision, E::Decided, S::AwaitingRead},
    RunTransition{S::AwaitingDecision, E::Reread, S::Reading},
    // Autosampler delivery: one Read walks the tray; F11 pauses it between tubes.
    RunTransition{S::AwaitingRead, E::ReadTray, S::TrayRun},
    RunTransition{S::TrayRun, E::Pause, S::Paused},
    RunTransition{S::Paused, E::Resume, S::TrayRun},
    RunTransition{S::TrayRun, E::TrayDone, S::AwaitingRead},
    RunTransition{S::TrayRun, E::LinkFailed, S::AwaitingRead},
    RunTransition{S::TrayRun, E::Halted, S::Closed},
};

}  // namespace

std::string_view RunStateName(RunState state) {
  switch (state) {
    case S::AwaitingInit:
      return "Awaiting Init";
    case S::SettingUp:
      return "Setting up";
    case S::AwaitingRead:
      return "Awaiting read";
    case S::Reading:
      return "Reading";
    case S::AwaitingDecision:
      return "Awaiting decision";
    case S::TrayRun:
      return "Tray run";
    case S::Paused:
      return "Paused";
    case S::Closed:
      return "Closed";
  }
  return "";
}

std::span<const RunTransition> RunTransitions() {
  return kTransitions;
}

bool RunStateMachine::accepts(RunEvent event) const {
  for (const RunTransition& t : kTransitions) {
    if (t.from == state_.load() && t.event == event) return true;
  }
  return false;
}

bool RunStateMachine::fire(RunEvent event) {
  for (const RunTransition& t : kTransitions) {
    if (t.from == state_.load() && t.event == event) {
      state_.store(t.to);
      if (listener_) listener_(event, t.to);
      return true;
    }
  }
  return false;
}

}  // namespace zorvel
