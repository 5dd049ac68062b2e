#include "core/instruments/fluorimeter_link.h"

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/scripted_peer.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using fluor::AcceptanceRule;

constexpr const char* kOk = "0000\r\n";

class FluorimeterLinkTest : public ::testing::Test {
 protected:
  explicit FluorimeterLinkTest(int model = kLs50B.preference)
      : link(line, clock, person, links, model) {
    line.open("9600,N,8,1");
  }

  std::vector<std::string> texts() const {
    std::vector<std::string> out;
    for (const auto& box : person.messages()) out.push_back(box.text);
    return out;
  }

  VirtualClock clock;
  sim::ScriptedPeer peer;
  sim::SimulatedLine line{clock, peer, "COM1 (/dev/ttyUSB0)"};
  ScriptedOperator person;
  LinkState links;
  FluorimeterLink link;
};

class Ls50LinkTest : public FluorimeterLinkTest {
 protected:
  Ls50LinkTest() : FluorimeterLinkTest(kLs50.preference) {}
};

TEST_F(FluorimeterLinkTest, InterimStatusIsFollowedWithoutResending) {
  peer.on("$RE 0\r", "0110\r\n", 0.05);
  peer.on("", kOk, 6.0);
  std::string shown;
  link.setStatusText([&](const std::string& text) { shown = text; });
  EXPECT_EQ(LinkFailure::None,
            link.IssueCommand("$RE 0", StatusReader::Command, "Set Free Run Mode"));
  EXPECT_SAME_BYTES("$RE 0\r", peer.sent);
  EXPECT_EQ("Set Free Run Mode", shown);
  EXPECT_EQ(0, links.LinkTimeoutCount);
  EXPECT_TRUE(person.shown.empty());
}

TEST_F(FluorimeterLinkTest, StatusLimitRunsFromTheRoundedStartSecond) {
  // Nothing answers: each wait ends at the rounded start plus 10 seconds.
  const double sentAt[] = {100.4, 100.6, 100.5, 101.5};
  const double timedOutAt[] = {110.0, 111.0, 110.0, 112.0};
  for (int i = 0; i < 4; ++i) {
    links.LinkTimeoutCount = 0;
    clock.setSecondsSinceMidnight(sentAt[i]);
    EXPECT_EQ(LinkFailure::ReplyTimeout, link.AwaitCommandStatus());
    EXPECT_NEAR(timedOutAt[i], clock.secondsSinceMidnight(), 1e-9) << "sent at " << sentAt[i];
  }
  // A status complete at 110.3 s is too late for 100.4 s but in time for 100.6 s.
  links.LinkTimeoutCount = 0;
  clock.setSecondsSinceMidnight(100.4);
  peer.on("$PH 0\r", kOk, 9.88);
  peer.on("$PH 0\r", kOk, 0.1);
  EXPECT_EQ(LinkFailure::None, link.IssueCommand("$PH 0", StatusReader::Command));
  EXPECT_SAME_BYTES("$PH 0\r$PH 0\r", peer.sent);
  EXPECT_EQ(1, links.LinkTimeoutCount);

  links.LinkTimeoutCount = 0;
  line.discardInput();
  clock.advanceBy(5.0);
  clock.setSecondsSinceMidnight(100.6);
  peer.sent.clear();
  peer.on("$PH 0\r", kOk, 9.88);
  EXPECT_EQ(LinkFailure::None, link.IssueCommand("$PH 0", StatusReader::Command));
  EXPECT_SAME_BYTES("$PH 0\r", peer.sent);
  EXPECT_EQ(0, links.LinkTimeoutCount);
}

