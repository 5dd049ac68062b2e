#include "core/instruments/arm_protocol.h"

#include <algorithm>
#include <cctype>

#include "core/text/number_format.h"

namespace zorvel {

std::string ArmMoveCommand(float x, float y) {
  return "SETM ABSPOS=" + text::plainSingle(x) + "," + text::plainSingle(y);
}

std::string ArmHeightCommand(int currentHeight, int newHeight) {
  if (newHeight > currentHeight) {
    return "SET DOWN=" + text::plain(static_cast<double>(newHeight - currentHeight));
  }
  if (newHeight < currentHeight) {
    return "SET UP=" + text::plain(static_cast<double>(currentHeight - newHeight));
  }
  return {};
}

bool ArmReplyHasOk(std::string_view reply) {
  return reply.find("OK") != std::string_view::npos;
}

bool ArmStatusIsReady(std::string_view reply) {
  const auto isLineEnd = [](char c) { return c == '\r' || c == '\n'; };
  while (!reply.empty() && isLineEnd(reply.front())) reply.remove_prefix(1);
  while (!reply.empty() && isLineEnd(reply.back())) reply.remove_suffix(1);
  constexpr std::string_view kReady = "ok: re";
  return reply.size() == kReady.size() &&
         std::equal(reply.begin(), reply.end(), kReady.begin(), [](char a, char b) {
           return std::tolower(static_cast<unsigned char>(a)) == b;
         });
}

ArmPoint ArmTargetFor(const TrayGeometry& tray, int tube, float offsetX, float offsetY) {
  const std::size_t index = static_cast<std::size_t>(std::clamp(tube, 0, kMaxTrayPosition));
  ArmPoint point{tray.positions[index].X + offsetX, tray.positions[index].Y + offsetY};
  if (point.x > kArmLimitX) point.x = kArmLimitX;
  return point;
}

}  // namespace zorvel
