#include "core/quality/quality_checks.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "quality/scripted_alert.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

constexpr int kGreen = 10, kBlue = 9, kRed = 12, kYellow = 14;

using testing::ScriptedAlert;

struct PaintedGrid final : QcGrid {
  std::map<int, int> cells;
  std::string label;
  std::vector<std::string> medians;
  void paintCell(int colour, int palette) override { cells[colour] = palette; }
  void labelRow(const std::string& l) override { label = l; }
  void showMedians(const std::vector<std::string>& m) override { medians = m; }
};

struct Checks {
  Checks() {
    state.Method.NoColors = 2;
    state.Method.FixedPairs.colour(1) = {493, 515, 5, 5, 4};
    state.Method.FixedPairs.colour(2) = {520, 540, 5, 2.5f, 5};
    const std::string dir = testing::makeTempDir("qc");
    state.DataSet.CtlPath = dir + "RUN.CTL";
    state.DataSet.BlkPath = dir + "RUN.BLK";
    checks.attachGrid(&grid);
  }
  // The verdict in the answer codes of the alert's buttons (6 keep, 7 read again, 2 abort).
  int control(float a, float b, int number = 1) {
    grid = PaintedGrid{};
    const std::vector<float> r{a, b};
    return static_cast<int>(checks.check({CheckKind::Control, number, r, ""}));
  }
  int blank(float a, float b) {
    grid = PaintedGrid{};
    const std::vector<float> r{a, b};
    return static_cast<int>(checks.check({CheckKind::Blank, 1, r, ""}));
  }

  AppState state;
  VirtualClock clock;
  ScriptedOperator op;
  ScriptedAlert alert;
  PaintedGrid grid;
  QualityChecks checks{state, clock, op, alert};
};

TEST(QualityChecks, ControlBandsAtTheirEdges) {
  Checks c;
  // Colour 1: mean 20, sd 10. Colour 2: mean 100, sd 0.6.
  EXPECT_EQ(6, c.control(10, 99.4f));
  EXPECT_EQ(6, c.control(30, 100.6f));
  EXPECT_EQ(6, c.control(20, 100));
  EXPECT_EQ(3, c.checks.ControlCount());
  EXPECT_EQ((std::vector<std::string>{"20.0", "100.0"}), c.grid.medians);

  // 3.5 SD above: light green, kept without a question. Colour 2 at 5 SD but only 3 % above
  // the mean: light blue, still no alert.
  EXPECT_EQ(6, c.control(55, 103));
  EXPECT_EQ((std::map<int, int>{{1, kGreen}, {2, kBlue}}), c.grid.cells);
  EXPECT_TRUE(c.alert.shown.empty());
  EXPECT_EQ(4, c.checks.ControlCount());
  EXPECT_EQ("", c.grid.label);

  // Within 3 SD: nothing painted.
  EXPECT_EQ(6, c.control(25, 100.5f));
  EXPECT_TRUE(c.grid.cells.empty());
  EXPECT_EQ(5, c.checks.ControlCount());
}

TEST(QualityChecks, AnAlertedControlIsKeptOnlyWhenTheOperatorSaysYes) {
  Checks c;
  for (float v : {99.4f, 100.6f, 100.0f}) c.control(v, v);
  const std::string filed = testing::readFile(c.state.DataSet.CtlPath);
  const QcDatabase before = c.checks.controls();

  // 6 % above a tight mean: light red and the alert, showing the flagged colours only.
  c.alert.answers = {7};
  EXPECT_EQ(7, c.control(106, 100.1f, 4));
  ASSERT_EQ(1u, c.alert.shown.size());
  EXPECT_TRUE(c.alert.shown[0].flagged(1));
  EXPECT_FALSE(c.alert.shown[0].flagged(2));
  EXPECT_EQ(106.0f, c.alert.shown[0].value(1));
  EXPECT_EQ(2.5f, c.alert.shown[0].pair(2).EmSl);
  EXPECT_EQ((std::map<int, int>{{1, kYellow}, {2, kYellow}}), c.grid.cells);
  EXPECT_EQ("NS", c.grid.label);
  EXPECT_EQ(3, c.checks.ControlCount());
  EXPECT_EQ(filed, testing::readFile(c.state.DataSet.CtlPath));  // nothing added

  // Cancel aborts the reading in the same way.
  c.alert.answers = {2};
  EXPECT_EQ(2, c.control(106, 100, 4));
  EXPECT_EQ(3, c.checks.ControlCount());

  // Read again, and this time keep it: light red stays, the entry is filed.
  c.alert.answers = {6};
  EXPECT_EQ(6, c.control(94, 100, 4));
  EXPECT_EQ((std::map<int, int>{{1, kRed}}), c.grid.cells);
  EXPECT_EQ("", c.grid.label);
  EXPECT_FALSE(c.checks.lastCheck().alert);
  EXPECT_EQ(4, c.checks.ControlCount());
  EXPECT_EQ(before.count + 1, c.checks.controls().count);
  EXPECT_SAME_BYTES(filed + "C4\t 94 \t 100 \t03-07-2000\t14:05:09\r\n",
                    testing::readFile(c.state.DataSet.CtlPath));
}