TEST_F(FluorimeterLinkTest, SecondTimeOutHaltsAndEverythingAfterFails) {
  peer.on("$ES 0\r", "");  // the first try goes unanswered
  peer.on("$ES 0\r", kOk);
  EXPECT_EQ(LinkFailure::None, link.IssueCommand("$ES 0", StatusReader::Command));
  EXPECT_EQ(1, links.LinkTimeoutCount);
  EXPECT_FALSE(person.ended);

  // The counter is not cleared between set-up commands: the next time-out halts.
  peer.sent.clear();
  EXPECT_EQ(LinkFailure::Halted, link.IssueCommand("$FW 2", StatusReader::Command));
  EXPECT_SAME_BYTES("$FW 2\r", peer.sent);
  ASSERT_EQ(1u, person.messages().size());
  EXPECT_EQ(
      "Communication with the fluorimeter has failed.  Program halted.\rPort: COM1 "
      "(/dev/ttyUSB0)",
      person.messages()[0].text);
  EXPECT_EQ("ZORVEL COMMUNICATION ERROR", person.messages()[0].title);
  EXPECT_EQ(BoxIcon::Exclamation, person.messages()[0].icon);
  EXPECT_TRUE(person.ended);

  EXPECT_EQ(LinkFailure::Halted, link.IssueCommand("$PV 820", StatusReader::Command));
  EXPECT_EQ(LinkFailure::Halted,
            link.TakeReading(350, 397.5, 1.0f, AcceptanceRule::WithinTolerance).failure);
  EXPECT_EQ(LinkFailure::Halted, link.ReadNumberToken().failure);
  EXPECT_SAME_BYTES("$FW 2\r", peer.sent);
  EXPECT_EQ(1u, person.messages().size());
}

TEST_F(FluorimeterLinkTest, ErrorStatusesAreShownOrNotAndResent) {
  peer.on("$SX 5.0\r", "0002\r\n");
  peer.on("$SX 5.0\r", "0001\r\n");
  peer.on("$SX 5.0\r", "0003\r\n");
  peer.on("$SX 5.0\r", kOk);
  EXPECT_EQ(LinkFailure::None, link.IssueCommand("$SX 5.0", StatusReader::Command));
  EXPECT_SAME_BYTES("$SX 5.0\r$SX 5.0\r$SX 5.0\r$SX 5.0\r", peer.sent);
  ASSERT_EQ(std::vector<std::string>{"INVALID PARAMETER"}, texts());
  EXPECT_EQ("ZORVEL LS50 ERROR", person.messages()[0].title);

  // The water cell tells "0002" and still resends; its status is read whole.
  peer.on("$FW 2\r", "0002\r\n");
  peer.on("$FW 2\r", kOk);
  EXPECT_EQ(LinkFailure::None, link.IssueCommand("$FW 2", StatusReader::Water));
  EXPECT_EQ("UNRECOGNIZED COMMAND", texts().back());
  EXPECT_EQ(0, links.LinkTimeoutCount);
}

TEST_F(FluorimeterLinkTest, Ls50BRecordHasAnExtraFieldAndJunkBeforeTheDelete) {
  peer.on("$RD 1.0\r", std::string(kOk) +
                           "\r\n%junk\x7f"
                           "350.0,397.5,1.0,25123\r\n0000\r\n");
  const Reading r = link.TakeReading(350.0, 397.5, 1.0f, AcceptanceRule::WithinTolerance);
  EXPECT_EQ(LinkFailure::None, r.failure);
  EXPECT_DOUBLE_EQ(25.123, r.intensity);
  EXPECT_EQ(0u, line.charactersWaiting());
}

TEST_F(Ls50LinkTest, Ls50RecordHasTwoFieldsBeforeTheIntensity) {
  peer.on("$RD 0.5\r",
          std::string(kOk) +
              "\x7f"
              "440.0,470.0,812345\r\n0000\r\n",
          0.0);
  const Reading r = link.TakeReading(440.0, 470.0, 0.5f, AcceptanceRule::WithinTolerance);
  EXPECT_EQ(LinkFailure::None, r.failure);
  EXPECT_DOUBLE_EQ(812.345, r.intensity);
}

TEST_F(FluorimeterLinkTest, RunRuleAcceptsWhatTheExactRuleReadsAgain) {
  const std::string off = std::string(kOk) +
                          "\x7f"
                          "350.1,398.0,1.0,5000\r\n0000\r\n";
  const std::string on = std::string(kOk) +
                         "\x7f"
                         "350.0,398.0,1.0,6000\r\n0000\r\n";
  peer.on("$RD 1.0\r", off);
  EXPECT_DOUBLE_EQ(5.0,
                   link.TakeReading(350, 398, 1.0f, AcceptanceRule::WithinTolerance).intensity);
  EXPECT_SAME_BYTES("$RD 1.0\r", peer.sent);

  peer.sent.clear();
  peer.on("$RD 1.0\r", off);
  peer.on("$RD 1.0\r", on);
  EXPECT_DOUBLE_EQ(6.0, link.TakeReading(350, 398, 1.0f, AcceptanceRule::Exact).intensity);
  EXPECT_SAME_BYTES("$RD 1.0\r$RD 1.0\r", peer.sent);
  EXPECT_TRUE(person.shown.empty());
}

