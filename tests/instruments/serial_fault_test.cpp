// Every serial fault ends in a bounded wait: a Retry/Cancel box that names the instrument, its
// port and what it kept answering. The virtual time each fault takes to reach its box is
// recorded as a test property (seconds) for the fault table.
#include <gtest/gtest.h>

#include <functional>

#include "core/instruments/arm.h"
#include "core/instruments/fluorimeter_link.h"
#include "core/instruments/pump.h"
#include "core/instruments/pump_protocol.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/simulated_line.h"

namespace zorvel {
namespace {

// Answers every command the same way, each byte `byteS` after the one before; or, given a
// period, keeps sending the answer once a period, as a device busy with its work does.
class SamePeer final : public sim::LinePeer {
 public:
  SamePeer(std::string reply, double delayS, double byteS = 0.0, double periodS = 0.0)
      : reply_(std::move(reply)), delayS_(delayS), byteS_(byteS), periodS_(periodS) {}
  void onReceive(std::string_view, double arrivedS, sim::LineEnd& end) override {
    for (int k = 0; periodS_ > 0 && k < 1000; ++k)
      end.transmit(reply_, arrivedS + delayS_ + periodS_ * k);
    if (periodS_ > 0) return;
    if (byteS_ <= 0) {
      end.transmit(reply_, arrivedS + delayS_);
      return;
    }
    for (std::size_t k = 0; k < reply_.size(); ++k)
      end.transmit(reply_.substr(k, 1), arrivedS + delayS_ + byteS_ * static_cast<double>(k));
  }