TEST(QualityChecks, BlanksAreFlaggedButNeverAlertAndFirstEntriesAreNotChecked) {
  Checks c;
  // With fewer than two entries nothing is checked, however far apart.
  EXPECT_EQ(6, c.blank(1, 1));
  EXPECT_EQ(6, c.blank(1000, 3));
  EXPECT_TRUE(c.grid.cells.empty());
  EXPECT_EQ(6, c.blank(2, 2));
  // Colour 1 mean 334.33, sd 576.2: 5 SD away is light blue, kept, no alert.
  EXPECT_EQ(6, c.blank(334.33f + 5 * 576.2f, 2));
  EXPECT_EQ(kBlue, c.grid.cells[1]);
  EXPECT_TRUE(c.alert.shown.empty());
  EXPECT_EQ(4, c.checks.BlankCount());
  EXPECT_EQ(0, c.checks.ControlCount());
  EXPECT_EQ(4u, [&] {
    std::size_t lines = 0;
    for (char ch : testing::readFile(c.state.DataSet.BlkPath)) lines += ch == '\n';
    return lines;
  }());
}

// While the databases are being built the current batch is 1, whatever batches the set's
// files already hold; once both hold three entries, entries take the set's next batch again.
TEST(QualityChecks, EntriesAddedWhileBuildingAreBatchOne) {
  Checks c;
  const std::string header = "H1\r\nH2\r\nH3\r\n";
  testing::writeFile(c.state.DataSet.CtlPath, header +
                                                  "C1\t 1 \t 10 \t03-07-2000\t10:00:00\r\n"
                                                  "C2\t 3 \t 30 \t03-09-2000\t10:01:00\r\n");
  testing::writeFile(c.state.DataSet.BlkPath, header);
  c.checks.load(c.state.DataSet.CtlPath, c.state.DataSet.BlkPath);
  ASSERT_EQ(3, c.checks.controls().currentBatch);
  c.checks.setBuilding(true);
  c.control(2, 20);
  EXPECT_EQ(1, c.checks.controls().batch[3]);
  for (int k = 0; k < 3; ++k) c.blank(0.5f, 0.1f);
  EXPECT_EQ(1, c.checks.blanks().batch[3]);
  c.control(2, 20);  // both databases hold three: the build is over
  EXPECT_EQ(3, c.checks.controls().batch[4]);
}

TEST(QualityChecks, ReopenedSetLoadsBothDatabasesAndShowsMediansFromThree) {
  Checks c;
  const std::string header = "H1\r\nH2\r\nH3\r\n";
  testing::writeFile(c.state.DataSet.CtlPath, header +
                                                  "C1\t 1 \t 10 \t03-07-2000\t10:00:00\r\n"
                                                  "C2\t 3 \t 30 \t03-07-2000\t10:01:00\r\n"
                                                  "C3\t 2 \t 20 \t03-09-2000\t10:00:00\r\n");
  testing::writeFile(c.state.DataSet.BlkPath,
                     header + "B1\t 0.5 \t 0.1 \t03-07-2000\t10:00:00\r\n");
  std::vector<std::string> mainWindow;
  c.checks.onMediansChanged([&](const std::vector<std::string>& m) { mainWindow = m; });
  c.checks.load(c.state.DataSet.CtlPath, c.state.DataSet.BlkPath);
  EXPECT_EQ(3, c.checks.ControlCount());
  EXPECT_EQ(1, c.checks.BlankCount());
  EXPECT_EQ(3, c.checks.controls().currentBatch);
  EXPECT_EQ((std::vector<std::string>{"2.0", "20.0"}), c.checks.medianRow(2));
  EXPECT_EQ(mainWindow, c.checks.medianRow(2));

  // A new reading joins the current batch; the scan-only entries count too.
  c.control(2, 20);
  EXPECT_EQ(3, c.checks.controls().batch[4]);
  c.checks.countScanOnly(CheckKind::Blank);
  EXPECT_EQ(2, c.checks.BlankCount());

  // A new set starts empty, without medians; a set of two controls shows none either.
  c.checks.resetCounts();
  EXPECT_EQ(0, c.checks.ControlCount());
  EXPECT_EQ((std::vector<std::string>{"", ""}), c.checks.medianRow(2));
  testing::writeFile(c.state.DataSet.CtlPath,
                     header + "C1\t 1 \t 10 \t\t\r\nC2\t 3 \t 30 \t\t\r\n");
  c.checks.load(c.state.DataSet.CtlPath, c.state.DataSet.BlkPath);
  EXPECT_EQ(2, c.checks.ControlCount());
  EXPECT_EQ((std::vector<std::string>{"", ""}), c.checks.medianRow(2));
}

}  // namespace
}  // namespace zorvel