TEST_F(FluorimeterLinkTest, RecordWithErrorStatusOrSilenceIsReadAgain) {
  peer.on("$RD 1.0\r", std::string(kOk) +
                           "\x7f"
                           "350.0,398.0,1.0,5000\r\n0013\r\n");
  peer.on("$RD 1.0\r", kOk);  // the record never comes
  peer.on("$RD 1.0\r", std::string(kOk) +
                           "\x7f"
                           "350.0,398.0,1.0,7000\r\n0000\r\n");
  const double before = clock.monotonicS();
  const Reading r = link.TakeReading(350, 398, 1.0f, AcceptanceRule::WithinTolerance);
  EXPECT_DOUBLE_EQ(7.0, r.intensity);
  EXPECT_SAME_BYTES("$RD 1.0\r$RD 1.0\r$RD 1.0\r", peer.sent);
  EXPECT_EQ(std::vector<std::string>{"<> 0000: 0013"}, texts());
  EXPECT_EQ("ZORVEL LS50 RETURN ERROR", person.messages()[0].title);
  EXPECT_GT(clock.monotonicS() - before, 30.0);
}

TEST_F(FluorimeterLinkTest, SilenceOfThirtySecondsLosesWhatHadArrived) {
  peer.on("$XX\r", "abc");
  peer.on("", "def", 25.0);
  peer.on("", "g,", 54.0);
  line.write("$XX\r");
  // Bursts 25 s apart keep the reader going; then 29 s of silence still does.
  EXPECT_EQ("abcdefg", link.ReadToTerminator(',').text);

  peer.on("$YY\r", "partial");
  peer.on("", "late,", 31.0);
  line.write("$YY\r");
  const double before = clock.monotonicS();
  const TerminatedText t = link.ReadToTerminator(',');
  EXPECT_EQ("Bad**", t.text);
  EXPECT_EQ(LinkFailure::ReadTimeout, t.failure);
  EXPECT_NEAR(30.0, clock.monotonicS() - before, 0.05);
  // What follows starts afresh: the earlier characters are gone.
  EXPECT_EQ("late", link.ReadToTerminator(',').text);
}

TEST_F(FluorimeterLinkTest, StatusRecordAndTimeDriveHeaderAndNumbers) {
  peer.on("$SC 1\r",
          "0110\r\n0000\r\n~\x7f"
          "1,2,3,4,5,6,7,8,9\r\n0003\r\n");
  peer.on("$SC 1\r",
          "0000\r\n\x7f"
          "1,2,3,4,5,6,7,8,9\r\n0000\r\n12.5,-3,x7\r");
  ASSERT_EQ(LinkFailure::None, link.IssueCommand("$SC 1", StatusReader::Scan));
  EXPECT_EQ(LinkFailure::DeviceFault, link.ReadStatusRecord().failure);
  ASSERT_EQ(LinkFailure::None, link.IssueCommand("$SC 1", StatusReader::Scan));
  const StatusRecord record = link.ReadStatusRecord();
  EXPECT_EQ(LinkFailure::None, record.failure);
  EXPECT_EQ("1", record.fields[0]);
  EXPECT_EQ("9", record.fields[8]);
  EXPECT_EQ("12.5", link.ReadNumberToken().text);
  EXPECT_EQ("-3", link.ReadNumberToken().text);
  EXPECT_EQ("", link.ReadNumberToken().text);  // "x" ends an empty token
  EXPECT_EQ("7", link.ReadNumberToken().text);
  EXPECT_TRUE(person.shown.empty());

  // A header arriving with pauses still ends at its closing zeros.
  peer.on("$TD 240\r",
          "0000\r\n\x7f"
          "V3.1,1,350.0,397.5,480.0,5.0,5.0,240,0.50\r\n00");
  peer.on("", "00123,", 2.0);
  ASSERT_EQ(LinkFailure::None, link.IssueCommand("$TD 240", StatusReader::Water));
  const TimeDriveHeaderReply header = link.ReadTimeDriveHeader();
  EXPECT_EQ("V3.1", header.fields[0]);
  EXPECT_EQ("0.50", header.fields[8]);
  EXPECT_EQ("123", link.ReadNumberToken().text);
}

