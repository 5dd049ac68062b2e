#include "core/run/cuvette_status.h"

#include <cmath>

namespace zorvel {

CuvetteStatusFeed::CuvetteStatusFeed(RunEngine& engine, RunViewTap& tap)
    : engine_(engine), tap_(tap) {
  engine_.machine().setListener([this](RunEvent event, RunState to) { moved(event, to); });
  tap_.setListener([this](const std::string& line) { engine_.trayStatus().message(line); });
  // Counted where the records are written: a reading rejected and given up passes the same
  // moves of the table as one accepted, but files nothing.
  engine_.writer().setFiledListener([this](int count) { engine_.trayStatus().filed(count); });
  engine_.trayStatus().moved(TrayRunState::AwaitingInit);
}

CuvetteStatusFeed::~CuvetteStatusFeed() {
  engine_.machine().setListener({});
  engine_.writer().setFiledListener({});
  tap_.setListener({});
}

void CuvetteStatusFeed::moved(RunEvent event, RunState to) {
  TrayStatusBoard& board = engine_.trayStatus();
  switch (to) {
    case RunState::SettingUp:
      board.settingUp(0, 0, static_cast<long>(std::floor(engine_.clock().secondsSinceMidnight())),
                      engine_.clock().now(), "");
      return;
    case RunState::AwaitingInit:
      board.moved(TrayRunState::AwaitingInit);
      return;
    case RunState::AwaitingRead:
      board.moved(TrayRunState::AwaitingRead);
      return;
    case RunState::Reading:
      board.moved(TrayRunState::Reading);
      return;
    case RunState::AwaitingDecision:
      board.moved(TrayRunState::AwaitingDecision);
      return;
    case RunState::Closed:
      board.ended(event == RunEvent::Quit ? TrayRunEnd::Quit : TrayRunEnd::InstrumentLost);
      return;
    case RunState::TrayRun:
    case RunState::Paused:
      return;
  }
}

}  // namespace zorvel
