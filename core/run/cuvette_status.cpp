#include "core/run/cuvette_status.h"

#include <cmath>

namespace zorvel {

CuvetteStatusFeed::CuvetteStatusFeed(RunEngine& engine, RunViewTap& tap)
    : engine_(engine), tap_(tap) {
  engine_.machine().setListener([this](RunEvent event, RunState to) { moved(event, to); });
  tap_.setListener([this](const std::string& line) { engine_.runStatus().message(line); });
  // Counted where the records are written: a reading rejected and given up passes the same
  // moves of the table as one accepted, but files nothing.
  engine_.writer().setFiledListener([this](int count) { engine_.runStatus().filed(count); });
  engine_.runStatus().moved(RunStatusState::AwaitingInit);
}

CuvetteStatusFeed::~CuvetteStatusFeed() {
  engine_.machine().setListener({});
  engine_.writer().setFiledListener({});
  tap_.setListener({});
}

void CuvetteStatusFeed::moved(RunEvent event, RunState to) {
  RunStatusBoard& board = engine_.runStatus();
  switch (to) {
    case RunState::SettingUp:
      board.settingUp(0, 0, static_cast<long>(std::floor(engine_.clock().secondsSinceMidnight())),
                      engine_.clock().now(), "");
      return;
    case RunState::AwaitingInit:
      board.moved(RunStatusState::AwaitingInit);
      return;
    case RunState::AwaitingRead:
      board.moved(RunStatusState::AwaitingRead);
      return;
    case RunState::Reading:
      board.moved(RunStatusState::Reading);
      return;
    case RunState::AwaitingDecision:
      board.moved(RunStatusState::AwaitingDecision);
      return;
    case RunState::Closed:
      board.ended(event == RunEvent::Quit ? RunEnd::Quit : RunEnd::InstrumentLost);
      return;
    case RunState::TrayRun:
    case RunState::Paused:
      return;
  }
}

}  // namespace zorvel
