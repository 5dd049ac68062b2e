#include "ui/windows/serial_devices_frame.h"

#include <QClipboard>
#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

#include "ui/qt_app.h"

namespace zorvel {
namespace {

TEST(SerialDevicesFrame, ListsTheDevicesAndCopiesTheStableNameForThePortsFile) {
  testing::qtApp();
  ui::SerialDevicesFrame frame({{"/dev/ttyUSB0", "FT232R USB UART", "FTDI", "A12345",
                                 "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A12345-if00-port0"},
                                {"/dev/ttyS0", "", "", "", ""}});
  auto* list = frame.findChild<QListWidget*>("Devices_List");
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count(), 2);
  EXPECT_EQ(list->item(0)->text().toStdString(),
            "/dev/ttyUSB0: FT232R USB UART, FTDI, serial A12345; stable name "
            "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A12345-if00-port0");
  list->setCurrentRow(0);
  frame.findChild<QPushButton*>("CopyStableName")->click();
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A12345-if00-port0");
  // A device without a stable name offers its own.
  list->setCurrentRow(1);
  frame.findChild<QPushButton*>("CopyStableName")->click();
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "/dev/ttyS0");
}

}  // namespace
}  // namespace zorvel
