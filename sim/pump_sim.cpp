#include "sim/pump_sim.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "sim/pump_sim_commands.h"

namespace zorvel::sim {

namespace {

constexpr char kStx = 2;
constexpr char kEtx = 3;
constexpr int kStrokeSteps = 3000;
// A command held this long without its end marker is noise and is dropped.
constexpr std::size_t kLongestFrame = 256;

std::uint8_t xorOf(std::string_view bytes) {
  std::uint8_t sum = 0;
  for (char c : bytes) sum ^= static_cast<std::uint8_t>(c);
  return sum;
}

}  // namespace

PumpSim::PumpSim(Bench& bench) : bench_(bench) {}

double PumpSim::StepsPerSecond(int speedCode) {
  return 6000.0 / (1.0 + std::clamp(speedCode, 0, 40));
}

void PumpSim::onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) {
  received_.append(bytes);
  Frame frame;
  while (nextFrame(frame)) handle(frame, arrivedS, reply);
}

bool PumpSim::nextFrame(Frame& frame) {
  for (;;) {
    const std::size_t stx = received_.find(kStx);
    if (stx == std::string::npos) {
      received_.clear();
      return false;
    }
    received_.erase(0, stx);
    const std::size_t etx = received_.find(kEtx);
    if (etx == std::string::npos || etx + 1 >= received_.size()) {
      if (received_.size() > kLongestFrame) received_.erase(0, 1);
      if (received_.size() > kLongestFrame) continue;
      return false;
    }
    const std::string body = received_.substr(0, etx + 1);
    const auto checksum = static_cast<std::uint8_t>(received_[etx + 1]);
    received_.erase(0, etx + 2);
    if (body.size() < 4 || xorOf(body) != checksum) {
      ++rejected_;
      continue;
    }
    frame.address = body[1];
    frame.text = body.substr(3, body.size() - 4);
    return true;
  }
}

void PumpSim::handle(const Frame& frame, double arrivedS, LineEnd& reply) {
  const bool pump = frame.address == '1';
  if (!pump && frame.address != '3') return;  // nobody at that address
  ++accepted_;
  double& busyUntilS = pump ? pumpBusyUntilS_ : valveBusyUntilS_;
  if (frame.text == "Q") {
    answer(arrivedS >= busyUntilS, arrivedS, reply);
    return;
  }
  // A device still moving takes the next command after it has finished the last.
  const double startS = std::max(arrivedS, busyUntilS);
  const double durationS = pump ? runPump(frame.text) : runValve(frame.text);
  busyUntilS = startS + durationS;
  answer(arrivedS >= busyUntilS, arrivedS, reply);
}

void PumpSim::answer(bool ready, double atS, LineEnd& reply) {
  if (silent_) return;
  std::string body;
  body += kStx;
  body += '0';
  body += static_cast<char>(ready ? kReady : kBusy);
  body += kEtx;
  const std::string frame = static_cast<char>(255) + body + static_cast<char>(xorOf(body));
  reply.transmit(frame, atS + kAnswerDelayS + extraDelayS_);
}

double PumpSim::runPump(std::string_view text) {
  const std::vector<PumpStep> steps = ParsePumpSteps(text);
  if (!RunsNow(steps)) {
    held_ = std::string(text);
    return 0;
  }
  // "R" alone runs what was held.
  const std::vector<PumpStep> program = RunsHeld(steps) ? ParsePumpSteps(held_) : steps;
  held_.clear();
  double durationS = 0;
  for (const PumpStep& step : program) {
    switch (step.letter) {
      case 'Z':
        // A dilutor in use means the flow cell sits in the fluorimeter's light path.
        bench_.readFromFlowCell = true;
        pumpValve_ = 'I';
        // The plunger goes home: what the syringe still holds (a program stopped mid-stroke)
        // leaves through the input side, as it does on the dilutor.
        dispense(bench_.syringeVolumeUl);
        durationS += kInitialiseS + plunger_ / StepsPerSecond(10);
        plunger_ = 0;
        break;
      case 'I':
      case 'O':
      case 'B':
        if (pumpValve_ != step.letter) durationS += kPumpValveTurnS;
        pumpValve_ = step.letter;
        break;
      case 'S':
        speed_ = step.value;
        break;
      case 'A':
        durationS += movePlungerTo(step.value);
        break;
      case 'P':
        durationS += movePlungerTo(plunger_ + step.value);
        break;
      case 'D':
        durationS += movePlungerTo(plunger_ - step.value);
        break;
      default:
        break;
    }
  }
  return durationS;
}

double PumpSim::runValve(std::string_view text) {
  const std::vector<PumpStep> steps = ParsePumpSteps(text);
  double durationS = 0;
  for (const PumpStep& step : steps) {
    if (step.letter == 'Z') durationS += kInitialiseS + turnPort(1);
    if (step.letter == 'A') durationS += turnPort(step.value);
  }
  return durationS;
}

double PumpSim::movePlungerTo(int steps) {
  const int to = std::clamp(steps, 0, kStrokeSteps);
  const int moved = to - plunger_;
  plunger_ = to;
  if (moved > 0) draw(microlitres(moved));
  if (moved < 0) dispense(microlitres(-moved));
  return std::abs(moved) / StepsPerSecond(speed_);
}

double PumpSim::turnPort(int port) {
  if (port < 1 || port > 4 || port == valvePort_) return 0;
  valvePort_ = port;
  if (port == 2) {
    bench_.flowCell = Sample{};
    bench_.flowCell.water = false;
    bench_.flowCell.label = "air";
    bench_.flowCellFilled = false;
  }
  return kValvePortTurnS;
}

double PumpSim::microlitres(int steps) const {
  return static_cast<double>(steps) * kSyringeMl * 1000.0 / kStrokeSteps;
}

}  // namespace zorvel::sim
