#include "sim/fluorimeter_sim.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/instruments/fluorimeter_link.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/dye_model.h"

namespace zorvel::sim {
namespace {

using fluor::AcceptanceRule;

Sample Pure(int colour, double amount = 1.0) {
  Sample s;
  s.dyes[static_cast<std::size_t>(colour)] = amount;
  s.label = "pure " + std::to_string(colour);
  return s;
}

class FluorimeterSimTest : public ::testing::Test {
 protected:
  explicit FluorimeterSimTest(int model = 2)
      : sim(bench, model, 7), link(line, clock, person, links, model) {
    EXPECT_EQ(LinkFailure::None, link.OpenFluorimeterPort());
  }

  void send(const std::string& command, StatusReader reader = StatusReader::Command) {
    ASSERT_EQ(LinkFailure::None, link.IssueCommand(command, reader)) << command;
  }
  double read(double ex, double em, float readTimeS = 1.0f) {
    send(fluor::MonochromatorCommand(static_cast<float>(ex), static_cast<float>(em)));
    const Reading r = link.TakeReading(ex, em, readTimeS, AcceptanceRule::WithinTolerance);
    EXPECT_EQ(LinkFailure::None, r.failure);
    return r.intensity;
  }
  int count(const std::string& command) const {
    return static_cast<int>(std::count(sim.commands().begin(), sim.commands().end(), command));
  }

