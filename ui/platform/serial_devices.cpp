#include "ui/platform/serial_devices.h"

#include <QSerialPortInfo>
#include <filesystem>

namespace zorvel::ui {

namespace {

std::string stableNameOf(const std::string& path, const std::string& stableFolder) {
  namespace fs = std::filesystem;
  std::error_code ec;
  const fs::path device = fs::canonical(path, ec);
  if (ec) return {};
  for (const auto& entry : fs::directory_iterator(stableFolder, ec)) {
    std::error_code linkError;
    if (fs::canonical(entry.path(), linkError) == device && !linkError)
      return entry.path().string();
  }
  return {};
}

}  // namespace

std::vector<SerialDevice> PresentSerialDevices(const std::string& stableFolder) {
  std::vector<SerialDevice> devices;
  for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
    SerialDevice d;
    d.path = port.systemLocation().toStdString();
    d.description = port.description().toStdString();
    d.maker = port.manufacturer().toStdString();
    d.serialNumber = port.serialNumber().toStdString();
    d.stablePath = stableNameOf(d.path, stableFolder);
    devices.push_back(std::move(d));
  }
  return devices;
}

}  // namespace zorvel::ui
