#pragma once

#include "core/run/run_engine.h"
#include "core/run/run_view_tap.h"

namespace zorvel {

// Keeps the run's status board following a cuvette run for as long as it lives: the state as
// the run's table moves it, the start at Init, the end at Quit or a lost instrument, the readings
// filed, and each line the status box shows. A tray run reports to the board itself and has none.
class CuvetteStatusFeed {
 public:
  CuvetteStatusFeed(RunEngine& engine, RunViewTap& tap);
  ~CuvetteStatusFeed();
  CuvetteStatusFeed(const CuvetteStatusFeed&) = delete;
  CuvetteStatusFeed& operator=(const CuvetteStatusFeed&) = delete;

 private:
  void moved(RunEvent event, RunState to);

  RunEngine& engine_;
  RunViewTap& tap_;
};

}  // namespace zorvel
