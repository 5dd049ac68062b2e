// Faults that only show over minutes of line time, played by an instrument on a pseudo-terminal
// and met through the real serial port. The instrument's server and the program's clock both run
// fifty times faster than the wall clock, so each case takes seconds.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <thread>
#include <vector>

#include "core/instruments/fluorimeter_link.h"
#include "core/instruments/fluorimeter_model.h"
#include "core/instruments/pump.h"
#include "core/instruments/pump_protocol.h"
#include "core/platform/real_clock.h"
#include "sim/pty_bridge.h"
#include "support/scaled_clock.h"
#include "ui/platform/qt_serial_line.h"

namespace zorvel::ui {
namespace {

constexpr double kSpeed = 50.0;

void ensureApplication() {
  if (QCoreApplication::instance() != nullptr) return;
  static int argc = 1;
  static char name[] = "test_ui";
  static char* argv[] = {name, nullptr};
  new QCoreApplication(argc, argv);  // lives as long as the test program
}

// The operator, with the line time of each box; Retry/Cancel boxes get the queued answers, then
// Cancel.
class TimedOperator final : public Operator {
 public:
  explicit TimedOperator(Clock& clock) : clock_(clock) {}
  int messageBox(const MessageBoxRequest& box) override {
    boxes.push_back({clock_.monotonicS(), box.text});
    if (box.buttons != BoxButtons::RetryCancel) return answer::kOk;
    if (retries == 0) return answer::kCancel;
    --retries;
    return answer::kRetry;
  }
  std::string inputBox(const std::string&, const std::string&, const std::string&) override {
    return {};
  }
  std::string fileDialog(const FileDialogRequest&) override { return {}; }
  void beep() override {}
  void setBusy(bool) override {}
  void endProgram(int) override {}

  std::vector<std::pair<double, std::string>> boxes;
  int retries = 0;

 private:
  Clock& clock_;
};

// An instrument on a pseudo-terminal, served from its own thread at kSpeed.
struct PtyInstrument {
  explicit PtyInstrument(sim::LinePeer& peer) : bridge(peer) {}
  void start() {
    ensureApplication();
    ASSERT_TRUE(bridge.open());
    server.add(bridge);
    serving = std::thread([this] { server.run(); });
  }
  ~PtyInstrument() {
    if (!serving.joinable()) return;
    server.requestStop();
    serving.join();
  }
  RealClock realClock;
  sim::PtyBridge bridge;
  sim::PtyServer server{realClock, kSpeed};
  std::thread serving;
};

// Accepts "$RD" and then sends one junk byte every 200 ms, never the DEL that starts a record.
class TricklingFluorimeter final : public sim::LinePeer {
 public:
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& end) override {
    if (bytes.find('\r') == std::string_view::npos) return;
    commandsAtS.push_back(arrivedS);
    end.transmit("0000\r\n", arrivedS + 0.01);
    for (int k = 1; k <= 10000; ++k) end.transmit("~", arrivedS + 0.2 * k);
  }
  std::vector<double> commandsAtS;
};

TEST(LineFaultsOnAPseudoTerminal, AReadingRecordThatNeverStartsIsBoundedByTheReadTime) {
  TricklingFluorimeter peer;
  PtyInstrument instrument(peer);
  instrument.start();
  testing::ScaledClock clock(kSpeed);
  QtSerialLine line(clock, "COM1", instrument.bridge.devicePath());
  TimedOperator person(clock);
  LinkState links;
  FluorimeterLink link(line, clock, person, links, kLs50B.preference);
  ASSERT_EQ(link.OpenFluorimeterPort(), LinkFailure::None);

  const double startS = clock.monotonicS();
  const Reading r = link.TakeReading(350, 398, 1.0f, fluor::AcceptanceRule::WithinTolerance);
  EXPECT_EQ(r.failure, LinkFailure::Abandoned);
  // "$RD 1.0" is sent again once its read time and 30 seconds have passed, not after 4,096 junk
  // bytes (820 seconds); the junk still arriving then is refused as a status, within bounds.
  ASSERT_GE(peer.commandsAtS.size(), 2u);
  const double resentAfterS = peer.commandsAtS[1] - peer.commandsAtS[0];
  EXPECT_GT(resentAfterS, 31.0);
  EXPECT_LT(resentAfterS, 33.0);
  ASSERT_EQ(person.boxes.size(), 1u);
  EXPECT_LT(person.boxes[0].first - startS, 100.0);
}

// A pump that answers every frame with the status 0x67 (ready, error 7: not initialised) until
// it has been sent its first command twice; after that it is ready.
class UninitialisedPump final : public sim::LinePeer {
 public:
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& end) override {
    received_ += bytes;
    // A frame is 255, STX, address, "1", the command, ETX and the checksum.
    for (;;) {
      const std::size_t etx = received_.find('\x03', 4);
      if (etx == std::string::npos || etx + 1 >= received_.size()) return;
      if (received_.compare(4, etx - 4, "Q") != 0) ++commands;
      received_.erase(0, etx + 2);
      const std::string body{'\x02', '0', commands < 2 ? '\x67' : '\x60', '\x03'};
      end.transmit('\xff' + body + static_cast<char>(PumpChecksum(body)), arrivedS + 0.002);
    }
  }
  int commands = 0;

 private:
  std::string received_;
};

TEST(LineFaultsOnAPseudoTerminal, APumpErrorIsNamedAtOnceAndRetrySendsTheCommandAgain) {
  UninitialisedPump peer;
  PtyInstrument instrument(peer);
  instrument.start();
  testing::ScaledClock clock(kSpeed);
  QtSerialLine line(clock, "COM4", instrument.bridge.devicePath());
  TimedOperator person(clock);
  LinkState links;
  const AutosamplerSettings settings;
  Pump pump(line, clock, person, links, settings);

  person.retries = 1;
  const double startS = clock.monotonicS();
  EXPECT_EQ(pump.SendPumpCommand(kPumpAddress, "IS10A 500R"), LinkFailure::None);
  ASSERT_EQ(person.boxes.size(), 1u);
  const auto& [atS, text] = person.boxes[0];
  EXPECT_LT(atS - startS, 5.0);  // not the 660 seconds a busy pump is granted
  EXPECT_EQ(text.rfind("The dilutor's pump on COM4 (" + instrument.bridge.devicePath() +
                           ") reports device not initialised (error 7) after the command "
                           "\"IS10A 500R\".",
                       0),
            0u)
      << text;
  EXPECT_EQ(peer.commands, 2);
}

}  // namespace
}  // namespace zorvel::ui
