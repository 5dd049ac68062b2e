#include "core/instruments/arm.h"

#include <cmath>
#include <string>

#include "core/instruments/arm_protocol.h"

namespace zorvel {

Arm::Arm(SerialLine& line, Clock& clock, Operator& person, LinkState& links,
         const TrayGeometry& tray)
    : link_(line, clock, person, "autosampler arm"), clock_(clock), links_(links), tray_(tray) {}

LinkFailure Arm::OpenArmPort() {
  return link_.ensureOpen();
}

void Arm::CloseArmPort() {
  link_.close();
}

LinkFailure Arm::SendArmCommand(std::string_view command) {
  if (const auto opened = link_.ensureOpen(); opened != LinkFailure::None) return opened;
  link_.discardInput();
  if (const auto sent = link_.send(std::string(command) + "\r"); sent != LinkFailure::None) {
    return sent;
  }
  std::string reply;
  if (const auto heard = awaitReply(reply); heard != LinkFailure::None) return heard;
  if (ArmReplyHasOk(reply)) return LinkFailure::None;
  return PollArmStatus();
}

LinkFailure Arm::awaitReply(std::string& reply) {
  const auto lineEndsOnly = [](std::string_view text) {
    return text.find_first_not_of("\r\n") == std::string_view::npos;
  };
  // A reply is taken as soon as it holds "OK"; only one without it is waited out to its end.
  // The line end after an "OK" may come after the input was discarded for the next command:
  // it belongs to the reply before and is passed over, once.
  for (int passed = 0;; ++passed) {
    if (const auto heard = link_.awaitCharacter(); heard != LinkFailure::None) return heard;
    reply = link_.readBurst(kReplyGapS, [&](std::string_view text) {
      return ArmReplyHasOk(text) || lineEndsOnly(text);
    });
    if (passed > 0 || !lineEndsOnly(reply)) return LinkFailure::None;
  }
}

LinkFailure Arm::PollArmStatus() {
  link_.discardInput();
  if (const auto sent = link_.send("Status\r"); sent != LinkFailure::None) return sent;
  // "Status" goes out once; from here on the arm speaks when it is done.
  double sinceS = clock_.monotonicS();
  for (;;) {
    std::string reply;
    if (const auto heard = awaitReply(reply); heard != LinkFailure::None) return heard;
    if (ArmReplyHasOk(reply) || ArmStatusIsReady(reply)) return LinkFailure::None;
    if (clock_.monotonicS() - sinceS < kLongestMoveS) continue;
    if (!link_.busyTooLongRetries(kLongestMoveS, reply)) return LinkFailure::Abandoned;
    sinceS = clock_.monotonicS();
  }
}

int Arm::currentHeight() const {
  return static_cast<int>(std::lround(links_.CurrentArmHeight));
}

LinkFailure Arm::SetArmHeight(std::int16_t height) {
  const std::string command = ArmHeightCommand(currentHeight(), height);
  if (!command.empty()) {
    // On a failure the probe's height is unknown; the old value is the better guess.
    if (const auto done = SendArmCommand(command); done != LinkFailure::None) return done;
  }
  links_.CurrentArmHeight = height;
  return LinkFailure::None;
}

LinkFailure Arm::MoveArmToTube(std::int16_t tube) {
  if (tube == -1) {
    const LinkFailure done = SendArmCommand("RESET");
    links_.CurrentArmHeight = 0;
    links_.CurrentArmTube = -1;
    return done;
  }
  const ArmPoint target =
      ArmTargetFor(tray_, tube, links_.Placement.ArmOffsetX, links_.Placement.ArmOffsetY);
  links_.Placement.ArmX = target.x;
  links_.Placement.ArmY = target.y;
  if (tube == links_.CurrentArmTube) return LinkFailure::None;
  const LinkFailure done = SendArmCommand(ArmMoveCommand(target.x, target.y));
  if (done != LinkFailure::None) {
    // Where the arm stopped is unknown: the next move to any tube must be sent.
    links_.CurrentArmTube = -1;
    return done;
  }
  links_.CurrentArmHeight = 0;
  links_.CurrentArmTube = tube;
  return LinkFailure::None;
}

}  // namespace zorvel
