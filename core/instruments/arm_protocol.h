#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/state/tray_geometry.h"

namespace zorvel {

// The autosampler arm's command texts and reply rules. Every command goes out followed by CR.

// The farthest X the arm may be sent to, whatever the tray and the offsets say.
inline constexpr float kArmLimitX = 302.0f;

// "SETM ABSPOS=150,87.5": each coordinate in its shortest single-precision text.
std::string ArmMoveCommand(float x, float y);
// "SET DOWN=30" when the new height is lower (a larger number), "SET UP=70" when higher;
// empty when the probe is already there.
std::string ArmHeightCommand(int currentHeight, int newHeight);

// A command is complete once a reply holds "OK", upper case, anywhere.
bool ArmReplyHasOk(std::string_view reply);
// The status poll also ends on a reply that is "ok: re" in any mix of cases (line-end
// characters around it do not count).
bool ArmStatusIsReady(std::string_view reply);

struct ArmPoint {
  float x = 0;
  float y = 0;
};

// Where the arm goes for a tray position (0 to 500): the tray's X and Y plus the calibration
// offsets, with X held to kArmLimitX. Y has no limit, X no lower one.
ArmPoint ArmTargetFor(const TrayGeometry& tray, int tube, float offsetX, float offsetY);

}  // namespace zorvel