 private:
  std::string reply_;
  double delayS_;
  double byteS_;
  double periodS_;
};

// The operator, with the virtual time of each box.
class TimedOperator final : public Operator {
 public:
  explicit TimedOperator(Clock& clock) : clock_(clock) {}
  int messageBox(const MessageBoxRequest& box) override {
    boxes.push_back({clock_.monotonicS(), box});
    return box.buttons == BoxButtons::RetryCancel ? answer::kCancel : answer::kOk;
  }
  std::string inputBox(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  std::string fileDialog(const FileDialogRequest&) override { return {}; }
  void beep() override {}
  void setBusy(bool) override {}
  void endProgram(int) override {}
  bool answersExhausted() const override { return exhausted; }

  // The first Retry/Cancel box: when it came and what it said.
  std::pair<double, std::string> bound() const {
    for (const auto& [atS, box] : boxes)
      if (box.buttons == BoxButtons::RetryCancel) return {atS, box.text};
    return {-1, ""};
  }
  std::vector<std::pair<double, MessageBoxRequest>> boxes;
  bool exhausted = false;

 private:
  Clock& clock_;
};

const std::string kOk = "0000\r\n";
std::string Record(const std::string& a, const std::string& b, const std::string& c,
                   const std::string& status = "0000") {
  return kOk + "\x7f" + a + "," + b + ",1.0," + c + "\r\n" + status + "\r\n";
}

struct FluorimeterFault {
  const char* name;
  std::string reply;
  double delayS;
  bool reading;  // "$RD 1.0" at 350/398, else "$SX 5.0"
  const char* said;
};

TEST(SerialFaults, EveryFluorimeterFaultReachesItsBoxAndGivesUp) {
  const std::string endless(20000, 'x');
  const FluorimeterFault faults[] = {
      {"refused 0002", "0002\r\n", 0.05, false, "refused \"$SX 5.0\" 5 times, answering \"0002\""},
      {"unknown status", "0001\r\n", 0.05, false, "answering \"0001\""},
      {"garbled status", "0@\x01x\r\n", 0.05, false, "answering \"0@\\x01x\""},
      {"wrong wavelength", Record("351.0", "398.0", "25123"), 1.0, true,
       "readings at other wavelengths than 350.0/398.0 nm, 5 times; the last was at "
       "\"351.0\"/\"398.0\""},
      {"intensity not a number", Record("350.0", "398.0", "1#7x3"), 1.0, true,
       "an intensity that is not a number, 5 times; the last was \"1#7x3\""},
      {"empty intensity", Record("350.0", "398.0", ""), 1.0, true,
       "an intensity that is not a number, 5 times; the last was \"\""},
      {"record status fails", Record("350.0", "398.0", "25123", "0013"), 1.0, true,
       "with the status \"0013\" instead of \"0000\", 5 times"},
      {"no record", kOk, 0.05, true,
       "accepted \"$RD 1.0\" but sent no whole reading record, 2 times (30 seconds of silence)"},
      {"endless reply", kOk + endless, 0.05, true, "\"xxxx"},
  };
  for (const FluorimeterFault& f : faults) {
    SCOPED_TRACE(f.name);
    VirtualClock clock;
    SamePeer peer(f.reply, f.delayS);
    sim::SimulatedLine line{clock, peer, "COM1 (/dev/ttyUSB0)"};
    line.open("9600,N,8,1");
    TimedOperator person(clock);
    LinkState links;
    FluorimeterLink link(line, clock, person, links, kLs50B.preference);
    const LinkFailure failure =
        f.reading ? link.TakeReading(350, 398, 1.0f, fluor::AcceptanceRule::WithinTolerance).failure
                  : link.IssueCommand("$SX 5.0", StatusReader::Command);
    EXPECT_EQ(LinkFailure::Abandoned, failure);
    const auto [atS, text] = person.bound();
    EXPECT_EQ(0u, text.find("The fluorimeter on COM1 (/dev/ttyUSB0) ")) << text;
    EXPECT_NE(std::string::npos, text.find(f.said)) << text;
    ::testing::Test::RecordProperty(std::string("seconds: ") + f.name, std::to_string(atS));
    ::testing::Test::RecordProperty(std::string("text: ") + f.name, text);
  }
}

TEST(SerialFaults, ASlowLineNeverMisframesAndNobodyToAnswerStopsAtOnce) {
  // 200 ms a byte: the LF after each CR is waited for, so the next reply starts clean.
  VirtualClock clock;
  SamePeer slow(Record("350.0", "398.0", "25123"), 1.0, 0.2);
  sim::SimulatedLine line{clock, slow, "COM1 (/dev/ttyUSB0)"};
  line.open("9600,N,8,1");
  TimedOperator person(clock);
  LinkState links;
  FluorimeterLink link(line, clock, person, links, kLs50B.preference);
  for (int k = 0; k < 2; ++k) {
    const Reading r = link.TakeReading(350, 398, 1.0f, fluor::AcceptanceRule::WithinTolerance);
    EXPECT_EQ(LinkFailure::None, r.failure);
    EXPECT_DOUBLE_EQ(25.123, r.intensity);
  }
  EXPECT_TRUE(person.boxes.empty());

  // An answer file used up: the first refusal ends the command, no box is asked again.
  SamePeer refusing("0003\r\n", 0.05);
  sim::SimulatedLine line2{clock, refusing, "COM1 (/dev/ttyUSB0)"};
  line2.open("9600,N,8,1");
  TimedOperator gone(clock);
  gone.exhausted = true;
  FluorimeterLink link2(line2, clock, gone, links, kLs50B.preference);
  EXPECT_EQ(LinkFailure::Abandoned, link2.IssueCommand("$SX 5.0", StatusReader::Command));
  EXPECT_EQ(1u, gone.boxes.size());
}

TEST(SerialFaults, ADilutorOrArmThatAnswersButIsNeverDoneIsBounded) {
  VirtualClock clock;
  SamePeer busyPump("\xff\x02\x30\x40\x03\x71", 0.002);
  sim::SimulatedLine pumpLine{clock, busyPump, "COM2 (/dev/ttyUSB1)"};
  TimedOperator person(clock);
  LinkState links;
  AutosamplerSettings settings;
  Pump pump(pumpLine, clock, person, links, settings);
  EXPECT_EQ(LinkFailure::Abandoned, pump.SendPumpCommand(kPumpAddress, "ZR"));
  auto [pumpS, pumpText] = person.bound();
  EXPECT_EQ(0u, pumpText.find("The dilutor on COM2 (/dev/ttyUSB1) has answered for 660 seconds "
                              "without reporting that it is done; its last answer was "
                              "\"\\xFF\\x020@\\x03q\"."))
      << pumpText;
  ::testing::Test::RecordProperty("seconds: dilutor never ready", std::to_string(pumpS));
  ::testing::Test::RecordProperty("text: dilutor never ready", pumpText);

  SamePeer busyArm("BUSY\r", 1.0, 0.0, 1.0);
  sim::SimulatedLine armLine{clock, busyArm, "COM3 (/dev/ttyUSB2)"};
  TimedOperator armPerson(clock);
  TrayGeometry tray;
  Arm arm(armLine, clock, armPerson, links, tray);
  const double startS = clock.monotonicS();
  EXPECT_EQ(LinkFailure::Abandoned, arm.SendArmCommand("RESET"));
  auto [armS, armText] = armPerson.bound();
  EXPECT_NE(std::string::npos, armText.find("The autosampler arm on COM3 (/dev/ttyUSB2) has "
                                            "answered for 120 seconds"))
      << armText;
  ::testing::Test::RecordProperty("seconds: arm never ready", std::to_string(armS - startS));
  ::testing::Test::RecordProperty("text: arm never ready", armText);
}

}  // namespace
}  // namespace zorvel
