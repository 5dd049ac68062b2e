#include "core/instruments/pump_protocol.h"

#include <cmath>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr char kSync = static_cast<char>(255);
constexpr char kStx = 2;
constexpr char kEtx = 3;
constexpr char kSequence = '1';

std::string whole(std::int16_t value) {
  return text::plain(static_cast<double>(value));
}

}  // namespace

std::uint8_t PumpChecksum(std::string_view bytes) {
  std::uint8_t sum = 0;
  for (char c : bytes) sum ^= static_cast<std::uint8_t>(c);
  return sum;
}

std::string PumpFrame(std::int16_t address, std::string_view command) {
  std::string body;
  body += kStx;
  body += static_cast<char>('0' + address);
  body += kSequence;
  body += command;
  body += kEtx;
  return kSync + body + static_cast<char>(PumpChecksum(body));
}

std::string PumpQueryFrame(std::int16_t address) {
  return PumpFrame(address, "Q");
}

bool PumpReplyShowsReady(std::string_view reply) {
  return reply.find(static_cast<char>(kPumpReadyByte)) != std::string_view::npos;
}

PumpReplyText PumpSplitReplies(std::string_view text) {
  PumpReplyText split;
  std::size_t from = 0;
  for (std::size_t at = text.find(kEtx); at != std::string_view::npos && at + 1 < text.size();
       at = text.find(kEtx, from)) {
    split.replies.emplace_back(text.substr(from, at + 2 - from));
    from = at + 2;
  }
  split.rest = std::string(text.substr(from));
  return split;
}

int PumpReplyError(std::string_view reply) {
  constexpr unsigned char kAlwaysSet = 0x40;
  int error = 0;
  // The last status in the burst speaks for the device's present state.
  for (std::size_t at = reply.find(kStx); at != std::string_view::npos && at + 2 < reply.size();
       at = reply.find(kStx, at + 1)) {
    const auto status = static_cast<unsigned char>(reply[at + 2]);
    if (reply[at + 1] != '0' || (status & 0xC0) != kAlwaysSet) continue;
    error = status & 0x0F;
  }
  return error;
}

std::string PumpErrorName(int code) {
  switch (code) {
    case 1:
      return "initialisation error";
    case 2:
      return "invalid command";
    case 3:
      return "invalid operand";
    case 4:
      return "invalid command sequence";
    case 6:
      return "EEPROM failure";
    case 7:
      return "device not initialised";
    case 9:
      return "plunger overload";
    case 10:
      return "valve overload";
    case 11:
      return "plunger move not allowed";
    case 15:
      return "command overflow";
    default:
      return "error " + std::to_string(code);
  }
}

float StepsPerMicrolitre(std::int16_t syringeVolumeMl) {
  if (syringeVolumeMl <= 0) return 0.0f;
  return static_cast<float>(static_cast<double>(kPumpStrokeSteps) / syringeVolumeMl / 1000.0);
}

std::string ValvePortCommand(std::int16_t port) {
  if (port < 1 || port > 4) return {};
  return "Y2A" + whole(port) + "R";
}

std::string PumpDispenseCommand(std::int16_t mode, std::int16_t speed, std::int16_t volumeSteps) {
  std::string command = "IS" + whole(speed);
  if (mode != 1 && mode != 2) return command;
  command += mode == 1 ? "A" : "D";
  // The volume's number form leaves a blank where a minus sign would stand.
  if (volumeSteps >= 0) command += ' ';
  return command + whole(volumeSteps) + "R";
}

std::string PumpFillCommand(std::int16_t speed, std::int16_t volumeSteps) {
  return "IS" + whole(speed) + "P" + whole(volumeSteps) + "R";
}

std::string PumpFlushDrawCommand(std::int16_t speed, std::int16_t flushVolumeUl,
                                 float stepsPerMicrolitre) {
  // Single precision, as the step count is kept: 250 uL at 0.3 steps/uL is 75 steps.
  const float steps = static_cast<float>(flushVolumeUl) * stepsPerMicrolitre;
  const double wholeSteps = std::isfinite(steps) ? std::trunc(static_cast<double>(steps)) : 0.0;
  return "OS" + whole(speed) + "P" + text::plain(wholeSteps) + "R";
}

std::string PumpFlushEmptyCommand(std::int16_t speed) {
  return "IS" + whole(speed) + "A0R";
}

}  // namespace zorvel
