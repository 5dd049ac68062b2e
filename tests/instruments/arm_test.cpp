#include "core/instruments/arm.h"

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/scripted_peer.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

class ArmConversation : public ::testing::Test {
 protected:
  ArmConversation() {
    tray.positions[0] = TrayPosition{5.0f, 5.0f, 0};
    tray.positions[1] = TrayPosition{150.0f, 87.5f, 1};
    tray.positions[2] = TrayPosition{295.0f, 40.0f, 2};
  }

  VirtualClock clock;
  sim::ScriptedPeer peer;
  sim::SimulatedLine line{clock, peer, "COM3 (sim)"};
  ScriptedOperator person;
  LinkState links;
  TrayGeometry tray;
  Arm arm{line, clock, person, links, tray};
};

TEST_F(ArmConversation, HeightsAreSentAsDifferencesAndRemembered) {
  links.CurrentArmHeight = 70;
  peer.on("SET DOWN=30\r", "OK\r", 0.6);
  peer.on("SET UP=70\r", "OK\r", 1.4);
  EXPECT_EQ(arm.SetArmHeight(100), LinkFailure::None);
  EXPECT_EQ(links.CurrentArmHeight, 100);
  EXPECT_EQ(arm.SetArmHeight(30), LinkFailure::None);
  EXPECT_EQ(arm.SetArmHeight(30), LinkFailure::None);
  EXPECT_SAME_BYTES("SET DOWN=30\rSET UP=70\r", peer.sent);
  EXPECT_EQ(links.CurrentArmHeight, 30);
  EXPECT_EQ(line.settings(), "9600,N,8,1");
  EXPECT_TRUE(person.messages().empty());
}

TEST_F(ArmConversation, MovesOnlyWhenTheTubeChangesAndResetsTheHeight) {
  // At start the arm counts as over tube 0, so a first move there sends nothing.
  EXPECT_EQ(arm.MoveArmToTube(0), LinkFailure::None);
  EXPECT_EQ(peer.sent, "");
  EXPECT_FLOAT_EQ(arm.placement().ArmX, 5.0f);

  peer.on("SETM ABSPOS=150,87.5\r", "OK\r", 1.5);
  peer.on("SET DOWN=40\r", "OK\r");
  peer.on("SETM ABSPOS=302,41\r", "OK\r", 1.5);
  EXPECT_EQ(arm.MoveArmToTube(1), LinkFailure::None);
  EXPECT_EQ(arm.SetArmHeight(40), LinkFailure::None);
  // The same tube again: nothing sent and the probe stays down.
  EXPECT_EQ(arm.MoveArmToTube(1), LinkFailure::None);
  EXPECT_EQ(links.CurrentArmHeight, 40);
  // 295 + 10 is past the arm's reach and is sent as 302.
  arm.placement().ArmOffsetX = 10.0f;
  arm.placement().ArmOffsetY = 1.0f;
  EXPECT_EQ(arm.MoveArmToTube(2), LinkFailure::None);
  EXPECT_SAME_BYTES("SETM ABSPOS=150,87.5\rSET DOWN=40\rSETM ABSPOS=302,41\r", peer.sent);
  EXPECT_EQ(links.CurrentArmTube, 2);
  EXPECT_EQ(links.CurrentArmHeight, 0);
  EXPECT_FLOAT_EQ(arm.placement().ArmX, 302.0f);
  EXPECT_FLOAT_EQ(arm.placement().ArmY, 41.0f);
}

TEST_F(ArmConversation, ResetSendsHomeAndTheNextMoveToTubeZeroIsSent) {
  links.CurrentArmHeight = 25;
  peer.on("RESET\r", "OK\r", 2.0);
  peer.on("SETM ABSPOS=5,5\r", "OK\r", 0.1);
  EXPECT_EQ(arm.MoveArmToTube(-1), LinkFailure::None);
  EXPECT_EQ(links.CurrentArmTube, -1);
  EXPECT_EQ(links.CurrentArmHeight, 0);
  EXPECT_EQ(arm.MoveArmToTube(0), LinkFailure::None);
  EXPECT_SAME_BYTES("RESET\rSETM ABSPOS=5,5\r", peer.sent);
  EXPECT_EQ(links.CurrentArmTube, 0);
}