  VirtualClock clock;
  Bench bench;
  FluorimeterSim sim;
  SimulatedLine line{clock, sim, "COM1 (sim)"};
  ScriptedOperator person;
  LinkState links;
  FluorimeterLink link;
};

TEST_F(FluorimeterSimTest, EachPureReadsHighestAtItsOwnPair) {
  const auto& bands = DyeBands();
  for (int dye = 0; dye < kDyeCount; ++dye) {
    bench.cuvette = Pure(dye);
    int best = -1;
    double bestValue = -1;
    for (int pair = 0; pair < kDyeCount; ++pair) {
      const auto& b = bands[static_cast<std::size_t>(pair)];
      const double v = read(b.excitationNm, b.emissionNm, 0.1f);
      if (v > bestValue) {
        bestValue = v;
        best = pair;
      }
    }
    EXPECT_EQ(dye, best) << bench.cuvette.label;
    EXPECT_GT(bestValue, 100.0);
  }
  EXPECT_TRUE(person.shown.empty());
}

TEST_F(FluorimeterSimTest, WaterShowsItsRamanBandAndSettingsScaleIt) {
  bench.cuvette = Sample{};
  send("$FW 2");
  send("$PV 820");
  const double raman = read(350.0, 397.5);
  EXPECT_NEAR(25.0, raman, 1.0);
  EXPECT_LT(read(350.0, 440.0), 0.5);
  EXPECT_LT(read(350.0, 380.0), 5.0);
  send("$SX 10.0");
  EXPECT_NEAR(2 * raman, read(350.0, 397.5), 2.0);
  send("$SX 5.0");
  send("$PV 700");
  EXPECT_LT(read(350.0, 397.5), 0.5 * raman);
  send("$FW 8");  // the attenuator
  EXPECT_LT(read(350.0, 397.5), 1.0);
  bench.cuvetteInHolder = false;
  send("$FW 2");
  send("$PV 820");
  EXPECT_LT(read(350.0, 397.5), 0.1);
}

TEST_F(FluorimeterSimTest, WaterCellTimeDriveGivesHeaderAnd240StablePoints) {
  // The water cell is read even where the bench reads the empty flow cell otherwise (the
  // autosampler's dilutor was initialised before the check).
  bench.readFromFlowCell = true;
  bench.flowCellFilled = false;
  for (const char* c : {"$RE 0", "$SX 5.0", "$SM 5.0", "$FW 2", "$PV 820", "$GM 350.0,397.5",
                        "$TI 0.5", "$RT 0.0", "$TD 240"}) {
    send(c, StatusReader::Water);
  }
  const TimeDriveHeaderReply header = link.ReadTimeDriveHeader();
  ASSERT_EQ(LinkFailure::None, header.failure);
  EXPECT_EQ("350.0", header.fields[2]);
  EXPECT_EQ("397.5", header.fields[3]);
  EXPECT_EQ("5.0", header.fields[5]);
  EXPECT_EQ("240", header.fields[7]);
  const double start = clock.monotonicS();
  double sum = 0, squares = 0;
  int points = 0;
  while (points < 240) {
    const TerminatedText token = link.ReadNumberToken();
    ASSERT_EQ(LinkFailure::None, token.failure);
    if (token.text.empty()) continue;
    const double v = fluor::FieldValue(token.text) / 1000.0;
    sum += v;
    squares += v * v;
    ++points;
  }
  const double mean = sum / 240;
  EXPECT_NEAR(25.0, mean, 1.0);
  EXPECT_LT(std::sqrt((squares - sum * sum / 240) / 239), 0.5);
  EXPECT_NEAR(120.0, clock.monotonicS() - start, 1.0);
  EXPECT_EQ(0u, line.charactersWaiting());

  // A failing lamp takes the level well outside a 5 % band.
  bench.readFromFlowCell = false;
  bench.cuvette = Sample{};
  sim.setLampPower(0.9);
  EXPECT_LT(read(350.0, 397.5), 0.95 * mean);
}

TEST_F(FluorimeterSimTest, SynchronousScanStreamsItsPoints) {
  bench.cuvette = Pure(3);
  for (const char* c :
       {"$MX 0", "$AL 360.0", "$AH 400.0", "$MX 1", "$AL 375.0", "$AH 415.0", "$MQ 0", "$MX 2"}) {
    send(c);
  }
  ASSERT_EQ(LinkFailure::None, link.PrepareScanBuffer());
  send("$SC 1", StatusReader::Scan);
  ASSERT_EQ(LinkFailure::None, link.ReadStatusRecord().failure);
  int points = 0;
  for (double x = 360.0 - 0.5; x < 400.0; x += 0.5) {
    const TerminatedText token = link.ReadNumberToken();
    ASSERT_EQ(LinkFailure::None, token.failure);
    ASSERT_FALSE(token.text.empty());
    ++points;
  }
  EXPECT_EQ(81, points);
  EXPECT_EQ(0u, line.charactersWaiting());
  EXPECT_EQ(0u, line.overrunCount());
  EXPECT_EQ(400.0, sim.settings().excitationNm);
}

TEST_F(FluorimeterSimTest, TimingFollowsDistanceAndReadTime) {
  double before = clock.monotonicS();
  send("$GM 360.0,400.0");
  const double shortMove = clock.monotonicS() - before;
  before = clock.monotonicS();
  send("$GM 660.0,700.0");
  const double longMove = clock.monotonicS() - before;
  EXPECT_GT(longMove, shortMove + 0.15);
  before = clock.monotonicS();
  link.TakeReading(660.0, 700.0, 2.0f, AcceptanceRule::WithinTolerance);
  EXPECT_NEAR(2.0, clock.monotonicS() - before, 0.1);
}

TEST_F(FluorimeterSimTest, InjectedFaultsMeetTheLinkRules) {
  bench.cuvette = Sample{};
  sim.interimBeforeNextCommands(1, 3.0);
  send("$RE 0");
  EXPECT_EQ(1, count("$RE 0"));

  sim.failNextCommands("0003");
  sim.failNextCommands("0001");
  send("$SX 5.0");
  EXPECT_EQ(3, count("$SX 5.0"));
  ASSERT_EQ(1u, person.messages().size());
  EXPECT_EQ("INVALID PARAMETER", person.messages()[0].text);

  send("$GM 350.0,397.5");
  sim.misreportNextReadings(0.5);
  sim.failNextRecords("0000");  // the misreported record itself ends well
  sim.failNextRecords("0013");
  sim.setJunkBeforeRecords("\r\n??");
  sim.setSplitReplies(0.2);
  EXPECT_NEAR(25.0, link.TakeReading(350.0, 397.5, 1.0f, AcceptanceRule::WithinTolerance).intensity,
              1.0);
  EXPECT_EQ(3, count("$RD 1.0"));
  EXPECT_EQ("<> 0000: 0013", person.messages().back().text);

  sim.silenceNextCommands(1);
  send("$PV 820");
  EXPECT_EQ(1, links.LinkTimeoutCount);
  EXPECT_EQ(2, count("$PV 820"));
}

TEST_F(FluorimeterSimTest, UnknownAndOutOfRangeCommandsAreRefused) {
  // Refusals repeat forever on resend, so the statuses are read one at a time here.
  line.write("$ZZ 1\r");
  EXPECT_EQ(LinkFailure::DeviceFault, link.AwaitWaterStatus());
  line.write("$GM 950.0,397.5\r");
  EXPECT_EQ(LinkFailure::DeviceFault, link.AwaitCommandStatus());
  line.write("$FW 6\r");
  EXPECT_EQ(LinkFailure::DeviceFault, link.AwaitCommandStatus());
  std::vector<std::string> texts;
  for (const auto& box : person.messages()) texts.push_back(box.text);
  EXPECT_EQ(
      (std::vector<std::string>{"UNRECOGNIZED COMMAND", "VALUE OUT OF RANGE", "INVALID PARAMETER"}),
      texts);
  EXPECT_EQ(350.0, sim.settings().excitationNm);
}

class Ls50SimTest : public FluorimeterSimTest {
 protected:
  Ls50SimTest() : FluorimeterSimTest(1) {}
};

TEST_F(Ls50SimTest, Ls50RecordsReadWithTheLs50Layout) {
  bench.cuvette = Pure(8);
  EXPECT_GT(read(578.0, 600.0), 300.0);
  sim.setSilent(true);
  EXPECT_EQ(LinkFailure::Halted, link.IssueCommand("$RD 1.0", StatusReader::Command));
  EXPECT_TRUE(person.ended);
}

}  // namespace
}  // namespace zorvel::sim
