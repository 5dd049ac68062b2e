#include "sim/pump_sim.h"

#include <gtest/gtest.h>

#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/instruments/pump_protocol.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/arm_sim.h"
#include "sim/simulated_line.h"

namespace zorvel::sim {
namespace {

class DilutorOnBench : public ::testing::Test {
 protected:
  DilutorOnBench() {
    settings.FillSpeed = 12;
    settings.DispenseSpeed = 10;
    settings.FillSpeedFlush = 5;
    settings.DispenseSpeedFlush = 5;
    settings.FlushTime = 3000;
    links.StepsPerMicrolitre = StepsPerMicrolitre(10);
  }

  VirtualClock clock;
  Bench bench;
  PumpSim model{bench};
  SimulatedLine line{clock, model, "COM2 (sim)"};
  ScriptedOperator person;
  LinkState links;
  AutosamplerSettings settings;
  Pump pump{line, clock, person, links, settings};
};

TEST_F(DilutorOnBench, StrokesKeepThePumpBusyForTheirTime) {
  ASSERT_EQ(pump.InitialisePump(), LinkFailure::None);
  EXPECT_EQ(model.plungerSteps(), 0);
  EXPECT_EQ(model.valvePort(), 1);
  const double start = clock.monotonicS();
  ASSERT_EQ(pump.PumpFill(1300), LinkFailure::None);
  EXPECT_EQ(model.plungerSteps(), 1300);
  EXPECT_EQ(model.speedCode(), 12);
  // 1300 steps at speed 12, polled with 7-byte questions and 6-byte answers.
  EXPECT_NEAR(clock.monotonicS() - start, 1300 / PumpSim::StepsPerSecond(12), 0.05);
  ASSERT_EQ(pump.PumpDispense(2, 300), LinkFailure::None);
  EXPECT_EQ(model.plungerSteps(), 1000);
  ASSERT_EQ(pump.PumpDispense(1, 0), LinkFailure::None);
  EXPECT_EQ(model.plungerSteps(), 0);
  // The plunger stops at the ends of its stroke.
  ASSERT_EQ(pump.PumpFill(4000), LinkFailure::None);
  EXPECT_EQ(model.plungerSteps(), kPumpStrokeSteps);
  ASSERT_EQ(pump.SelectValvePort(4), LinkFailure::None);
  EXPECT_EQ(model.valvePort(), 4);
  EXPECT_TRUE(person.messages().empty());
}

TEST_F(DilutorOnBench, DamagedFramesAndStrangersAreIgnored) {
  ASSERT_TRUE(line.open("9600,N,8,1"));
  std::string damaged = PumpFrame(1, "IS10P500R");
  damaged.back() = static_cast<char>(damaged.back() ^ 1);
  line.write(damaged);
  line.write(PumpFrame(2, "ZR"));
  EXPECT_FALSE(line.waitForCharacters(1, clock.monotonicS() + 1.0));
  EXPECT_EQ(model.framesRejected(), 1);
  EXPECT_EQ(model.plungerSteps(), 0);
  // A good query after the noise is answered: ready, and never with a ready byte by accident.
  line.write(PumpQueryFrame(1));
  ASSERT_TRUE(line.waitForCharacters(6, clock.monotonicS() + 1.0));
  EXPECT_TRUE(PumpReplyShowsReady(line.read(6)));
  line.write(PumpFrame(1, "IS40P3000R"));
  ASSERT_TRUE(line.waitForCharacters(6, clock.monotonicS() + 1.0));
  EXPECT_FALSE(PumpReplyShowsReady(line.read(6)));
}

TEST_F(DilutorOnBench, ATextWithoutRunLetterIsHeldUntilR) {
  ASSERT_EQ(pump.PumpDispense(3, 0), LinkFailure::None);
  EXPECT_EQ(model.heldCommand(), "IS10");
  EXPECT_EQ(model.speedCode(), 10);  // the power-on speed: nothing ran
  ASSERT_EQ(pump.SendPumpCommand(1, "S3"), LinkFailure::None);
  ASSERT_EQ(pump.SendPumpCommand(1, "R"), LinkFailure::None);
  EXPECT_EQ(model.speedCode(), 3);
  EXPECT_EQ(model.heldCommand(), "");
}

TEST_F(DilutorOnBench, SilenceAndAVanishedPort) {
  model.setSilent(true);
  person.answerNext(answer::kRetry);
  person.answerNext(answer::kCancel);
  EXPECT_EQ(pump.InitialisePump(), LinkFailure::Abandoned);
  EXPECT_EQ(person.messages().size(), 2u);
  model.setSilent(false);
  line.vanish();
  EXPECT_EQ(pump.PumpFill(10), LinkFailure::LostPort);
  EXPECT_EQ(pump.PumpFill(10), LinkFailure::LostPort);
  EXPECT_EQ(person.messages().size(), 3u);
}

// The arm, the dilutor and the bench together: one tube's sample drawn, read and rinsed away.
class SampleCycle : public DilutorOnBench {
 protected:
  SampleCycle() {
    tray.positions[0] = TrayPosition{10.0f, 10.0f, 0};
    tray.positions[3] = TrayPosition{60.0f, 30.0f, 3};
    tray.positionCount = 4;
    Sample pure;
    pure.dyes[2] = 1.0;
    pure.label = "pure 3";
    bench.tubes[3] = pure;
    links.CurrentArmTube = -1;
  }