TEST_F(ArmConversation, AReplyWithoutOkAsksForStatusOnceAndReadsUntilOk) {
  peer.on("SET DOWN=12\r", "BUSY\r", 0.01);
  // The arm answers the status question when it has finished: first a busy line, then OK.
  peer.on("Status\r", "MOVING\r", 0.01);
  peer.on("", "OK\r", 3.0);
  EXPECT_EQ(arm.SetArmHeight(12), LinkFailure::None);
  EXPECT_SAME_BYTES("SET DOWN=12\rStatus\r", peer.sent);
  EXPECT_EQ(links.CurrentArmHeight, 12);
  EXPECT_GT(clock.monotonicS(), 3.0);
}

TEST_F(ArmConversation, AnOkSplitAcrossCharactersIsStillSeen) {
  // The reply trickles in with pauses shorter than the reply gap.
  peer.on("SETM ABSPOS=150,87.5\r", "O", 1.0);
  peer.on("", "K\r", 1.02);
  EXPECT_EQ(arm.MoveArmToTube(1), LinkFailure::None);
  EXPECT_SAME_BYTES("SETM ABSPOS=150,87.5\r", peer.sent);
}

TEST_F(ArmConversation, SilenceForTheBoundAsksTheOperatorWhoMayWaitAgainOrCancel) {
  peer.on("SETM ABSPOS=150,87.5\r", "OK\r", 200.0);
  person.answerNext(answer::kRetry);
  EXPECT_EQ(arm.MoveArmToTube(1), LinkFailure::None);
  ASSERT_EQ(person.messages().size(), 1u);
  const MessageBoxRequest box = person.messages()[0];
  EXPECT_EQ(box.title, "ZORVEL COMMUNICATION ERROR");
  EXPECT_EQ(box.buttons, BoxButtons::RetryCancel);
  EXPECT_NE(box.text.find("autosampler arm"), std::string::npos);
  EXPECT_NE(box.text.find("COM3 (sim)"), std::string::npos);
  EXPECT_NE(box.text.find("120 seconds"), std::string::npos);
  // Retry waited without sending the move again.
  EXPECT_SAME_BYTES("SETM ABSPOS=150,87.5\r", peer.sent);

  person.answerNext(answer::kCancel);
  EXPECT_EQ(arm.MoveArmToTube(2), LinkFailure::Abandoned);
  EXPECT_EQ(person.messages().size(), 2u);
  EXPECT_NEAR(clock.monotonicS(), 200.0 + 120.0, 1.0);
  // Abandoned mid-move: the arm's place is unknown, so the same tube is sent again.
  EXPECT_EQ(links.CurrentArmTube, -1);
}

TEST_F(ArmConversation, ALostPortIsToldOnceAndEveryLaterCommandFailsAtOnce) {
  peer.on("SET DOWN=5\r", "OK\r");
  ASSERT_EQ(arm.SetArmHeight(5), LinkFailure::None);
  line.vanish();
  EXPECT_EQ(arm.SetArmHeight(20), LinkFailure::LostPort);
  EXPECT_EQ(links.CurrentArmHeight, 5);
  EXPECT_EQ(arm.MoveArmToTube(1), LinkFailure::LostPort);
  EXPECT_EQ(arm.MoveArmToTube(-1), LinkFailure::LostPort);
  ASSERT_EQ(person.messages().size(), 1u);
  EXPECT_EQ(person.messages()[0].title, "ZORVEL COMMUNICATION ERROR");
  EXPECT_NE(person.messages()[0].text.find("autosampler arm on COM3 (sim)"), std::string::npos);
  EXPECT_LT(clock.monotonicS(), 1.0);
}

TEST_F(ArmConversation, ALineLostWhileWaitingEndsTheWaitAtOnce) {
  // The device goes away after the command is out but before any answer.
  struct Vanisher : sim::LinePeer {
    sim::SimulatedLine* line = nullptr;
    void onReceive(std::string_view, double, sim::LineEnd&) override { line->vanish(); }
  };
  Vanisher vanisher;
  sim::SimulatedLine dying(clock, vanisher, "COM4 (sim)");
  vanisher.line = &dying;
  Arm other(dying, clock, person, links, tray);
  EXPECT_EQ(other.MoveArmToTube(-1), LinkFailure::LostPort);
  ASSERT_EQ(person.messages().size(), 1u);
  EXPECT_NE(person.messages()[0].text.find("COM4 (sim)"), std::string::npos);
  EXPECT_LT(clock.monotonicS(), 1.0);
}

}  // namespace
}  // namespace zorvel
