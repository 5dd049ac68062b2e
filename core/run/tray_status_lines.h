#pragma once

#include <string>
#include <vector>

#include "core/run/run_status.h"

namespace zorvel {

// A tray run's status as the run window shows it, line by line; empty lines are not shown.
struct TrayStatusLines {
  std::string tube;  // "Tube 3 of 20: Sample 12 in tray tube 14"
  std::string step;  // "Step: Locating Sample"
  // TimeInfo's four lines, elapsed and current time as of now, the time per tube and the
  // estimated completion as of the last tube done.
  std::vector<std::string> timeInfo;
  std::string request;   // "Pause requested: pausing after tube 14", "Paused", ...
  std::string alerts;    // "2 alerts logged in /data/RUN.LOG: <the last>"
  int progressDone = 0;  // tubes finished of progressOf, controls and blanks included
  int progressOf = 0;
  bool shown = false;  // false when no tray run is under way: everything is cleared
};

// nowS: the clock time now, seconds since midnight, so that the times tick between tubes.
TrayStatusLines DescribeTrayStatus(const RunStatus& status, long nowS);

}  // namespace zorvel
