#include "core/platform/serial_device.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace {

TEST(SerialDevice, SaysWhatIsKnownAndItsStableName) {
  EXPECT_EQ(DescribeSerialDevice({"/dev/ttyUSB0", "FT232R USB UART", "FTDI", "A12345",
                                  "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A12345-if00-port0"}),
            "/dev/ttyUSB0: FT232R USB UART, FTDI, serial A12345; stable name "
            "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A12345-if00-port0");
  EXPECT_EQ(DescribeSerialDevice({"/dev/ttyS0", "", "", "", ""}), "/dev/ttyS0");
  EXPECT_EQ(DescribeSerialDevice({"/dev/ttyACM0", "", "Arduino", "", ""}), "/dev/ttyACM0: Arduino");
}

}  // namespace
}  // namespace zorvel
