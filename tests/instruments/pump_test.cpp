#include "core/instruments/pump.h"

#include <gtest/gtest.h>

#include "core/instruments/pump_protocol.h"
#include "core/instruments/pump_wait.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/scripted_peer.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

const std::string kBusy = "\xff\x02\x30\x40\x03\x71";
const std::string kReady = "\xff\x02\x30\x60\x03\x51";

class PumpConversation : public ::testing::Test {
 protected:
  PumpConversation() {
    settings.DispenseSpeed = 10;
    settings.FillSpeed = 12;
    settings.FillSpeedFlush = 18;
    settings.DispenseSpeedFlush = 10;
    settings.FlushTime = 250;
    links.StepsPerMicrolitre = StepsPerMicrolitre(10);
  }
  // One command that the device finishes on the second question. The command's own answer comes
  // while the first question is going out and sends the next at once, so a third is on its way
  // when the device is found ready; it is answered too.
  void scriptCommand(std::int16_t address, const std::string& text) {
    peer.on(PumpFrame(address, text), kBusy, 0.002);
    peer.on(PumpQueryFrame(address), kBusy, 0.002);
    peer.on(PumpQueryFrame(address), kReady, 0.002);
    peer.on(PumpQueryFrame(address), kReady, 0.002);
  }
  std::string expectedBytes(std::int16_t address, const std::string& text, int queries = 3) {
    std::string out = PumpFrame(address, text);
    for (int k = 0; k < queries; ++k) out += PumpQueryFrame(address);
    return out;
  }

  VirtualClock clock;
  sim::ScriptedPeer peer;
  sim::SimulatedLine line{clock, peer, "COM2 (sim)"};
  ScriptedOperator person;
  LinkState links;
  AutosamplerSettings settings;
  Pump pump{line, clock, person, links, settings};
};

TEST_F(PumpConversation, InitialiseOpensThenInitialisesPumpBeforeValveAndPollsTillReady) {
  scriptCommand(1, "ZR");
  scriptCommand(3, "Z4R");
  EXPECT_EQ(pump.InitialisePump(), LinkFailure::None);
  EXPECT_TRUE(pump.isOpen());
  EXPECT_EQ(line.settings(), "9600,N,8,1");
  EXPECT_SAME_BYTES(expectedBytes(1, "ZR") + expectedBytes(3, "Z4R"), peer.sent);
  EXPECT_FALSE(person.busy);
  EXPECT_TRUE(person.messages().empty());
  pump.ClosePumpPort();
  EXPECT_FALSE(line.isOpen());
}

TEST_F(PumpConversation, DispenseFillAndValveCommandsCarryTheSettings) {
  scriptCommand(1, "IS10");
  scriptCommand(1, "IS10D 45R");
  scriptCommand(1, "IS12P500R");
  scriptCommand(3, "");
  EXPECT_EQ(pump.PumpDispense(3, 99), LinkFailure::None);
  EXPECT_EQ(pump.PumpDispense(2, 45), LinkFailure::None);
  EXPECT_EQ(pump.PumpFill(500), LinkFailure::None);
  EXPECT_EQ(pump.SelectValvePort(5), LinkFailure::None);
  EXPECT_SAME_BYTES(expectedBytes(1, "IS10") + expectedBytes(1, "IS10D 45R") +
                        expectedBytes(1, "IS12P500R") + expectedBytes(3, ""),
                    peer.sent);
}

// A reply held back longer than the line's pace (as a USB adapter may hold characters) is still
// the answer to its own question, and so is the answer to the question still on its way when the
// device was found ready: read as the answer to the next command, that "ready" would send the
// command after it to a device still moving.
TEST_F(PumpConversation, AnAnswerThatComesLateIsReadAsTheAnswerToItsOwnQuestion) {
  peer.on(PumpFrame(1, "IS12P500R"), kBusy, 0.002);
  peer.on(PumpQueryFrame(1), kReady, 0.020);
  peer.on(PumpQueryFrame(1), kReady, 0.002);
  scriptCommand(3, "Y2A2R");
  EXPECT_EQ(pump.PumpFill(500), LinkFailure::None);
  EXPECT_EQ(pump.SelectValvePort(2), LinkFailure::None);
  EXPECT_SAME_BYTES(expectedBytes(1, "IS12P500R", 2) + expectedBytes(3, "Y2A2R"), peer.sent);
  EXPECT_TRUE(peer.done());
}

// Answers a device never gave (a dropped question, the command's own) are written off once they
// are overdue and the device is asked again: an unattended run is not held for the operator.
TEST_F(PumpConversation, AnswersThatNeverComeAreWrittenOffAndTheDeviceAskedAgain) {
  peer.on(PumpFrame(1, "IS12P500R"), kBusy, 0.002);
  peer.on(PumpQueryFrame(1), kReady, 0.002);
  peer.on(PumpFrame(3, "Y2A2R"), "", 0);
  peer.on(PumpQueryFrame(3), kBusy, 0.002);
  peer.on(PumpQueryFrame(3), kReady, 0.002);
  EXPECT_EQ(pump.PumpFill(500), LinkFailure::None);
  EXPECT_EQ(pump.SelectValvePort(2), LinkFailure::None);
  EXPECT_SAME_BYTES(expectedBytes(1, "IS12P500R", 2) + expectedBytes(3, "Y2A2R", 2), peer.sent);
  EXPECT_TRUE(person.messages().empty());
  EXPECT_LT(clock.monotonicS(), 1.0);
}

