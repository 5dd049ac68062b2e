#include "sim/sim_rig.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/platform/virtual_clock.h"

namespace zorvel::sim {
namespace {

// Sends a reading command and returns everything the fluorimeter says within 5 seconds.
std::string readOnce(SimulatedLine& line, VirtualClock& clock) {
  line.write("$RD 1.0\r");
  clock.advanceBy(5.0);
  return line.read(line.charactersWaiting());
}

TEST(SimRig, EachInstrumentHasItsOwnModelAndAModelChangeKeepsLinesJoined) {
  VirtualClock clock;
  SimRig rig(2, 7);
  SimulatedLine fluorimeter(clock, *rig.peerFor(InstrumentKind::Fluorimeter));
  ASSERT_TRUE(fluorimeter.open("9600,N,8,1"));
  const std::string ls50b = readOnce(fluorimeter, clock);
  ASSERT_EQ(ls50b.rfind("0000\r\n", 0), 0u) << ls50b;
  EXPECT_EQ(std::count(ls50b.begin(), ls50b.end(), ','), 3);

  rig.setFluorimeterModel(1);
  const std::string ls50 = readOnce(fluorimeter, clock);
  EXPECT_EQ(std::count(ls50.begin(), ls50.end(), ','), 2) << ls50;
  EXPECT_EQ(rig.fluorimeter().commands(), std::vector<std::string>{"$RD 1.0"});

  EXPECT_EQ(rig.peerFor(InstrumentKind::Arm), &rig.arm);
  EXPECT_EQ(rig.peerFor(InstrumentKind::Pump), &rig.pump);
}

}  // namespace
}  // namespace zorvel::sim