TEST_F(FluorimeterLinkTest, LongSilenceAsksRetryOrCancel) {
  peer.on("$SC 1\r", kOk, 200.0);
  person.answerNext(answer::kRetry);
  EXPECT_EQ(LinkFailure::None, link.IssueCommand("$SC 1", StatusReader::Scan));
  ASSERT_EQ(1u, person.messages().size());
  const MessageBoxRequest box = person.messages()[0];
  EXPECT_NE(std::string::npos, box.text.find("fluorimeter"));
  EXPECT_NE(std::string::npos, box.text.find("COM1 (/dev/ttyUSB0)"));
  EXPECT_EQ(BoxButtons::RetryCancel, box.buttons);

  person.answerNext(answer::kRetry);
  person.answerNext(answer::kCancel);
  const double before = clock.monotonicS();
  EXPECT_EQ(LinkFailure::Abandoned, link.ReadNumberToken().failure);
  EXPECT_NEAR(240.0, clock.monotonicS() - before, 1e-6);
  EXPECT_EQ(3u, person.messages().size());
}

TEST_F(FluorimeterLinkTest, LostPortIsToldOnceAndNothingSpins) {
  line.vanish();
  EXPECT_EQ(LinkFailure::LostPort, link.IssueCommand("$RE 0", StatusReader::Command));
  EXPECT_EQ(LinkFailure::LostPort,
            link.TakeReading(350, 397.5, 1.0f, AcceptanceRule::WithinTolerance).failure);
  EXPECT_EQ(LinkFailure::LostPort, link.ReadTimeDriveHeader().failure);
  EXPECT_EQ(LinkFailure::LostPort, link.OpenFluorimeterPort());
  ASSERT_EQ(1u, person.messages().size());
  EXPECT_EQ("ZORVEL COMMUNICATION ERROR", person.messages()[0].title);
  EXPECT_NE(std::string::npos, person.messages()[0].text.find("COM1 (/dev/ttyUSB0)"));
  EXPECT_EQ(0.0, clock.monotonicS());
  EXPECT_FALSE(person.ended);
}

// The adapter is pulled while the program waits for an answer.
class VanishingPeer final : public sim::LinePeer {
 public:
  void onReceive(std::string_view, double, sim::LineEnd&) override { line->vanish(); }
  sim::SimulatedLine* line = nullptr;
};

TEST(FluorimeterLinkLost, PortVanishingMidCommandEndsTheWaitAtOnce) {
  VirtualClock clock;
  VanishingPeer peer;
  sim::SimulatedLine line(clock, peer, "COM2 (/dev/ttyUSB1)");
  peer.line = &line;
  line.open("9600,N,8,1");
  ScriptedOperator person;
  LinkState links;
  FluorimeterLink link(line, clock, person, links, kLs50B.preference);
  EXPECT_EQ(LinkFailure::LostPort, link.IssueCommand("$SC 1", StatusReader::Scan));
  EXPECT_EQ(LinkFailure::LostPort, link.IssueCommand("$RE 0", StatusReader::Command));
  EXPECT_EQ(1u, person.messages().size());
  EXPECT_EQ(0, links.LinkTimeoutCount);
  EXPECT_EQ(0.0, clock.monotonicS());
}

TEST_F(FluorimeterLinkTest, OpeningDiscardsStaleInputAndScansGetALargeBuffer) {
  peer.on("$XX\r", "stale bytes");
  line.write("$XX\r");
  clock.advanceBy(1.0);
  EXPECT_EQ(LinkFailure::None, link.OpenFluorimeterPort());
  EXPECT_EQ(0u, line.charactersWaiting());
  EXPECT_EQ(LinkFailure::None, link.PrepareScanBuffer());
  EXPECT_EQ(4096u, line.inputBufferSize());
  EXPECT_TRUE(line.isOpen());
  EXPECT_EQ("9600,N,8,1", line.settings());
}

}  // namespace
}  // namespace zorvel
