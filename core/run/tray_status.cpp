#include "core/run/tray_status.h"

#include <utility>

namespace zorvel {

namespace {

constexpr long kDayS = 86400;

}  // namespace

void TrayStatusBoard::setListener(Listener listener) {
  std::lock_guard<std::mutex> lock(mutex_);
  listener_ = std::move(listener);
}

TrayStatus TrayStatusBoard::snapshot() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return status_;
}

template <typename Change>
void TrayStatusBoard::change(Change&& apply) {
  TrayStatus now;
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

void TrayStatusBoard::settingUp(int planned, int tubesInRange, long startS,
                                const CalendarTime& startedAt, const std::string& alertLogPath) {
  change([&](TrayStatus& s) {
    s = TrayStatus{};
    s.state = TrayRunState::SettingUp;
    s.planned = planned;
    s.tubesInRange = tubesInRange;
    s.startS = startS;
    s.startedAt = startedAt;
    s.alertLogPath = alertLogPath;
  });
}

void TrayStatusBoard::tubeStarted(int tube, int tubeOfRange, const std::string& sampleType,
                                  int sampleNumber) {
  change([&](TrayStatus& s) {
    if (s.state == TrayRunState::SettingUp) s.state = TrayRunState::Reading;
    s.tube = tube;
    if (tubeOfRange > 0) s.tubeOfRange = tubeOfRange;
    s.sampleType = sampleType;
    s.sampleNumber = sampleNumber;
  });
}

void TrayStatusBoard::step(const std::string& text) {
  change([&](TrayStatus& s) {
    s.step = text;
    s.lastMessage = text;
  });
}

void TrayStatusBoard::message(const std::string& text) {
  change([&](TrayStatus& s) { s.lastMessage = text; });
}

void TrayStatusBoard::tubeDone(long nowS) {
  change([&](TrayStatus& s) {
    ++s.completed;
    long elapsedS = nowS - s.startS;
    if (elapsedS < 0) elapsedS += kDayS;
    s.perTubeS = elapsedS / s.completed;
    const int left = s.planned > s.completed ? s.planned - s.completed : 0;
    s.estimatedEndS = s.startS + elapsedS + s.perTubeS * left;
  });
}

void TrayStatusBoard::pauseRequested() {
  change([](TrayStatus& s) {
    if (s.state == TrayRunState::Reading || s.state == TrayRunState::SettingUp) {
      s.state = TrayRunState::PauseRequested;
    }
  });
}

void TrayStatusBoard::abortRequested() {
  change([](TrayStatus& s) {
    if (s.state == TrayRunState::Reading || s.state == TrayRunState::SettingUp ||
        s.state == TrayRunState::PauseRequested) {
      s.state = TrayRunState::AbortRequested;
    }
  });
}

void TrayStatusBoard::paused() {
  change([](TrayStatus& s) { s.state = TrayRunState::Paused; });
}

void TrayStatusBoard::resumed() {
  change([](TrayStatus& s) {
    if (s.state != TrayRunState::Ended && s.state != TrayRunState::Idle) {
      s.state = TrayRunState::Reading;
    }
  });
}

void TrayStatusBoard::alert(const std::string& line) {
  change([&](TrayStatus& s) {
    ++s.alerts;
    s.lastAlert = line;
  });
}

void TrayStatusBoard::ended(TrayRunEnd why) {
  change([&](TrayStatus& s) {
    s.state = TrayRunState::Ended;
    s.end = why;
  });
}

void TrayStatusBoard::moved(TrayRunState state) {
  change([state](TrayStatus& s) { s.state = state; });
}

void TrayStatusBoard::filed(int count) {
  change([count](TrayStatus& s) { s.completed = count; });
}

std::string TrayRunStateName(TrayRunState state) {
  switch (state) {
    case TrayRunState::Idle:
      return "idle";
    case TrayRunState::SettingUp:
      return "setting up";
    case TrayRunState::Reading:
      return "reading";
    case TrayRunState::PauseRequested:
      return "pause requested";
    case TrayRunState::Paused:
      return "paused";
    case TrayRunState::AbortRequested:
      return "abort requested";
    case TrayRunState::Ended:
      return "ended";
    case TrayRunState::AwaitingInit:
      return "awaiting init";
    case TrayRunState::AwaitingRead:
      return "awaiting read";
    case TrayRunState::AwaitingDecision:
      return "awaiting decision";
  }
  return "";
}

std::string TrayRunEndName(TrayRunEnd end) {
  switch (end) {
    case TrayRunEnd::None:
      return "";
    case TrayRunEnd::Completed:
      return "completed";
    case TrayRunEnd::Aborted:
      return "aborted";
    case TrayRunEnd::Terminated:
      return "terminated";
    case TrayRunEnd::InstrumentLost:
      return "instrument lost";
    case TrayRunEnd::Quit:
      return "quit";
  }
  return "";
}

}  // namespace zorvel
