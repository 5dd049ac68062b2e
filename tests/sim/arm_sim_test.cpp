#include "sim/arm_sim.h"

#include <gtest/gtest.h>

#include "core/instruments/arm.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/simulated_line.h"

namespace zorvel::sim {
namespace {

class ArmOverTray : public ::testing::Test {
 protected:
  ArmOverTray() {
    tray.positions[0] = TrayPosition{0.0f, 0.0f, 0};
    tray.positions[1] = TrayPosition{30.0f, 40.0f, 1};
    tray.positions[2] = TrayPosition{30.0f, 140.0f, 2};
    tray.positionCount = 3;
    tray.TubeCount = 2;
    links.CurrentArmTube = -1;
  }

  VirtualClock clock;
  Bench bench;
  TrayGeometry tray;
  ArmSim model{bench, &tray};
  SimulatedLine line{clock, model, "COM3 (sim)"};
  ScriptedOperator person;
  LinkState links;
  Arm arm{line, clock, person, links, tray};
};

TEST_F(ArmOverTray, MovesTakeTheirTravelTimeAndTellTheBenchWhereTheProbeIs) {
  ASSERT_EQ(arm.MoveArmToTube(1), LinkFailure::None);
  // 50 mm at 100 mm/s, plus the line and the reply.
  EXPECT_NEAR(clock.monotonicS(), 0.5, 0.1);
  EXPECT_EQ(bench.armTube, 1);
  ASSERT_EQ(arm.SetArmHeight(40), LinkFailure::None);
  EXPECT_FLOAT_EQ(bench.armHeightMm, 40.0f);
  EXPECT_NEAR(clock.monotonicS(), 0.5 + 0.8, 0.15);

  // The probe comes up before the arm travels 100 mm to the next tube.
  const double before = clock.monotonicS();
  ASSERT_EQ(arm.MoveArmToTube(2), LinkFailure::None);
  EXPECT_NEAR(clock.monotonicS() - before, 0.8 + 1.0, 0.15);
  EXPECT_EQ(bench.armTube, 2);
  EXPECT_FLOAT_EQ(bench.armHeightMm, 0.0f);
  EXPECT_EQ(links.CurrentArmHeight, 0);

  ASSERT_EQ(arm.MoveArmToTube(-1), LinkFailure::None);
  EXPECT_EQ(bench.armTube, 0);
  EXPECT_TRUE(person.messages().empty());
}

TEST_F(ArmOverTray, SmallCalibrationOffsetsStillStandOverTheTubeLargeOnesDoNot) {
  arm.placement().ArmOffsetX = 1.5f;
  ASSERT_EQ(arm.MoveArmToTube(1), LinkFailure::None);
  EXPECT_EQ(bench.armTube, 1);
  EXPECT_FLOAT_EQ(model.xMm(), 31.5f);
  arm.placement().ArmOffsetX = 6.0f;
  ASSERT_EQ(arm.MoveArmToTube(2), LinkFailure::None);
  EXPECT_EQ(bench.armTube, -1);
}

TEST_F(ArmOverTray, AnArmThatAnswersBusyIsDoneOnlyWhenItsMoveEnds) {
  model.answerWithoutOk(1);
  ASSERT_EQ(arm.MoveArmToTube(2), LinkFailure::None);
  // 30,140 is about 143 mm away: the status OK comes when the arm gets there.
  EXPECT_NEAR(clock.monotonicS(), 1.43, 0.1);
  EXPECT_EQ(model.commandsReceived(), 2);
}

TEST_F(ArmOverTray, SlowAndSilentArms) {
  model.setExtraDelayS(5.0);
  ASSERT_EQ(arm.MoveArmToTube(1), LinkFailure::None);
  EXPECT_NEAR(clock.monotonicS(), 5.5, 0.1);
  model.setSilent(true);
  person.answerNext(answer::kCancel);
  EXPECT_EQ(arm.SetArmHeight(10), LinkFailure::Abandoned);
  EXPECT_EQ(person.messages().size(), 1u);
  // The arm did lower its probe; only its answer was missing.
  EXPECT_FLOAT_EQ(bench.armHeightMm, 10.0f);
}

TEST_F(ArmOverTray, TheProbeStaysWithinItsTravelAndUnknownCommandsAreRefused) {
  ASSERT_EQ(arm.SetArmHeight(500), LinkFailure::None);
  EXPECT_FLOAT_EQ(model.probeHeight(), ArmSim::kDeepestProbe);
  ASSERT_EQ(arm.SendArmCommand("SET UP=1000"), LinkFailure::None);
  EXPECT_FLOAT_EQ(model.probeHeight(), 0.0f);
  ASSERT_EQ(arm.SendArmCommand("SETM ABSPOS=400,-3"), LinkFailure::None);
  EXPECT_FLOAT_EQ(model.xMm(), ArmSim::kLimitXMm);
  EXPECT_FLOAT_EQ(model.yMm(), 0.0f);
  // "ERR" lacks OK, so the arm is asked for its status, which is OK.
  const int before = model.commandsReceived();
  ASSERT_EQ(arm.SendArmCommand("JUMP"), LinkFailure::None);
  EXPECT_EQ(model.commandsReceived() - before, 2);
}

}  // namespace
}  // namespace zorvel::sim
