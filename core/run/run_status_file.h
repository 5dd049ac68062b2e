#pragma once

#include <functional>
#include <string>

#include "core/run/run_status.h"
#include "core/state/data_set_paths.h"

// The status file a run keeps beside its data set (base path + ".status.json"), so that a
// script or a person away from the screen can follow it: replaced whole at every change (a
// reader sees the old file or the new one, never part of one) and left with the final state
// when the run ends. A cuvette run fills the fields it has; the tray's (tubes, planned,
// estimated end) stay 0 or null.
namespace zorvel {

// What the file says besides the run's own status.
struct RunStatusContext {
  std::string version;  // the program's version
  // Some instrument of the run leads to a simulator (built in, or zorvel-sim's pseudo-terminals
  // as its ports file says): the readings are not real.
  bool simulated = false;
  std::string method;   // the method file's path
  std::string dataSet;  // the set's ".FIX" (or ".SYN") path
};

// The JSON text (UTF-8; the program's single-byte text is converted).
std::string RunStatusJson(const RunStatus& status, const RunStatusContext& context);
// Empty without a set.
std::string RunStatusPath(const DataSetPaths& paths);
// Replaces the file whole; false when it cannot be written.
bool WriteRunStatus(const std::string& path, const std::string& json);
// Writes the file now and at every change of the board, after `told` (may be empty) has heard
// of the change; the board keeps this listener until it is given another.
void KeepRunStatusFile(RunStatusBoard& board, const RunStatusContext& context,
                       const std::string& path, std::function<void(const RunStatus&)> told = {});

}  // namespace zorvel
