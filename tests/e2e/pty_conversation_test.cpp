// The three instruments' conversations over real serial devices: zorvel-sim serves its models
// on pseudo-terminals and the program's own protocol classes talk to them through QSerialPort.

#include <gtest/gtest.h>

#include <signal.h>

#include <QProcess>
#include <filesystem>
#include <map>
#include <sstream>

#include "core/app/port_map.h"
#include "core/app/preferences_file.h"
#include "core/instruments/arm.h"
#include "core/instruments/fluorimeter_link.h"
#include "core/instruments/pump.h"
#include "core/platform/real_clock.h"
#include "core/platform/scripted_operator.h"
#include "e2e/run_helpers.h"
#include "support/bytes.h"
#include "ui/platform/line_factory.h"

#ifdef ZORVEL_SIM_EXECUTABLE

namespace zorvel {
namespace {

// zorvel-sim running on a folder whose preferences put the fluorimeter (an LS-50) on COM2,
// the pump on COM4 and the arm on COM1.
class SimulatorProcess : public ::testing::Test {
 protected:
  void SetUp() override {
    e2e::ensureApplication();
    Preferences prefs;
    prefs.Fluorimeter = 1;
    prefs.FlComPort = 2;
    prefs.DilComPort = 4;
    prefs.AutoSampComPort = 1;
    prefs.BaseDirectoryPath = dir_;
    ASSERT_TRUE(WritePreferencesFile(dir_ + "ZORVEL.PRF", prefs));
    sim_.start(ZORVEL_SIM_EXECUTABLE,
               QStringList{"--dir", QString::fromStdString(dir_), "--speed", "20"} + extra_);
    ASSERT_TRUE(sim_.waitForStarted(5000));
    while (listing_.size() < 3 && sim_.waitForReadyRead(5000)) {
      while (sim_.canReadLine()) {
        std::istringstream line(sim_.readLine().toStdString());
        std::string com, kind, device;
        line >> com >> kind >> device;
        listing_[kind] = {com, device};
      }
    }
    ASSERT_EQ(listing_.size(), 3u) << sim_.readAllStandardError().toStdString();
    ports_ = LoadPortMap({}, dir_ + "ZORVEL.PRF");
  }
  void TearDown() override {
    if (sim_.state() == QProcess::NotRunning) return;
    sim_.terminate();
    sim_.waitForFinished(3000);
  }
  std::unique_ptr<SerialLine> lineFor(InstrumentKind kind, int com, std::string traceDir = "") {
    return ui::MakeInstrumentLine({kind, com, &ports_, std::move(traceDir)}, clock_, rig_);
  }

