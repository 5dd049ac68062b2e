#include "sim/simulated_line.h"

#include <algorithm>

namespace zorvel::sim {

SimulatedLine::SimulatedLine(Clock& clock, LinePeer& peer, std::string name)
    : clock_(clock), peer_(peer), name_(std::move(name)) {}

bool SimulatedLine::open(std::string_view settings) {
  if (lost_) return false;
  settings_ = std::string(settings);
  open_ = true;
  return true;
}

void SimulatedLine::close() {
  open_ = false;
  inFlight_.clear();
  received_.clear();
}

bool SimulatedLine::write(std::string_view bytes) {
  if (!open_) return false;
  const double start = std::max(clock_.monotonicS(), sendBusyUntilS_);
  sendBusyUntilS_ = start + static_cast<double>(bytes.size()) * kCharacterTimeS;
  peer_.onReceive(bytes, sendBusyUntilS_, *this);
  return true;
}

void SimulatedLine::transmit(std::string_view bytes, double startS) {
  if (!open_) return;
  double t = std::max(startS, receiveBusyUntilS_);
  for (char c : bytes) {
    t += kCharacterTimeS;
    inFlight_.emplace_back(t, c);
  }
  receiveBusyUntilS_ = t;
}

void SimulatedLine::collectArrived(double nowS) {
  while (!inFlight_.empty() && inFlight_.front().first <= nowS) {
    if (received_.size() < bufferSize_) {
      received_.push_back(inFlight_.front().second);
    } else {
      ++overruns_;
    }
    inFlight_.pop_front();
  }
}

std::size_t SimulatedLine::charactersWaiting() {
  if (!open_) return 0;
  collectArrived(clock_.monotonicS());
  return received_.size();
}

std::string SimulatedLine::read(std::size_t n) {
  charactersWaiting();
  const std::size_t count = std::min(n, received_.size());
  std::string out = received_.substr(0, count);
  received_.erase(0, count);
  return out;
}

void SimulatedLine::discardInput() {
  charactersWaiting();
  received_.clear();
}

bool SimulatedLine::waitForCharacters(std::size_t n, double deadlineS) {
  if (!open_) return false;
  if (charactersWaiting() >= n) return true;
  const std::size_t missing = n - received_.size();
  if (missing <= inFlight_.size()) {
    const double arrival = inFlight_[missing - 1].first;
    if (arrival <= deadlineS) {
      clock_.sleepUntil(arrival);
      return charactersWaiting() >= n;
    }
  }
  clock_.sleepUntil(deadlineS);
  return charactersWaiting() >= n;
}

void SimulatedLine::vanish() {
  lost_ = true;
  close();
}

}  // namespace zorvel::sim
