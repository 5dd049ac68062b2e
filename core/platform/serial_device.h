#pragma once

#include <string>

namespace zorvel {

// A serial device present on the computer, with what the system knows of it.
struct SerialDevice {
  std::string path;          // "/dev/ttyUSB0"
  std::string description;   // "FT232R USB UART"
  std::string maker;         // "FTDI"
  std::string serialNumber;  // "A12345"
  std::string stablePath;    // its /dev/serial/by-id name, which survives a reboot; may be empty
};

// One line for lists and messages: "/dev/ttyUSB0: FT232R USB UART, FTDI, serial A12345; stable
// name /dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A12345-if00-port0". Unknown parts are left out.
std::string DescribeSerialDevice(const SerialDevice& device);

}  // namespace zorvel
