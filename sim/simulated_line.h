#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <utility>

#include "core/platform/clock.h"
#include "core/platform/serial_line.h"

namespace zorvel::sim {

// The instrument side of a simulated line: what it sends travels back to the program.
class LineEnd {
 public:
  virtual ~LineEnd() = default;
  // Starts sending bytes at startS (monotonic); they arrive one character time apart.
  virtual void transmit(std::string_view bytes, double startS) = 0;
};

// An instrument model at the far end of a simulated line.
class LinePeer {
 public:
  virtual ~LinePeer() = default;
  // The program's bytes have fully arrived at the instrument at arrivedS.
  virtual void onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) = 0;
};

// A serial line joined to a simulated instrument, with 9600-baud character timing on whichever
// clock it is given: on the virtual clock a wait jumps to the moment the data arrives.
class SimulatedLine final : public SerialLine, public LineEnd {
 public:
  // Ten bits per character at 9600 baud.
  static constexpr double kCharacterTimeS = 10.0 / 9600.0;

  SimulatedLine(Clock& clock, LinePeer& peer, std::string name = "COM1 (sim)");

  bool open(std::string_view settings) override;
  void close() override;
  bool isOpen() const override { return open_; }
  bool write(std::string_view bytes) override;
  std::size_t charactersWaiting() override;
  std::string read(std::size_t n) override;
  void discardInput() override;
  bool waitForCharacters(std::size_t n, double deadlineS) override;
  void setInputBufferSize(std::size_t size) override { bufferSize_ = size; }
  bool lost() const override { return lost_; }
  std::string describe() const override { return name_; }

  void transmit(std::string_view bytes, double startS) override;

  // Fault injection: the device vanishes; the line closes and stays lost.
  void vanish();
  // Characters dropped because the receive buffer was full.
  std::size_t overrunCount() const { return overruns_; }
  std::size_t inputBufferSize() const { return bufferSize_; }
  const std::string& settings() const { return settings_; }

 private:
  void collectArrived(double nowS);

  Clock& clock_;
  LinePeer& peer_;
  std::string name_;
  std::string settings_;
  bool open_ = false;
  bool lost_ = false;
  double sendBusyUntilS_ = 0.0;
  double receiveBusyUntilS_ = 0.0;
  std::deque<std::pair<double, char>> inFlight_;
  std::string received_;
  std::size_t bufferSize_ = 1024;
  std::size_t overruns_ = 0;
};

}  // namespace zorvel::sim
