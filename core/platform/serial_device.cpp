#include "core/platform/serial_device.h"

namespace zorvel {

std::string DescribeSerialDevice(const SerialDevice& device) {
  std::string facts;
  const auto add = [&facts](const std::string& fact) {
    if (fact.empty()) return;
    facts += (facts.empty() ? ": " : ", ") + fact;
  };
  add(device.description);
  add(device.maker);
  if (!device.serialNumber.empty()) add("serial " + device.serialNumber);
  std::string line = device.path + facts;
  if (!device.stablePath.empty()) line += "; stable name " + device.stablePath;
  return line;
}

}  // namespace zorvel
