#include "ui/windows/serial_devices_frame.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace zorvel::ui {

SerialDevicesFrame::SerialDevicesFrame(const std::vector<SerialDevice>& devices, QWidget* parent)
    : QGroupBox("Serial Devices", parent) {
  setObjectName("Devices_Frame");
  list_ = new QListWidget;
  list_->setObjectName("Devices_List");
  for (const SerialDevice& d : devices) {
    auto* item = new QListWidgetItem(QString::fromStdString(DescribeSerialDevice(d)), list_);
    item->setData(Qt::UserRole,
                  QString::fromStdString(d.stablePath.empty() ? d.path : d.stablePath));
  }
  if (devices.empty()) list_->addItem("No serial devices: is the adapter plugged in?");
  auto* hint = new QLabel(
      "ZORVEL.PORTS beside the preferences maps COM ports to devices, one line each, such as "
      "COM1=/dev/serial/by-id/...; a stable name keeps the mapping across reboots.");
  hint->setWordWrap(true);
  auto* copy = new QPushButton("Copy Stable Name");
  copy->setObjectName("CopyStableName");
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(list_);
  layout->addWidget(hint);
  layout->addWidget(copy);
  connect(copy, &QPushButton::clicked, this, [this] {
    if (const QListWidgetItem* item = list_->currentItem())
      QGuiApplication::clipboard()->setText(item->data(Qt::UserRole).toString());
  });
}

}  // namespace zorvel::ui
