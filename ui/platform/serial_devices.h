#pragma once

#include <string>
#include <vector>

#include "core/platform/serial_device.h"

namespace zorvel::ui {

// The serial devices present, with their description, maker and serial number, and their names
// in `stableFolder` (/dev/serial/by-id), which stay the same when /dev/ttyUSB numbers change.
std::vector<SerialDevice> PresentSerialDevices(
    const std::string& stableFolder = "/dev/serial/by-id");

}  // namespace zorvel::ui