TEST_F(PumpConversation, FlushRinsesThroughPortThreeAfterASecondOnPortOne) {
  scriptCommand(3, "Y2A1R");
  scriptCommand(3, "Y2A3R");
  scriptCommand(1, "OS18P75R");
  scriptCommand(1, "IS10A0R");
  EXPECT_EQ(pump.PumpFlush(), LinkFailure::None);
  EXPECT_SAME_BYTES(expectedBytes(3, "Y2A1R") + expectedBytes(3, "Y2A3R") +
                        expectedBytes(1, "OS18P75R") + expectedBytes(1, "IS10A0R"),
                    peer.sent);
  EXPECT_GT(clock.monotonicS(), 1.0);
  EXPECT_LT(clock.monotonicS(), 1.5);
}

TEST_F(PumpConversation, AirDryBypassesThenHoldsTheAirPortForTheSeconds) {
  scriptCommand(1, "BR");
  scriptCommand(3, "Y2A2R");
  scriptCommand(3, "Y2A1R");
  EXPECT_EQ(pump.PumpAirDry(30), LinkFailure::None);
  EXPECT_SAME_BYTES(expectedBytes(1, "BR") + expectedBytes(3, "Y2A2R") + expectedBytes(3, "Y2A1R"),
                    peer.sent);
  EXPECT_GT(clock.monotonicS(), 30.0);
  EXPECT_LT(clock.monotonicS(), 30.5);
}

TEST_F(PumpConversation, ASilentDilutorIsAskedAgainOnRetryAndAbandonedOnCancel) {
  peer.on(PumpFrame(1, "ZR"), "", 0);
  peer.on(PumpQueryFrame(1), "", 0);
  peer.on(PumpQueryFrame(1), "", 0);
  peer.on(PumpQueryFrame(1), kReady, 0.002);
  person.answerNext(answer::kRetry);
  EXPECT_EQ(pump.SendPumpCommand(1, "ZR"), LinkFailure::None);
  ASSERT_EQ(person.messages().size(), 1u);
  EXPECT_EQ(person.messages()[0].title, "ZORVEL COMMUNICATION ERROR");
  EXPECT_EQ(person.messages()[0].buttons, BoxButtons::RetryCancel);
  EXPECT_NE(person.messages()[0].text.find("dilutor on COM2 (sim)"), std::string::npos);
  // Asked once more when the answer is overdue, then once more on Retry.
  EXPECT_SAME_BYTES(expectedBytes(1, "ZR", 3), peer.sent);

  person.answerNext(answer::kCancel);
  EXPECT_EQ(pump.SelectValvePort(2), LinkFailure::Abandoned);
  EXPECT_EQ(person.messages().size(), 2u);
  EXPECT_FALSE(person.busy);
  EXPECT_NEAR(clock.monotonicS(), 240.0, 1.0);
}

TEST_F(PumpConversation, AVanishedPortIsToldOnceAndStopsASequenceAtOnce) {
  scriptCommand(1, "ZR");
  peer.on(PumpFrame(3, "Z4R"), "", 0);
  ASSERT_EQ(pump.SendPumpCommand(1, "ZR"), LinkFailure::None);
  line.vanish();
  EXPECT_EQ(pump.PumpFlush(), LinkFailure::LostPort);
  EXPECT_EQ(pump.PumpAirDry(600), LinkFailure::LostPort);
  EXPECT_EQ(pump.InitialisePump(), LinkFailure::LostPort);
  ASSERT_EQ(person.messages().size(), 1u);
  EXPECT_NE(person.messages()[0].text.find("lost"), std::string::npos);
  EXPECT_LT(clock.monotonicS(), 1.0);
  EXPECT_FALSE(person.busy);
}

TEST(PumpWait, LateWaitsFirstLetMidnightPass) {
  VirtualClock clock;
  clock.setSecondsSinceMidnight(86390);
  WaitSeconds(clock, 10);
  EXPECT_NEAR(clock.monotonicS(), 20.0, 0.01);
  EXPECT_NEAR(clock.secondsSinceMidnight(), 10.0, 0.01);

  // Ending at 23:59:56 exactly is still today.
  VirtualClock onTime;
  onTime.setSecondsSinceMidnight(86386);
  WaitSeconds(onTime, 10);
  EXPECT_NEAR(onTime.monotonicS(), 10.0, 0.01);

  // A long wait begun well before midnight takes its own length, never for ever.
  VirtualClock early;
  early.setSecondsSinceMidnight(70000);
  WaitSeconds(early, 20000);
  EXPECT_NEAR(early.monotonicS(), 20000.0, 0.01);

  VirtualClock none;
  WaitSeconds(none, 0);
  WaitSeconds(none, -5);
  EXPECT_EQ(none.monotonicS(), 0.0);
}

}  // namespace
}  // namespace zorvel
