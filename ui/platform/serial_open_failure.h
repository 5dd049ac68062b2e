#pragma once

#include <string>
#include <vector>

#include "core/platform/serial_device.h"

namespace zorvel::ui {

// The folders where Linux serial programs keep their lock files (LCK..ttyUSB0 holding the
// owner's process number), in the order the serial port library looks for one to write in.
const std::vector<std::string>& SerialLockFolders();

// What the system said when the device would not open.
struct OpenRefusal {
  bool deniedOrBusy = false;  // refused for permission, a lock or exclusive use
  std::string systemReason;   // the system's own words, for anything else
};

// The program holding the advisory lock (flock) on the device, as "picocom (process 4711, user
// ann)"; empty when nobody holds one or the system does not say.
std::string DeviceLockHolder(const std::string& device);

// What the operator is told when another program holds the device's advisory lock.
std::string ExplainLockedSerialDevice(const std::string& device, const std::string& holder);

// Why `device` would not open, in a user's words: no such device (with the serial devices that
// do exist), another program holds it (with its lock file's owner when that can be read), or
// the user may not use it (with the fix: join the device's group, usually dialout, and log out
// and in). Looks, and never opens the device: opening a port can move its control lines.
std::string ExplainSerialOpenFailure(const std::string& device, const OpenRefusal& refusal,
                                     const std::vector<SerialDevice>& present,
                                     const std::vector<std::string>& lockFolders);

}  // namespace zorvel::ui
