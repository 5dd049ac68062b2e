#include "core/run/run_status.h"

#include <utility>

namespace zorvel {

namespace {

constexpr long kDayS = 86400;

}  // namespace

void RunStatusBoard::setListener(Listener listener) {
  std::lock_guard<std::mutex> lock(mutex_);
  listener_ = std::move(listener);
}

RunStatus RunStatusBoard::snapshot() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return status_;
}

template <typename Change>
void RunStatusBoard::change(Change&& apply) {
  RunStatus now;
  Listener listener;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    apply(status_);
    now = status_;
    listener = listener_;
  }
  // Told outside the lock, so a listener may read the board again.
  if (listener) listener(now);
}

void RunStatusBoard::settingUp(int planned, int tubesInRange, long startS,
                               const CalendarTime& startedAt, const std::string& alertLogPath) {
  change([&](RunStatus& s) {
    s = RunStatus{};
    s.state = RunStatusState::SettingUp;
    s.planned = planned;
    s.tubesInRange = tubesInRange;
    s.startS = startS;
    s.startedAt = startedAt;
    s.alertLogPath = alertLogPath;
  });
}

void RunStatusBoard::tubeStarted(int tube, int tubeOfRange, const std::string& sampleType,
                                 int sampleNumber) {
  change([&](RunStatus& s) {
    if (s.state == RunStatusState::SettingUp) s.state = RunStatusState::Reading;
    s.tube = tube;
    if (tubeOfRange > 0) s.tubeOfRange = tubeOfRange;
    s.sampleType = sampleType;
    s.sampleNumber = sampleNumber;
  });
}

void RunStatusBoard::step(const std::string& text) {
  change([&](RunStatus& s) {
    s.step = text;
    s.lastMessage = text;
  });
}

void RunStatusBoard::message(const std::string& text) {
  change([&](RunStatus& s) { s.lastMessage = text; });
}

void RunStatusBoard::tubeDone(long nowS) {
  change([&](RunStatus& s) {
    ++s.completed;
    long elapsedS = nowS - s.startS;
    if (elapsedS < 0) elapsedS += kDayS;
    s.perTubeS = elapsedS / s.completed;
    const int left = s.planned > s.completed ? s.planned - s.completed : 0;
    s.estimatedEndS = s.startS + elapsedS + s.perTubeS * left;
  });
}

void RunStatusBoard::pauseRequested() {
  change([](RunStatus& s) {
    if (s.state == RunStatusState::Reading || s.state == RunStatusState::SettingUp) {
      s.state = RunStatusState::PauseRequested;
    }
  });
}

void RunStatusBoard::abortRequested() {
  change([](RunStatus& s) {
    if (s.state == RunStatusState::Reading || s.state == RunStatusState::SettingUp ||
        s.state == RunStatusState::PauseRequested) {
      s.state = RunStatusState::AbortRequested;
    }
  });
}

void RunStatusBoard::paused() {
  change([](RunStatus& s) { s.state = RunStatusState::Paused; });
}

void RunStatusBoard::resumed() {
  change([](RunStatus& s) {
    if (s.state != RunStatusState::Ended && s.state != RunStatusState::Idle) {
      s.state = RunStatusState::Reading;
    }
  });
}

void RunStatusBoard::alert(const std::string& line) {
  change([&](RunStatus& s) {
    ++s.alerts;
    s.lastAlert = line;
  });
}

void RunStatusBoard::ended(RunEnd why) {
  change([&](RunStatus& s) {
    s.state = RunStatusState::Ended;
    s.end = why;
  });
}

void RunStatusBoard::moved(RunStatusState state) {
  change([state](RunStatus& s) { s.state = state; });
}

void RunStatusBoard::filed(int count) {
  change([count](RunStatus& s) { s.completed = count; });
}

std::string RunStatusStateName(RunStatusState state) {
  switch (state) {
    case RunStatusState::Idle:
      return "idle";
    case RunStatusState::SettingUp:
      return "setting up";
    case RunStatusState::Reading:
      return "reading";
    case RunStatusState::PauseRequested:
      return "pause requested";
    case RunStatusState::Paused:
      return "paused";
    case RunStatusState::AbortRequested:
      return "abort requested";
    case RunStatusState::Ended:
      return "ended";
    case RunStatusState::AwaitingInit:
      return "awaiting init";
    case RunStatusState::AwaitingRead:
      return "awaiting read";
    case RunStatusState::AwaitingDecision:
      return "awaiting decision";
  }
  return "";
}

std::string RunEndName(RunEnd end) {
  switch (end) {
    case RunEnd::None:
      return "";
    case RunEnd::Completed:
      return "completed";
    case RunEnd::Aborted:
      return "aborted";
    case RunEnd::Terminated:
      return "terminated";
    case RunEnd::InstrumentLost:
      return "instrument lost";
    case RunEnd::Quit:
      return "quit";
  }
  return "";
}

}  // namespace zorvel
