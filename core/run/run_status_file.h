#pragma once

#include <string>

#include "core/run/tray_status.h"
#include "core/state/data_set_paths.h"

// The status file a tray run keeps beside its data set (base path + ".status.json"), so that a
// script or a person away from the screen can follow the run: replaced whole at every change
// (a reader sees the old file or the new one, never part of one) and left with the final state
// when the run ends.
namespace zorvel {

// What the file says besides the run's own status.
struct RunStatusContext {
  std::string version;     // the program's version
  bool simulated = false;  // the instruments are the simulator
  std::string method;      // the method file's path
  std::string dataSet;     // the set's ".FIX" (or ".SYN") path
};

// The JSON text (UTF-8; the program's single-byte text is converted).
std::string RunStatusJson(const TrayStatus& status, const RunStatusContext& context);
// Empty without a set.
std::string RunStatusPath(const DataSetPaths& paths);
// Replaces the file whole; false when it cannot be written.
bool WriteRunStatus(const std::string& path, const std::string& json);

}  // namespace zorvel
