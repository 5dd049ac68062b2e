#include <gtest/gtest.h>

#include <map>

#include "core/platform/page_printer.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "core/quality/quality_checks.h"
#include "core/run/qc_row_tracker.h"
#include "core/run/run_controller.h"
#include "quality/scripted_alert.h"
#include "run/canned_fluorimeter.h"
#include "run/recording_view.h"
#include "run/run_fixture.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::ScriptedAlert;

// Keeps the colours the checks paint, by the row the tracker found, and passes them on.
struct PaintSpy final : QcGrid {
  explicit PaintSpy(QcRowTracker& t) : tracker(t) {}
  void paintCell(int colour, int palette) override {
    cells[{tracker.currentRow(), colour}] = palette;
    tracker.paintCell(colour, palette);
  }
  void labelRow(const std::string& label) override { tracker.labelRow(label); }
  void showMedians(const std::vector<std::string>& m) override {
    medians = m;
    tracker.showMedians(m);
  }
  QcRowTracker& tracker;
  std::map<std::pair<int, int>, int> cells;
  std::vector<std::string> medians;
};

// A cuvette run with the quality checks in place of plain filing.
struct CheckedRun {
  CheckedRun() {
    FillColourTables(state);
    state.StartDirectory = testing::makeTempDir("qcrun");
    state.Method = testing::ThreeColourMethod(true, false);
    const std::string base = state.StartDirectory + "LIVER";
    state.DataSet = {base + ".FIX", base + ".SYN", base + ".CTL",
                     base + ".BLK", base + ".STL", base + ".SLK",
                     base + ".LOG", "liver",       ""};
    testing::writeFile(state.DataSet.CtlPath, "H1\r\nH2\r\nH3\r\n");
    testing::writeFile(state.DataSet.BlkPath, "H1\r\nH2\r\nH3\r\n");
    checks.attachGrid(&spy);
    RunSetup setup;
    setup.BuildingDatabases = true;
    controller = std::make_unique<RunController>(
        RunServices{state, op, clock, printer, line, checks}, setup, tracker);
    controller->setCuvetteChanger([this] { instrument.nextCuvette(); });
    controller->Form_Load();
  }
  // choice: 3 control, 4 blank, as AR_Frame numbers its buttons.
  void readAndFile(int choice) {
    controller->press(RunButton::InitRead);
    ASSERT_EQ(RunState::AwaitingDecision, controller->state());
    controller->act(choice == 3 ? RunAction::Control : RunAction::Blank);
  }

  AppState state;
  VirtualClock clock;
  testing::CannedFluorimeter instrument;
  sim::SimulatedLine line{clock, instrument, "COM1 (sim)"};
  ScriptedOperator op;
  PagePrinter printer;
  ScriptedAlert alert;
  VirtualClock wallClock;
  QualityChecks checks{state, wallClock, op, alert};
  testing::RecordingView view;
  QcRowTracker tracker{view};
  PaintSpy spy{tracker};
  std::unique_ptr<RunController> controller;
};

int lines(const std::string& text) {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

TEST(QualityRun, BuildsTheDatabasesThenRereadsARefusedControlAndKeepsIt) {
  CheckedRun run;
  run.controller->press(RunButton::InitRead);  // Init
  for (int k = 0; k < 3; ++k) {
    run.readAndFile(3);  // control: cuvettes 1, 3, 5
    run.readAndFile(4);  // blank: cuvettes 2, 4, 6
  }
  EXPECT_EQ(3, run.checks.ControlCount());
  EXPECT_EQ(3, run.checks.BlankCount());
  EXPECT_EQ("301.0", run.spy.medians.at(0));
  EXPECT_TRUE(run.spy.cells.empty());
  const std::string builtCtl = testing::readFile(run.state.DataSet.CtlPath);

  // A control far above the band: the alert; "No" reads the cuvette again with its number and
  // files nothing. The refused row is labelled "NS" and painted yellow.
  run.instrument.cuvette = 49;
  run.alert.answers = {7, 6};
  run.readAndFile(3);
  EXPECT_EQ(1, run.alert.asked());
  const int refusedRow = run.tracker.currentRow() - 1;
  EXPECT_EQ("NS", run.view.rowLabels[refusedRow]);
  EXPECT_EQ(14, (run.spy.cells[{refusedRow, 1}]));
  EXPECT_EQ(14, (run.spy.cells[{refusedRow, 3}]));
  EXPECT_EQ(RunState::AwaitingDecision, run.controller->state());
  const std::string rereadNumber = run.view.rowLabels[refusedRow + 1];
  EXPECT_EQ("1", rereadNumber);
  EXPECT_EQ(builtCtl, testing::readFile(run.state.DataSet.CtlPath));
  EXPECT_EQ(3, run.checks.ControlCount());

  // Filed again and kept: light red cells, one more record.
  run.controller->act(RunAction::Control);
  EXPECT_EQ(2, run.alert.asked());
  EXPECT_EQ(12, (run.spy.cells[{run.tracker.currentRow(), 1}]));
  EXPECT_EQ(4, run.checks.ControlCount());
  const std::string ctl = testing::readFile(run.state.DataSet.CtlPath);
  EXPECT_EQ(3 + 4, lines(ctl));
  EXPECT_EQ(builtCtl.size(),
            ctl.rfind("C" + rereadNumber + "\t 5004 "));  // the same cuvette, read again
}

}  // namespace
}  // namespace zorvel
