#include "core/instruments/pump_reply_ledger.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace {

const std::string kBusy = "\xff\x02\x30\x40\x03\x71";
const std::string kReady = "\xff\x02\x30\x60\x03\x51";

TEST(PumpReplyLedger, ABurstIsCutIntoAnswersAndAPieceTheLineFellQuietOnIsOneOfItsOwn) {
  EXPECT_TRUE(PumpReplyLedger::endsWhole(kBusy + kReady));
  EXPECT_FALSE(PumpReplyLedger::endsWhole(kBusy + kReady.substr(0, 2)));
  EXPECT_FALSE(PumpReplyLedger::endsWhole("ab`"));
  PumpReplyLedger ledger;
  EXPECT_EQ(ledger.take(kBusy + kReady), (std::vector<std::string>{kBusy, kReady}));
  // A device that frames no answers: what came before the line fell quiet is one answer.
  EXPECT_EQ(ledger.take("ab`de"), std::vector<std::string>{"ab`de"});
}

TEST(PumpReplyLedger, AnswersToFramesBeforeACommandArePassedOverUntilOverdue) {
  PumpReplyLedger ledger;
  ledger.frameSent(10.0);
  ledger.frameSent(10.01);
  ledger.take(kBusy);
  // One question is still on its way when the next command goes.
  ledger.beginCommand(10.02);
  ledger.frameSent(10.02);
  EXPECT_TRUE(ledger.take(kReady).empty());
  EXPECT_EQ(ledger.take(kBusy), std::vector<std::string>{kBusy});
  // What never came is written off once it is overdue.
  ledger.frameSent(20.0);
  ledger.beginCommand(20.0 + PumpReplyLedger::kAnswerWithinS);
  EXPECT_EQ(ledger.take(kReady), std::vector<std::string>{kReady});
  // The input passed over before a command settles the answers it holds; the rest of a piece
  // passed over still answers an earlier frame.
  ledger.frameSent(30.0);
  ledger.frameSent(30.0);
  ledger.passOver(kBusy + kBusy.substr(0, 3));
  ledger.beginCommand(30.01);
  EXPECT_TRUE(ledger.take(kBusy.substr(3)).empty());
  EXPECT_EQ(ledger.take(kReady), std::vector<std::string>{kReady});
}

}  // namespace
}  // namespace zorvel
