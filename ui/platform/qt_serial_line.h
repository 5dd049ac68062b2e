#pragma once

#include <memory>
#include <string>

#include "core/platform/clock.h"
#include "core/platform/serial_line.h"

class QSerialPort;

namespace zorvel::ui {

// A real serial port (or pseudo-terminal) behind the serial-line seam. It is used from the
// instrument worker thread, which runs no event loop, so the QSerialPort is made in whichever
// thread opens the line, and every wait blocks in waitForReadyRead up to the deadline.
//
// A device that vanishes (adapter pulled, far end of a pseudo-terminal closed) makes the port
// report an error on every call; the line closes at the first one and reports lost() from then
// on, so no caller ever spins on a dead port.
class QtSerialLine final : public SerialLine {
 public:
  // comName as the settings files say it ("COM1"); device as the port map gives it.
  QtSerialLine(Clock& clock, std::string comName, std::string device);
  ~QtSerialLine() override;

  bool open(std::string_view settings) override;
  void close() override;
  bool isOpen() const override;
  bool write(std::string_view bytes) override;
  std::size_t charactersWaiting() override;
  std::string read(std::size_t n) override;
  void discardInput() override;
  bool waitForCharacters(std::size_t n, double deadlineS) override;
  // Recorded only: the port's own buffer grows as needed, so a scan's numbers can never
  // overrun it however large the scan.
  void setInputBufferSize(std::size_t size) override { inputBufferSize_ = size; }
  bool lost() const override { return lost_; }
  std::string describe() const override { return comName_ + " (" + device_ + ")"; }
  std::string openFailure() const override { return openFailure_; }

  std::size_t inputBufferSize() const { return inputBufferSize_; }

 private:
  // Takes in whatever the system has received, without waiting; false when the port failed.
  bool pollInput();
  // Closes the port for good if it reports a failure; true when that happened.
  bool checkFailure();

  Clock& clock_;
  std::string comName_;
  std::string device_;
  std::unique_ptr<QSerialPort> port_;
  std::string openFailure_;
  std::size_t inputBufferSize_ = 1024;
  bool lost_ = false;
};

}  // namespace zorvel::ui
