#include "core/instruments/arm_protocol.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace {

TEST(ArmCommands, HeightChangeIsRelativeAndLargerMeansLower) {
  EXPECT_EQ(ArmHeightCommand(-5, 5), "SET DOWN=10");
  EXPECT_EQ(ArmHeightCommand(45, 45), "");
  // The difference of two extreme 16-bit heights does not wrap.
  EXPECT_EQ(ArmHeightCommand(-32768, 32767), "SET DOWN=65535");
}

TEST(ArmReplies, OkAnywhereInUpperCaseOrTheReadyStatus) {
  EXPECT_TRUE(ArmReplyHasOk("MOVE OK"));
  EXPECT_FALSE(ArmReplyHasOk("ok\r"));
  EXPECT_FALSE(ArmReplyHasOk("O"));
  EXPECT_TRUE(ArmStatusIsReady("Ok: Re\r\n"));
  EXPECT_FALSE(ArmStatusIsReady("ok: ready"));
  EXPECT_FALSE(ArmStatusIsReady(" ok: re"));
}

TEST(ArmTarget, OffsetsAddAndXIsHeldAt302Only) {
  TrayGeometry tray;
  tray.positions[4] = TrayPosition{300.0f, 190.0f, 4};
  tray.positions[5] = TrayPosition{-20.0f, 10.0f, 5};
  const ArmPoint clamped = ArmTargetFor(tray, 4, 10.0f, 2.5f);
  EXPECT_FLOAT_EQ(clamped.x, 302.0f);
  EXPECT_FLOAT_EQ(clamped.y, 192.5f);
  const ArmPoint low = ArmTargetFor(tray, 5, -1.0f, -20.0f);
  EXPECT_FLOAT_EQ(low.x, -21.0f);
  EXPECT_FLOAT_EQ(low.y, -10.0f);
  // A position past the table reads the last one rather than beyond it.
  tray.positions[500] = TrayPosition{1.0f, 2.0f, 500};
  EXPECT_FLOAT_EQ(ArmTargetFor(tray, 800, 0, 0).y, 2.0f);
}

}  // namespace
}  // namespace zorvel