  TrayGeometry tray;
  ArmSim armModel{bench, &tray};
  SimulatedLine armLine{clock, armModel, "COM3 (sim)"};
  Arm arm{armLine, clock, person, links, tray};
};

TEST_F(SampleCycle, DrawingWithTheProbeDownTakesThatTubesSampleIntoTheFlowCell) {
  ASSERT_EQ(pump.InitialisePump(), LinkFailure::None);
  ASSERT_EQ(arm.MoveArmToTube(3), LinkFailure::None);
  // Drawing with the probe above the liquid takes air only.
  ASSERT_EQ(arm.SetArmHeight(70), LinkFailure::None);
  ASSERT_EQ(pump.PumpFill(30), LinkFailure::None);
  EXPECT_EQ(bench.syringeVolumeUl, 0.0);
  EXPECT_FALSE(bench.flowCellFilled);
  ASSERT_EQ(arm.SetArmHeight(105), LinkFailure::None);
  ASSERT_EQ(pump.PumpFill(150), LinkFailure::None);
  EXPECT_EQ(bench.syringe.label, "pure 3");
  EXPECT_DOUBLE_EQ(bench.syringe.dyes[2], 1.0);
  EXPECT_DOUBLE_EQ(bench.syringeVolumeUl, 500.0);
  EXPECT_TRUE(bench.flowCellFilled);

  ASSERT_EQ(arm.SetArmHeight(70), LinkFailure::None);
  ASSERT_EQ(pump.PumpFill(60), LinkFailure::None);
  ASSERT_EQ(pump.PumpDispense(2, 30), LinkFailure::None);
  EXPECT_EQ(bench.flowCell.label, "pure 3");
  EXPECT_DOUBLE_EQ(bench.syringeVolumeUl, 400.0);

  // Back into the tube, then the rinse: solvent through the flow cell, then air.
  ASSERT_EQ(pump.PumpDispense(1, 0), LinkFailure::None);
  EXPECT_EQ(bench.syringeVolumeUl, 0.0);
  ASSERT_EQ(arm.MoveArmToTube(0), LinkFailure::None);
  ASSERT_EQ(pump.PumpFlush(), LinkFailure::None);
  EXPECT_TRUE(bench.flowCellFilled);
  EXPECT_EQ(bench.flowCell.label, "solvent");
  EXPECT_TRUE(bench.flowCell.water);
  ASSERT_EQ(pump.PumpAirDry(5), LinkFailure::None);
  EXPECT_FALSE(bench.flowCellFilled);
  EXPECT_EQ(model.valvePort(), 1);
  EXPECT_EQ(bench.syringeVolumeUl, 0.0);
  EXPECT_TRUE(person.messages().empty());
}

}  // namespace
}  // namespace zorvel::sim
