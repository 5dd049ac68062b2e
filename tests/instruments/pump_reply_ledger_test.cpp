#include "core/instruments/pump_reply_ledger.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace {

const std::string kBusy = "\xff\x02\x30\x40\x03\x71";
const std::string kReady = "\xff\x02\x30\x60\x03\x51";

TEST(PumpReplyLedger, AnswersArriveInPiecesAndAQuietLineEndsAnUnframedOne) {
  PumpReplyLedger ledger;
  EXPECT_TRUE(ledger.take(kBusy.substr(0, 4), false).empty());
  EXPECT_FALSE(ledger.endsWhole(""));
  EXPECT_TRUE(ledger.endsWhole(kBusy.substr(4)));
  const auto answers = ledger.take(kBusy.substr(4) + kReady.substr(0, 2), false);
  EXPECT_EQ(answers, std::vector<std::string>{kBusy});
  EXPECT_EQ(ledger.take(kReady.substr(2), false), std::vector<std::string>{kReady});
  // A device that frames no answers: what came before the line fell quiet is one answer.
  EXPECT_TRUE(ledger.take("ab`", false).empty());
  EXPECT_EQ(ledger.take("de", true), std::vector<std::string>{"ab`de"});
}

TEST(PumpReplyLedger, AnswersToFramesBeforeACommandArePassedOverUntilOverdue) {
  PumpReplyLedger ledger;
  ledger.frameSent(10.0);
  ledger.frameSent(10.01);
  ledger.take(kBusy, false);
  // One question is still on its way when the next command goes.
  ledger.beginCommand(10.02);
  ledger.frameSent(10.02);
  EXPECT_TRUE(ledger.take(kReady, false).empty());
  EXPECT_EQ(ledger.take(kBusy, false), std::vector<std::string>{kBusy});
  // What never came is written off once it is overdue.
  ledger.frameSent(20.0);
  ledger.beginCommand(20.0 + PumpReplyLedger::kAnswerWithinS);
  EXPECT_EQ(ledger.take(kReady, false), std::vector<std::string>{kReady});
  // The input passed over before a command settles the answers it holds; the rest of a piece
  // passed over still answers an earlier frame.
  ledger.frameSent(30.0);
  ledger.frameSent(30.0);
  ledger.passOver(kBusy + kBusy.substr(0, 3));
  ledger.beginCommand(30.01);
  EXPECT_TRUE(ledger.take(kBusy.substr(3), false).empty());
  EXPECT_EQ(ledger.take(kReady, false), std::vector<std::string>{kReady});
}

}  // namespace
}  // namespace zorvel