  std::string dir_ = testing::makeTempDir("e2e-pty");
  QStringList extra_;  // more arguments for zorvel-sim
  QProcess sim_;
  std::map<std::string, std::pair<std::string, std::string>> listing_;
  PortMap ports_;
  RealClock clock_;
  sim::SimRig rig_;  // not used: every port leads to zorvel-sim
  ScriptedOperator person_;
  LinkState links_;
};

TEST_F(SimulatorProcess, EachInstrumentHoldsAConversationThroughItsPseudoTerminal) {
  EXPECT_EQ(listing_["fluorimeter"].first, "COM2");
  EXPECT_EQ(listing_["pump"].first, "COM4");
  EXPECT_EQ(listing_["arm"].first, "COM1");
  EXPECT_EQ(ports_.deviceFor(2), listing_["fluorimeter"].second);
  EXPECT_EQ(ports_.deviceFor(4), listing_["pump"].second);
  EXPECT_EQ(ports_.deviceFor(1), listing_["arm"].second);

  auto flLine = lineFor(InstrumentKind::Fluorimeter, 2, dir_);
  FluorimeterLink fluorimeter(*flLine, clock_, person_, links_, 1);
  ASSERT_EQ(fluorimeter.OpenFluorimeterPort(), LinkFailure::None);
  EXPECT_EQ(fluorimeter.IssueCommand("$RE 0", StatusReader::Command), LinkFailure::None);
  EXPECT_EQ(fluorimeter.IssueCommand("$GM 350.0,397.5", StatusReader::Command), LinkFailure::None);
  const Reading water = fluorimeter.TakeReading(350.0, 397.5, 1.0f, fluor::AcceptanceRule::Exact);
  EXPECT_EQ(water.failure, LinkFailure::None);
  EXPECT_GT(water.intensity, 0.0);  // the water band
  flLine->close();
  const std::string trace = testing::readFile(dir_ + "fluorimeter.trace");
  EXPECT_NE(trace.find("> $RD 1.0<CR>"), std::string::npos) << trace;

  auto armLine = lineFor(InstrumentKind::Arm, 1);
  const TrayGeometry tray;
  Arm arm(*armLine, clock_, person_, links_, tray);
  ASSERT_EQ(arm.OpenArmPort(), LinkFailure::None);
  EXPECT_EQ(arm.SetArmHeight(40), LinkFailure::None);
  EXPECT_EQ(arm.MoveArmToTube(-1), LinkFailure::None);
  arm.CloseArmPort();

  auto pumpLine = lineFor(InstrumentKind::Pump, 4);
  const AutosamplerSettings settings;
  Pump pump(*pumpLine, clock_, person_, links_, settings);
  EXPECT_EQ(pump.InitialisePump(), LinkFailure::None);
  EXPECT_EQ(pump.SelectValvePort(2), LinkFailure::None);
  pump.ClosePumpPort();
  EXPECT_TRUE(person_.messages().empty());

  // Stopping the simulator puts the folder back as it was.
  sim_.terminate();
  ASSERT_TRUE(sim_.waitForFinished(3000));
  EXPECT_EQ(sim_.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(sim_.exitCode(), 0);
  EXPECT_FALSE(std::filesystem::exists(dir_ + "ZORVEL.PORTS"));
}

TEST_F(SimulatorProcess, AVanishedSimulatorIsReportedOnceAndNeverWaitedOn) {
  auto line = lineFor(InstrumentKind::Fluorimeter, 2);
  FluorimeterLink fluorimeter(*line, clock_, person_, links_, 1);
  ASSERT_EQ(fluorimeter.OpenFluorimeterPort(), LinkFailure::None);
  ASSERT_EQ(fluorimeter.IssueCommand("$RE 0", StatusReader::Command), LinkFailure::None);
  sim_.kill();
  ASSERT_TRUE(sim_.waitForFinished(3000));

  const double startS = clock_.monotonicS();
  EXPECT_EQ(fluorimeter.IssueCommand("$RE 0", StatusReader::Command), LinkFailure::LostPort);
  EXPECT_EQ(fluorimeter.IssueCommand("$PH 0", StatusReader::Command), LinkFailure::LostPort);
  EXPECT_LT(clock_.monotonicS() - startS, 1.0);
  EXPECT_TRUE(line->lost());
  ASSERT_EQ(person_.messages().size(), 1u);
  EXPECT_NE(person_.messages()[0].text.find("COM2 (" + listing_["fluorimeter"].second + ")"),
            std::string::npos)
      << person_.messages()[0].text;
}

// zorvel-sim with three cuvettes queued: none, some and twice as much of one dye.
class CuvetteQueue : public SimulatorProcess {
 protected:
  void SetUp() override {
    testing::writeFile(
        dir_ + "bench.txt",
        "cuvette blank:\ncuvette one: Yellow-Green=1\ncuvette two: Yellow-Green=2\n");
    extra_ = {"--bench", QString::fromStdString(dir_ + "bench.txt")};
    SimulatorProcess::SetUp();
  }
  // What zorvel-sim says after the operator's change of cuvette.
  std::string nextSaid() {
    while (!sim_.canReadLine() && sim_.waitForReadyRead(5000)) {
    }
    return sim_.readLine().trimmed().toStdString();
  }
  double read(FluorimeterLink& fluorimeter) {
    EXPECT_EQ(fluorimeter.IssueCommand("$GM 493.0,515.0", StatusReader::Command),
              LinkFailure::None);
    const Reading r = fluorimeter.TakeReading(493.0, 515.0, 1.0f, fluor::AcceptanceRule::Exact);
    EXPECT_EQ(r.failure, LinkFailure::None);
    return r.intensity;
  }
};

TEST_F(CuvetteQueue, NextOnStandardInputOrSigusr1PutsTheNextCuvetteInTheHolder) {
  auto line = lineFor(InstrumentKind::Fluorimeter, 2);
  FluorimeterLink fluorimeter(*line, clock_, person_, links_, 1);
  ASSERT_EQ(fluorimeter.OpenFluorimeterPort(), LinkFailure::None);
  ASSERT_EQ(fluorimeter.IssueCommand("$RE 0", StatusReader::Command), LinkFailure::None);
  const double blank = read(fluorimeter);
  sim_.write("next\n");
  EXPECT_EQ(nextSaid(), "cuvette in the holder: one");
  const double one = read(fluorimeter);
  ::kill(static_cast<pid_t>(sim_.processId()), SIGUSR1);
  EXPECT_EQ(nextSaid(), "cuvette in the holder: two");
  const double two = read(fluorimeter);
  EXPECT_LT(blank * 5, one);
  EXPECT_NEAR(two / one, 2.0, 0.3);
  sim_.write("next\n");
  EXPECT_EQ(nextSaid(), "no cuvette left; two stays in the holder");
  EXPECT_TRUE(person_.messages().empty());
}

TEST(SimulatorOptions, ABadBenchFileIsNamedLineByLineAndNothingIsServed) {
  e2e::ensureApplication();
  const std::string dir = testing::makeTempDir("e2e-bench");
  testing::writeFile(dir + "bench.txt", "cuvette ok: Blue=1\ntube 3: Purple=1\n");
  QProcess sim;
  sim.start(ZORVEL_SIM_EXECUTABLE, {"--dir", QString::fromStdString(dir), "--bench",
                                    QString::fromStdString(dir + "bench.txt")});
  ASSERT_TRUE(sim.waitForFinished(5000));
  EXPECT_EQ(sim.exitCode(), 2);
  EXPECT_NE(sim.readAllStandardError().toStdString().find("line 2: cannot read \"Purple=1\""),
            std::string::npos);
  EXPECT_TRUE(sim.readAllStandardOutput().isEmpty());
  EXPECT_FALSE(std::filesystem::exists(dir + "ZORVEL.PORTS"));
}

}  // namespace
}  // namespace zorvel

#endif  // ZORVEL_SIM_EXECUTABLE
