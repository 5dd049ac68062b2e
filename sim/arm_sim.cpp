#include "sim/arm_sim.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace zorvel::sim {

namespace {

std::optional<float> numberAt(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  float value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc{}) return std::nullopt;
  return value;
}

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

}  // namespace

ArmSim::ArmSim(Bench& bench, const TrayGeometry* tray) : bench_(bench), tray_(tray) {
  tellBench();
}

void ArmSim::setTray(const TrayGeometry* tray) {
  tray_ = tray;
  tellBench();
}

void ArmSim::onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) {
  for (char c : bytes) {
    if (c == '\r') {
      handle(pending_, arrivedS, reply);
      pending_.clear();
    } else if (c != '\n') {
      pending_ += c;
    }
  }
}

void ArmSim::handle(std::string_view command, double arrivedS, LineEnd& reply) {
  ++commands_;
  const double startS = std::max(arrivedS, busyUntilS_);
  if (command == "Status") {
    answer("OK\r", startS, reply);
    return;
  }
  const double durationS = perform(command);
  if (durationS < 0) {
    answer("ERR\r", arrivedS, reply);
    return;
  }
  busyUntilS_ = startS + durationS;
  if (withoutOk_ > 0) {
    --withoutOk_;
    answer("BUSY\r", arrivedS, reply);
  } else {
    answer("OK\r", busyUntilS_, reply);
  }
}

double ArmSim::perform(std::string_view command) {
  if (command == "RESET") {
    const double up = raiseProbe();
    return up + travelTo(0, 0);
  }
  if (startsWith(command, "SETM ABSPOS=")) {
    const std::string_view args = command.substr(12);
    const std::size_t comma = args.find(',');
    const auto x = numberAt(args.substr(0, comma));
    const auto y =
        comma == std::string_view::npos ? std::nullopt : numberAt(args.substr(comma + 1));
    if (!x || !y) return -1;
    const double up = raiseProbe();
    return up + travelTo(*x, *y);
  }
  if (startsWith(command, "SET DOWN=")) {
    const auto units = numberAt(command.substr(9));
    return units ? lowerBy(*units) : -1;
  }
  if (startsWith(command, "SET UP=")) {
    const auto units = numberAt(command.substr(7));
    return units ? lowerBy(-*units) : -1;
  }
  return -1;
}

double ArmSim::raiseProbe() {
  return lowerBy(-height_);
}

double ArmSim::travelTo(float x, float y) {
  const float toX = std::clamp(x, 0.0f, kLimitXMm);
  const float toY = std::clamp(y, 0.0f, kLimitYMm);
  const double distance = std::hypot(toX - x_, toY - y_);
  x_ = toX;
  y_ = toY;
  tellBench();
  return distance / kTravelMmPerS;
}

double ArmSim::lowerBy(float units) {
  const float to = std::clamp(height_ + units, 0.0f, kDeepestProbe);
  const double durationS = std::fabs(to - height_) / kProbeUnitsPerS;
  height_ = to;
  tellBench();
  return durationS;
}

void ArmSim::answer(std::string_view text, double atS, LineEnd& reply) {
  if (silent_) return;
  reply.transmit(text, atS + kAnswerDelayS + extraDelayS_);
}

void ArmSim::tellBench() {
  bench_.armHeightMm = height_;
  bench_.armTube = -1;
  if (tray_ == nullptr) return;
  float nearest = kOverTubeMm;
  for (int k = 0; k < tray_->positionCount && k <= kMaxTrayPosition; ++k) {
    const TrayPosition& p = tray_->positions[static_cast<std::size_t>(k)];
    const float distance = std::hypot(p.X - x_, p.Y - y_);
    if (distance <= nearest) {
      nearest = distance;
      bench_.armTube = k;
    }
  }
}

}  // namespace zorvel::sim
