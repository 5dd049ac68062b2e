#include "ui/platform/line_factory.h"

#include <gtest/gtest.h>

#include "core/instruments/arm.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "support/bytes.h"

namespace zorvel::ui {
namespace {

TEST(LineFactory, RealDevicesComeFromThePortMapOrTheDefaults) {
  VirtualClock clock;
  sim::SimRig rig;
  const PortMap ports = BuildPortMap({"COM2=/dev/ttyUSB0"}, "");
  auto arm = MakeInstrumentLine({InstrumentKind::Arm, 2, &ports, ""}, clock, rig);
  ASSERT_NE(arm, nullptr);
  EXPECT_EQ(arm->describe(), "COM2 (/dev/ttyUSB0)");
  auto pump = MakeInstrumentLine({InstrumentKind::Pump, 4, nullptr, ""}, clock, rig);
  ASSERT_NE(pump, nullptr);
  EXPECT_EQ(pump->describe(), "COM4 (/dev/ttyS3)");
}

TEST(LineFactory, TracesIntoTheInstrumentsFileWhenAsked) {
  VirtualClock clock;
  sim::SimRig rig;
  const std::string dir = testing::makeTempDir("linefactory");
  const PortMap ports = BuildPortMap({"COM3=/dev/zorvel-no-such-port"}, "");
  auto line = MakeInstrumentLine({InstrumentKind::Pump, 3, &ports, dir}, clock, rig);
  ASSERT_NE(line, nullptr);
  EXPECT_FALSE(line->open("9600,N,8,1"));
  EXPECT_SAME_BYTES("14:05:09.000 -- cannot open COM3 (/dev/zorvel-no-such-port) 9600,N,8,1\n",
                    testing::readFile(dir + "pump.trace"));
}

TEST(LineFactory, SimDeviceJoinsTheInstrumentsModelInTheSharedRig) {
  VirtualClock clock;
  sim::SimRig rig;
  const TrayGeometry tray;
  rig.setTray(&tray);
  const std::string dir = testing::makeTempDir("linefactory");
  const PortMap ports = BuildPortMap({"COM3=sim"}, "");
  auto line = MakeInstrumentLine({InstrumentKind::Arm, 3, &ports, dir}, clock, rig);
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->describe(), "COM3 (sim)");
  ScriptedOperator person;
  LinkState links;
  Arm arm(*line, clock, person, links, tray);
  ASSERT_EQ(arm.OpenArmPort(), LinkFailure::None);
  ASSERT_EQ(arm.SetArmHeight(40), LinkFailure::None);
  EXPECT_EQ(rig.arm.probeHeight(), 40.0f);
  EXPECT_EQ(rig.arm.commandsReceived(), 1);
  EXPECT_NE(testing::readFile(dir + "arm.trace").find("> SET DOWN=40<CR>"), std::string::npos);
  // The same port on the pump's model is a different instrument.
  auto pumpLine = MakeInstrumentLine({InstrumentKind::Pump, 3, &ports, ""}, clock, rig);
  ASSERT_NE(pumpLine, nullptr);
  ASSERT_TRUE(pumpLine->open("9600,N,8,1"));
  pumpLine->write("SET DOWN 10\r");
  clock.advanceBy(1.0);
  EXPECT_EQ(rig.arm.commandsReceived(), 1);
}

}  // namespace
}  // namespace zorvel::ui
