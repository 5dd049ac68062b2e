#include "ui/platform/qt_serial_line.h"

#include <sys/file.h>

#include <QSerialPort>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <filesystem>

#include "core/platform/line_settings.h"
#include "ui/platform/serial_devices.h"
#include "ui/platform/serial_open_failure.h"

namespace zorvel::ui {

namespace {

// How long a write may take to leave the program's buffer for the system's.
constexpr int kWriteTimeoutMs = 2000;

QSerialPort::Parity toQt(Parity p) {
  switch (p) {
    case Parity::Even:
      return QSerialPort::EvenParity;
    case Parity::Odd:
      return QSerialPort::OddParity;
    case Parity::Mark:
      return QSerialPort::MarkParity;
    case Parity::Space:
      return QSerialPort::SpaceParity;
    case Parity::None:
      break;
  }
  return QSerialPort::NoParity;
}

QSerialPort::StopBits toQt(StopBits s) {
  switch (s) {
    case StopBits::OneAndHalf:
      return QSerialPort::OneAndHalfStop;
    case StopBits::Two:
      return QSerialPort::TwoStop;
    case StopBits::One:
      break;
  }
  return QSerialPort::OneStop;
}

bool applySettings(QSerialPort& port, const LineSettings& s) {
  return port.setBaudRate(s.baud) && port.setParity(toQt(s.parity)) &&
         port.setDataBits(static_cast<QSerialPort::DataBits>(s.dataBits)) &&
         port.setStopBits(toQt(s.stopBits)) && port.setFlowControl(QSerialPort::NoFlowControl);
}

}  // namespace

QtSerialLine::QtSerialLine(Clock& clock, std::string comName, std::string device)
    : clock_(clock), comName_(std::move(comName)), device_(std::move(device)) {}

QtSerialLine::~QtSerialLine() {
  close();
}

bool QtSerialLine::open(std::string_view settings) {
  if (lost_) return false;
  const auto parsed = ParseLineSettings(settings);
  if (!parsed) return false;
  // The port belongs to the thread that talks through it: a worker thread has no event loop,
  // so everything happens in the blocking calls made from that thread.
  if (port_ && port_->thread() != QThread::currentThread()) port_.reset();
  if (!port_) port_ = std::make_unique<QSerialPort>();
  if (port_->isOpen()) port_->close();
  openFailure_.clear();
  // Opened by its real name, so that the lock file is the one other serial programs look for
  // (LCK..ttyUSB0, not one named after a /dev/serial/by-id link). The port library takes the
  // lock file and the terminal's exclusive mode: no second program shares the instrument line.
  std::error_code ec;
  const auto real = std::filesystem::canonical(device_, ec);
  port_->setPortName(QString::fromStdString(ec ? device_ : real.string()));
  if (!port_->open(QIODevice::ReadWrite)) {
    const OpenRefusal refusal{port_->error() == QSerialPort::PermissionError,
                              port_->errorString().toStdString()};
    openFailure_ =
        ExplainSerialOpenFailure(device_, refusal, PresentSerialDevices(), SerialLockFolders());
    return false;
  }
  // Terminal programs also lock the device itself. The system's exclusive mode does not stop
  // root, the lock does: a line another program holds is refused even then, and the lock goes
  // with the port however this program ends.
  if (::flock(static_cast<int>(port_->handle()), LOCK_EX | LOCK_NB) != 0) {
    port_->close();
    openFailure_ = ExplainLockedSerialDevice(device_, DeviceLockHolder(device_));
    return false;
  }
  if (!applySettings(*port_, *parsed)) {
    port_->close();
    openFailure_ = device_ + " refuses the line settings " + std::string(settings) + ".";
    return false;
  }
  return true;
}

void QtSerialLine::close() {
  if (port_ && port_->isOpen()) port_->close();
}

bool QtSerialLine::isOpen() const {
  return port_ && port_->isOpen();
}

bool QtSerialLine::checkFailure() {
  if (!port_) return false;
  switch (port_->error()) {
    case QSerialPort::NoError:
    case QSerialPort::TimeoutError:
      return false;
    default:
      break;
  }
  lost_ = true;
  port_->close();
  return true;
}

bool QtSerialLine::pollInput() {
  if (!isOpen()) return false;
  port_->waitForReadyRead(0);
  return !checkFailure();
}

bool QtSerialLine::write(std::string_view bytes) {
  if (!isOpen()) return false;
  port_->write(bytes.data(), static_cast<qint64>(bytes.size()));
  while (port_->bytesToWrite() > 0) {
    if (!port_->waitForBytesWritten(kWriteTimeoutMs)) break;
  }
  if (checkFailure()) return false;
  return port_->bytesToWrite() == 0;
}

std::size_t QtSerialLine::charactersWaiting() {
  if (!pollInput()) return 0;
  return static_cast<std::size_t>(port_->bytesAvailable());
}

std::string QtSerialLine::read(std::size_t n) {
  if (n == 0 || !isOpen()) return {};
  if (static_cast<std::size_t>(port_->bytesAvailable()) < n && !pollInput()) return {};
  const QByteArray bytes = port_->read(static_cast<qint64>(n));
  return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

void QtSerialLine::discardInput() {
  if (!pollInput()) return;
  port_->readAll();
}

bool QtSerialLine::waitForCharacters(std::size_t n, double deadlineS) {
  if (!pollInput()) return false;
  while (static_cast<std::size_t>(port_->bytesAvailable()) < n) {
    const double remainingS = deadlineS - clock_.monotonicS();
    if (remainingS <= 0) return false;
    const int ms = static_cast<int>(std::min(std::ceil(remainingS * 1000.0), 3600.0e3));
    // waitForReadyRead returns at the first bytes; the loop waits again for the rest.
    port_->waitForReadyRead(ms);
    if (checkFailure()) return false;
  }
  return true;
}

}  // namespace zorvel::ui
