#include "core/checks/watercell_presenter.h"

#include <gtest/gtest.h>

#include "core/files/paths.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "fake_check_views.h"
#include "sim/fluorimeter_sim.h"
#include "sim/scripted_peer.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::FakeWaterCellView;

constexpr const char* kOk = "0000\r\n";
const std::string kHeader = "\x7fR1,M2,350.0,397.5,S5.R5,X6,E7,240,0.50\r\n0000";

// A time drive's reply: its status, the header and 240 points of the given raw value.
std::string Drive(const std::string& rawValue) {
  std::string reply = kOk + kHeader;
  for (int k = 0; k < 240; ++k) reply += rawValue + ",";
  return reply;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

class WaterCellTest : public ::testing::Test {
 protected:
  WaterCellTest() {
    state.StartDirectory = dir;
    state.LogPath = dir + "ZORVEL.LOG";
  }
  void scriptCheck(const std::string& rawValue) {
    for (const char* c : {"$RE 0", "$SX 5.0", "$SM 5.0", "$FW 2", "$PV 820", "$GM 350.0,397.5",
                          "$TI 0.5", "$RT 0.0"}) {
      peer.on(std::string(c) + "\r", kOk);
    }
    peer.on("$TD 240\r", Drive(rawValue));
  }
  std::string msf() { return testing::readFile(dir + "ZORVEL.MSF"); }
  std::vector<std::string> logTexts() {
    std::vector<std::string> texts;
    for (const auto& entry : Split(testing::readFile(state.LogPath), '\n')) {
      if (!entry.empty()) texts.push_back(Split(entry, '\t')[0]);
    }
    return texts;
  }

  std::string dir = testing::makeTempDir("watercell");
  AppState state;
  VirtualClock clock;
  sim::ScriptedPeer peer;
  sim::SimulatedLine line{clock, peer};
  ScriptedOperator op;
  WaterCellResult last;
  FakeWaterCellView view;
  WaterCellPresenter presenter{state, op, clock, line, last, view};
};

TEST_F(WaterCellTest, FirstCheckCreatesTheLogIsAcceptedAndOkStoresItAgain) {
  presenter.opened();
  EXPECT_EQ("the Start button to start sampling.", view.lines.at(CheckArea::Messages, 3));
  EXPECT_EQ(WaterCellPresenter::ButtonsFor(WaterCellStage::WaitingForStart), view.buttons);
  scriptCheck("100000");
  presenter.start();

  EXPECT_SAME_BYTES(
      "$RE 0\r$SX 5.0\r$SM 5.0\r$FW 2\r$PV 820\r$GM 350.0,397.5\r$TI 0.5\r$RT 0.0\r$TD 240\r",
      peer.sent);
  EXPECT_TRUE(peer.done());
  EXPECT_FALSE(line.isOpen());
  EXPECT_EQ(0u, line.charactersWaiting());  // all 240 points were read
  EXPECT_EQ("Starting Time Drive", view.printed[view.printed.size() - 4]);
  EXPECT_EQ("Running 2 Minute Time Drive", view.lines.at(CheckArea::Messages, 1));
  EXPECT_EQ("100.000 +/- 0.000", view.lines.at(CheckArea::Status, 1));
  EXPECT_EQ("Intensity level is WITHIN the expected range (95.000 - 105.000).",
            view.lines.at(CheckArea::Status, 3));
  EXPECT_EQ(WaterCellStage::Within, presenter.stage());
  EXPECT_EQ(WaterCellPresenter::ButtonsFor(WaterCellStage::Within), view.buttons);
  EXPECT_TRUE(view.buttons.okCentred && !view.buttons.okIsCancel);
  EXPECT_FALSE(view.progressVisible);

  const auto created = Split(msf(), '\n');
  ASSERT_EQ(3u, created.size());  // header, record, and the empty rest after the last LF
  const auto columns = Split(created[1], '\t');
  ASSERT_EQ(13u, columns.size());
  EXPECT_EQ("100.000000", columns[0]);
  EXPECT_EQ("0.000000", columns[1]);
  EXPECT_EQ("03-07-2000", columns[2]);
  EXPECT_EQ((std::vector<std::string>{"R1", "M2", "350.0", "397.5", "X6", "E7", "S5.R5", "240",
                                      "0.50\r"}),
            std::vector<std::string>(columns.begin() + 4, columns.end()));

  presenter.ok();
  EXPECT_TRUE(view.closed);
  const auto stored = Split(msf(), '\n');
  ASSERT_EQ(4u, stored.size());
  EXPECT_EQ(Split(stored[1], '\t')[0], Split(stored[2], '\t')[0]);
  EXPECT_EQ((std::vector<std::string>{"Watercell run started", "Watercell run complete"}),
            logTexts());
  EXPECT_TRUE(op.shown.empty());
}

TEST_F(WaterCellTest, WithinTheHistoryIsStoredOutsideIsNotAndRerunRunsAgain) {
  testing::writeFile(dir + "ZORVEL.MSF", WaterCellHeaderLine() + "100.000000\t1\r\n");
  scriptCheck("94000");
  scriptCheck("104000");
  presenter.opened();
  presenter.start();
  EXPECT_EQ(WaterCellStage::Outside, presenter.stage());
  EXPECT_EQ("94.000 +/- 0.000", view.lines.at(CheckArea::Status, 1));
  EXPECT_EQ("Intensity level is OUTSIDE expected range (95.000 - 105.000). If water",
            view.lines.at(CheckArea::Status, 3));
  EXPECT_EQ("be restarted.  Please restart the spectrofluorimeter and run another water",
            view.lines.at(CheckArea::Status, 5));
  EXPECT_TRUE(view.buttons.rerun && view.buttons.ok && view.buttons.okIsCancel);
  EXPECT_FALSE(view.buttons.start || view.buttons.cancel);

  presenter.rerun();
  EXPECT_EQ(WaterCellStage::Within, presenter.stage());
  EXPECT_EQ("Intensity level is WITHIN the expected range (95.000 - 105.000).",
            view.lines.at(CheckArea::Status, 3));
  presenter.ok();
  EXPECT_EQ(3u, Split(msf(), '\n').size() - 1);
  EXPECT_EQ("104.000000", Split(Split(msf(), '\n')[2], '\t')[0]);
}

TEST_F(WaterCellTest, CancelWritesTheSessionsLastResultIntoTheProgramLog) {
  last.mean = 98.5;
  last.header[0] = "V3.1";
  presenter.opened();
  presenter.closeRequested();
  EXPECT_TRUE(view.closed);
  EXPECT_TRUE(peer.sent.empty());
  const auto lines = Split(testing::readFile(state.LogPath), '\n');
  ASSERT_EQ(5u, lines.size());
  EXPECT_EQ("Watercell out of limits.  Aborted", Split(lines[0], '\t')[0]);
  EXPECT_EQ(WaterCellHeaderLine(), lines[1] + "\n");
  EXPECT_EQ("98.500000\t0.000000", lines[2].substr(0, 18));
  EXPECT_EQ("V3.1", Split(lines[2], '\t')[4]);
  EXPECT_EQ("Watercell run complete", Split(lines[3], '\t')[0]);
  EXPECT_FALSE(FileExists(dir + "ZORVEL.MSF"));
}

TEST_F(WaterCellTest, HeaderOnlyLogTakesTheRunAsTheFirstAndGapsAreNotCounted) {
  testing::writeFile(dir + "ZORVEL.MSF", WaterCellHeaderLine());
  for (const char* c : {"$RE 0", "$SX 5.0", "$SM 5.0", "$FW 2", "$PV 820", "$GM 350.0,397.5",
                        "$TI 0.5", "$RT 0.0"}) {
    peer.on(std::string(c) + "\r", kOk);
  }
  std::string drive = kOk + kHeader + "-9999000,";
  for (int k = 0; k < 240; ++k) drive += "50000,";
  peer.on("$TD 240\r", drive);
  presenter.opened();
  presenter.start();
  EXPECT_EQ("50.000 +/- 0.000", view.lines.at(CheckArea::Status, 1));
  EXPECT_EQ(WaterCellStage::Within, presenter.stage());
  presenter.ok();
  EXPECT_EQ(3u, Split(msf(), '\n').size());
}

TEST_F(WaterCellTest, WaterCellStatusErrorsAreToldAndResent) {
  peer.on("$RE 0\r", "0002\r\n");
  scriptCheck("100000");
  presenter.opened();
  presenter.start();
  ASSERT_EQ(1u, op.messages().size());
  EXPECT_EQ("UNRECOGNIZED COMMAND", op.messages()[0].text);
  EXPECT_EQ("$RE 0\r$RE 0\r$SX 5.0\r", peer.sent.substr(0, 20));
  EXPECT_EQ(WaterCellStage::Within, presenter.stage());
}

// The simulated instrument with a water cell in the holder.
class WaterCellOnSimulatorTest : public WaterCellTest {
 protected:
  sim::Bench bench;
  sim::FluorimeterSim fluorimeter{bench, 2, 7};
  sim::SimulatedLine simLine{clock, fluorimeter};
  std::vector<int> progress;

  WaterCellStage runOnce() {
    FakeWaterCellView v;
    WaterCellPresenter p(state, op, clock, simLine, last, v);
    p.opened();
    p.start();
    const WaterCellStage stage = p.stage();
    progress = v.progress;
    p.ok();
    return stage;
  }
};

TEST_F(WaterCellOnSimulatorTest, FreshInstrumentPassesAndLostLampPowerFails) {
  EXPECT_EQ(WaterCellStage::Within, runOnce());
  EXPECT_EQ(9u, fluorimeter.commands().size());
  EXPECT_EQ(100, progress.back());  // 239 intervals of 0.5 s span more than 115 s
  EXPECT_GT(progress.size(), 50u);
  EXPECT_GT(last.mean, 1.0);  // water's Raman band, not darkness
  EXPECT_LT(last.standardDeviation, last.mean * 0.05);
  EXPECT_EQ(WaterCellStage::Within, runOnce());
  fluorimeter.setLampPower(0.5);
  EXPECT_EQ(WaterCellStage::Outside, runOnce());
  EXPECT_EQ(5u, Split(msf(), '\n').size());  // header, first (twice), second, empty rest
  EXPECT_TRUE(op.shown.empty());
}

TEST_F(WaterCellTest, ADarkMeanBecomesABaselineOnlyWhenTheOperatorSaysSo) {
  presenter.opened();
  scriptCheck("3");  // 0.003: the detector's dark noise, no water signal
  op.answerNext(answer::kNo);
  presenter.start();
  ASSERT_EQ(1u, op.messages().size());
  EXPECT_EQ(
      "The water cell read a mean of 0.003, at or below 1.000: that is no water signal. Check "
      "that the water cell is in the cuvette holder, the lamp is lit and the sample compartment "
      "is closed. Keep it as a water-cell baseline anyway?",
      op.messages()[0].text);
  EXPECT_EQ(WaterCellStage::Outside, presenter.stage());
  EXPECT_FALSE(FileExists(dir + "ZORVEL.MSF"));
  presenter.ok();
  EXPECT_FALSE(FileExists(dir + "ZORVEL.MSF"));
}

// Stop ends the check where the fluorimeter is idle: between two set-up commands, or once a
// started drive has streamed its last point. Nothing is stored, and the next check runs clean.
TEST_F(WaterCellOnSimulatorTest, StopEndsWhereTheFluorimeterIsIdleAndStoresNothing) {
  FakeWaterCellView v;
  WaterCellPresenter p(state, op, clock, simLine, last, v);
  p.opened();
  v.onStep = [&](const std::string& step) {
    if (step == "Set PMT Voltage") p.requestStop();
  };
  p.start();
  EXPECT_EQ(WaterCellStage::Stopped, p.stage());
  // The voltage under way when Stop came is set; nothing after it.
  EXPECT_EQ(5u, fluorimeter.commands().size());
  EXPECT_EQ("Stopped after setting 5 of 8; the drive was not started.",
            v.lines.at(CheckArea::Status, 1));

  v.onStep = nullptr;
  v.onProgress = [&](int percent) {
    if (percent == 20) p.requestStop();
  };
  p.rerun();
  EXPECT_EQ(WaterCellStage::Stopped, p.stage());
  EXPECT_EQ(14u, fluorimeter.commands().size());  // the set-up again and the drive; nothing after
  const std::string said = v.lines.at(CheckArea::Status, 1);
  EXPECT_EQ(0u, said.find("Stopped after ")) << said;
  EXPECT_NE(said.find(" of 240 points; the fluorimeter has ended its drive."), std::string::npos)
      << said;
  EXPECT_EQ("Stopped: nothing stored; the fluorimeter is idle, its port closed", v.step);
  EXPECT_FALSE(FileExists(dir + "ZORVEL.MSF"));
  p.ok();
  EXPECT_EQ(WaterCellStage::Within, runOnce());
  EXPECT_TRUE(op.shown.empty());
}

}  // namespace
}  // namespace zorvel
