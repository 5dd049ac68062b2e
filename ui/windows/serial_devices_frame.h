#pragma once

#include <QGroupBox>
#include <vector>

#include "core/platform/serial_device.h"

class QListWidget;

namespace zorvel::ui {

// Beside the COM port choices of the setup: the serial devices present, with description, maker
// and serial number, and their stable /dev/serial/by-id names, which a lab puts in ZORVEL.PORTS
// so that its mapping survives a reboot ("Copy Stable Name" puts the chosen one on the
// clipboard).
class SerialDevicesFrame final : public QGroupBox {
  Q_OBJECT
 public:
  explicit SerialDevicesFrame(const std::vector<SerialDevice>& devices, QWidget* parent = nullptr);

 private:
  QListWidget* list_ = nullptr;
};

}  // namespace zorvel::ui
