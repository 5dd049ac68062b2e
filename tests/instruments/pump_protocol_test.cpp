#include "core/instruments/pump_protocol.h"

#include <gtest/gtest.h>

#include <string>

#include "support/bytes.h"

namespace zorvel {
namespace {

std::string bytes(std::initializer_list<int> values) {
  std::string out;
  for (int v : values) out += static_cast<char>(v);
  return out;
}

TEST(PumpFrames, SyncStxAddressSequenceTextEtxAndXorChecksum) {
  EXPECT_SAME_BYTES(bytes({255, 2, 49, 49, 90, 82, 3, 9}), PumpFrame(1, "ZR"));
  const std::string query = PumpQueryFrame(1);
  EXPECT_SAME_BYTES(bytes({255, 2, 49, 49, 81, 3, 80}), query);
  EXPECT_SAME_BYTES(bytes({255, 2, 51, 49, 3, 3}), PumpFrame(3, ""));
  EXPECT_SAME_BYTES(bytes({255, 2, 51, 49, 81, 3, 2 ^ 51 ^ 49 ^ 81 ^ 3}), PumpQueryFrame(3));
  // The sync byte stays out of the sum; everything from STX to ETX is in it.
  const std::string frame = PumpFrame(1, "IS10A 500R");
  EXPECT_EQ(PumpChecksum(frame.substr(1, frame.size() - 2)),
            static_cast<std::uint8_t>(frame.back()));
  EXPECT_EQ(PumpChecksum(frame.substr(1)), 0);
}

TEST(PumpFrames, ReadyIsTheByte96AnywhereInTheReply) {
  EXPECT_TRUE(PumpReplyShowsReady(bytes({1, 2, 96, 4, 5})));
  EXPECT_TRUE(PumpReplyShowsReady("`"));
  EXPECT_FALSE(PumpReplyShowsReady(bytes({255, 2, 48, 64, 3, 113})));
  EXPECT_FALSE(PumpReplyShowsReady(""));
}

TEST(PumpCommands, DispenseKeepsTheNumbersBlankAndFillDropsIt) {
  EXPECT_EQ(PumpDispenseCommand(1, 10, 0), "IS10A 0R");
  EXPECT_EQ(PumpDispenseCommand(1, 10, 500), "IS10A 500R");
  EXPECT_EQ(PumpDispenseCommand(2, 7, 45), "IS7D 45R");
  EXPECT_EQ(PumpDispenseCommand(2, 7, -45), "IS7D-45R");
  EXPECT_EQ(PumpDispenseCommand(3, 10, 500), "IS10");
  EXPECT_EQ(PumpDispenseCommand(0, 0, 500), "IS0");
  EXPECT_EQ(PumpFillCommand(10, 500), "IS10P500R");
  EXPECT_EQ(PumpFillCommand(40, -1), "IS40P-1R");
}

TEST(PumpCommands, FlushStepsAreTheWholePartOfVolumeTimesStepSize) {
  EXPECT_FLOAT_EQ(StepsPerMicrolitre(10), 0.3f);
  EXPECT_FLOAT_EQ(StepsPerMicrolitre(5), 0.6f);
  EXPECT_EQ(StepsPerMicrolitre(0), 0.0f);
  EXPECT_EQ(PumpFlushDrawCommand(18, 250, StepsPerMicrolitre(10)), "OS18P75R");
  EXPECT_EQ(PumpFlushDrawCommand(18, 250, StepsPerMicrolitre(5)), "OS18P150R");
  EXPECT_EQ(PumpFlushDrawCommand(3, 333, StepsPerMicrolitre(10)), "OS3P99R");
  EXPECT_EQ(PumpFlushDrawCommand(3, 10000, StepsPerMicrolitre(10)), "OS3P3000R");
  EXPECT_EQ(PumpFlushDrawCommand(3, 8000, 0.0f), "OS3P0R");
  EXPECT_EQ(PumpFlushEmptyCommand(10), "IS10A0R");
}

TEST(PumpCommands, ValvePortsOneToFourAndNothingElse) {
  EXPECT_EQ(ValvePortCommand(1), "Y2A1R");
  EXPECT_EQ(ValvePortCommand(4), "Y2A4R");
  EXPECT_EQ(ValvePortCommand(0), "");
  EXPECT_EQ(ValvePortCommand(5), "");
  EXPECT_EQ(ValvePortCommand(-1), "");
}

}  // namespace
}  // namespace zorvel
