#include "ui/windows/run_window.h"

#include <QAction>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include "core/app/port_map.h"
#include "core/platform/page_printer.h"
#include "core/platform/real_clock.h"
#include "core/quality/filing_check.h"
#include "core/quality/quality_checks.h"
#include "core/text/number_format.h"
#include "support/bytes.h"
#include "support/method_builder.h"
#include "ui/platform/instrument_lines.h"
#include "ui/platform/qt_operator.h"
#include "ui/qt_app.h"
#include "ui/windows/run_grid.h"
#include "ui/windows/run_palette.h"
#include "ui/windows/run_spectra.h"

namespace zorvel {
namespace {

// The alert answered from a list, on whichever thread the check runs.
struct ListedAlert final : AlertDialog {
  std::vector<int> answers;
  int asked = 0;
  int ask(const QcSnapshot&) override {
    ++asked;
    const int answer = answers.front();
    answers.erase(answers.begin());
    return answer;
  }
};

// A cuvette run of a short method on the in-process simulator, in real time: the instrument
// answers at once but for its read times and the line's own character times. Given an alert,
// the run files through the control and blank checks, whose control database already holds
// three controls far below anything the simulator reads.
struct WindowRun {
  WindowRun(bool fixed, bool synch, float readTimeS, int colours = 2,
            AlertDialog* alert = nullptr) {
    testing::qtApp();
    FillColourTables(state);
    state.StartDirectory = testing::makeTempDir("runwin");
    state.LogPath = state.StartDirectory + "ZORVEL.LOG";
    state.Prefs.FlComPort = 1;
    MethodSettings& m = state.Method;
    m = testing::FixedMethod(colours, readTimeS);
    m.Fixed = fixed;
    m.Synch = synch;
    m.SynchScan = {5, 5, 400, 425, 20, 1};
    const std::string base = state.StartDirectory + "LIVER";
    state.DataSet = {base + ".FIX", base + ".SYN", base + ".CTL",
                     base + ".BLK", base + ".STL", base + ".SLK",
                     base + ".LOG", "liver",       ""};
    lines.rig().fluorimeter().setTiming(sim::FluorimeterSim::InstantTiming());
    lines.rig().fluorimeter().setScanDataIntervalNm(1);
    for (double& dye : lines.rig().bench.cuvette.dyes) dye = 1.0;
    lines.ports().devices[1] = "sim";
    if (alert != nullptr) {
      qc = std::make_unique<QualityChecks>(state, clock, op, *alert);
      for (float k : {10.0f, 11.0f, 12.0f}) qc->CheckControl(std::vector<float>{k, k + 10}, 1, "");
    }
    QualityCheck& filing = qc ? static_cast<QualityCheck&>(*qc) : checks;
    window = ui::OpenRunWindow(nullptr, {state, op, clock, printer, filing, qc.get()}, RunSetup{},
                               lines);
    QObject::connect(window.data(), &ui::RunWindow::runClosed,
                     [this](bool controls) { closedWithControls = controls ? 1 : 0; });
  }
  ~WindowRun() { delete window.data(); }

  template <typename T>
  T* find(const char* name) const {
    T* found = window->findChild<T*>(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  QPushButton* button(const char* name) const { return find<QPushButton>(name); }
  QString status() const { return find<QLabel>("Status")->text(); }
  // Clicks a button and waits until the window has shown what the click's work made.
  void clickAndWait(const char* name, const char* until) {
    QTest::mouseClick(button(name), Qt::LeftButton);
    ZORVEL_TRY_VERIFY(!window->working() && find<QWidget>(until)->isVisible(), 5000);
  }

  AppState state;
  RealClock clock;
  ui::QtOperator op;
  PagePrinter printer;
  ui::InstrumentLines lines{state, clock};
  FilingCheck checks{state, clock, op};
  std::unique_ptr<QualityChecks> qc;
  QPointer<ui::RunWindow> window;
  int closedWithControls = -1;
};

TEST(RunWindow, CuvetteRunInitReadRejectReadAcceptAndQuit) {
  WindowRun run(true, false, 0.05f);
  ASSERT_NE(run.window, nullptr);
  ASSERT_TRUE(run.window->isVisible());
  EXPECT_EQ(run.window->objectName(), "SAMPLING");
  EXPECT_EQ(run.window->windowTitle(), "ZORVEL Sampling - SIMULATED fluorimeter");
  EXPECT_EQ(run.button("OK_1")->text(), "&Init");
  EXPECT_EQ(run.status(), "[I]nitialize Fluorimeter, [Q]uit Analysis.");
  EXPECT_EQ(run.find<QAction>("MenuFilename")->text(), "LIVER.FIX");
  ui::ResultsGrid* grid = run.window->grid();
  EXPECT_EQ(grid->textAt(0, 1), "493/515");
  EXPECT_EQ(grid->textAt(0, 2), "520/540");
  EXPECT_EQ(grid->textAt(0, 0), "Sample");
  EXPECT_EQ(grid->textAt(1, 0), "Median");
  EXPECT_FALSE(run.find<QGroupBox>("AR_Frame")->isVisible());
  EXPECT_FALSE(run.find<QGroupBox>("SyncFrame")->isVisible());

  run.clickAndWait("OK_1", "OK_Frame");
  EXPECT_EQ(run.button("OK_1")->text(), "&Read Sample");
  EXPECT_TRUE(run.status().startsWith("Analysis Configuration Complete\n"));
  EXPECT_TRUE(run.status().endsWith("[R]ead Sample or [Q]uit"));

  run.clickAndWait("OK_1", "AR_Frame");
  EXPECT_FALSE(run.find<QGroupBox>("OK_Frame")->isVisible());
  EXPECT_EQ(grid->textAt(2, 0), "1");
  for (int colour = 1; colour <= 2; ++colour) {
    bool number = false;
    grid->textAt(2, colour).toDouble(&number);
    EXPECT_TRUE(number) << grid->textAt(2, colour).toStdString();
  }
  EXPECT_TRUE(run.button("AcceptReject_3")->isVisible());
  EXPECT_TRUE(run.find<QLineEdit>("Comment_Box")->isVisible());

  // The reject question comes from the worker and is answered on the window thread.
  QString asked;
  testing::whenShown("MessageBox", [&asked](QWidget* box) {
    auto* message = static_cast<QMessageBox*>(box);
    asked = message->text();
    message->button(QMessageBox::Cancel)->click();
  });
  run.clickAndWait("AcceptReject_2", "OK_Frame");
  EXPECT_TRUE(asked.startsWith("Do you wish to abort or reread the sample?"));
  EXPECT_EQ(grid->textAt(2, 0), "NS");
  EXPECT_FALSE(run.find<QGroupBox>("AR_Frame")->isVisible());

  run.clickAndWait("OK_1", "AR_Frame");
  EXPECT_EQ(grid->textAt(3, 0), "1");  // the cancelled sample keeps its number
  QTest::keyClicks(run.find<QLineEdit>("Comment_Box"), "cloudy");
  run.clickAndWait("AcceptReject_1", "OK_Frame");
  EXPECT_TRUE(run.status().startsWith("Waiting For New Cuvette."));
  const std::string fix = testing::readFile(run.state.DataSet.FixPath);
  EXPECT_NE(fix.find("cloudy"), std::string::npos) << testing::visible(fix);
  EXPECT_EQ(std::count(fix.begin(), fix.end(), '\n'), 1) << testing::visible(fix);

  QTest::mouseClick(run.button("OK_2"), Qt::LeftButton);
  ZORVEL_TRY_VERIFY(run.window.isNull(), 2000);
  EXPECT_EQ(run.closedWithControls, 0);
  EXPECT_NE(testing::readFile(run.state.LogPath).find("Lamp On"), std::string::npos);
  // The set's status file was kept through the run and says how it ended.
  const std::string status = testing::readFile(RunStatusPath(run.state.DataSet));
  EXPECT_NE(status.find("\"simulated\": true,"), std::string::npos) << status;
  EXPECT_NE(status.find("\"state\": \"ended\",\n  \"ended\": \"quit\","), std::string::npos)
      << status;
}

TEST(RunWindow, AnswersTheOperatorWhileAReadingIsUnderWayAndTakesKeysOnItsButtons) {
  WindowRun run(true, false, 1.0f, 1);
  QTest::keyClick(run.button("OK_1"), Qt::Key_I);
  ZORVEL_TRY_VERIFY(!run.window->working() && run.button("OK_1")->text() == "&Read Sample", 5000);

  QElapsedTimer reading;
  reading.start();
  QTest::keyClick(run.button("OK_1"), Qt::Key_R);
  ASSERT_TRUE(run.window->working());
  // A click and a timer are answered at once while the instrument integrates for a second.
  auto* autoHeight = run.find<QCheckBox>("AutoHeight");
  const bool before = autoHeight->isChecked();
  QTest::mouseClick(autoHeight, Qt::LeftButton, {}, QPoint(8, autoHeight->height() / 2));
  EXPECT_NE(autoHeight->isChecked(), before);
  bool ticked = false;
  QTimer::singleShot(10, [&ticked] { ticked = true; });
  ZORVEL_TRY_VERIFY(ticked, 200);
  // Abort and pause belong to tray runs: in a cuvette run F5 shows nothing and stops nothing.
  QTest::keyClick(run.window, Qt::Key_F5);
  EXPECT_FALSE(run.window->controller().StopRequested.load());
  EXPECT_EQ(run.find<QLabel>("AbortMsg")->text(), "");
  EXPECT_TRUE(run.window->working());
  EXPECT_LT(reading.elapsed(), 800);
  ZORVEL_TRY_VERIFY(run.find<QGroupBox>("AR_Frame")->isVisible(), 5000);
  EXPECT_GE(reading.elapsed(), 1000);

  // Keys on the decision buttons: an unknown one beeps and leaves the choice open, "a" accepts.
  QTest::keyClick(run.button("AcceptReject_1"), Qt::Key_X);
  ZORVEL_TRY_VERIFY(!run.window->working(), 2000);
  EXPECT_TRUE(run.find<QGroupBox>("AR_Frame")->isVisible());
  QTest::keyClick(run.button("AcceptReject_1"), Qt::Key_A);
  ZORVEL_TRY_VERIFY(!run.window->working() && run.find<QGroupBox>("OK_Frame")->isVisible(), 2000);
  EXPECT_FALSE(testing::readFile(run.state.DataSet.FixPath).empty());
}

TEST(RunWindow, ScanIsPlottedAndFittedToItsMaximum) {
  WindowRun run(false, true, 0.05f);
  EXPECT_FALSE(run.window->grid()->isVisible());
  EXPECT_TRUE(run.find<QGroupBox>("SyncFrame")->isVisible());
  EXPECT_EQ(run.find<QAction>("MenuFilename")->text(), "LIVER.SYN");
  run.clickAndWait("OK_1", "OK_Frame");
  const QRect plotPlace = run.find<QGroupBox>("SyncFrame")->geometry();
  run.clickAndWait("OK_1", "AR_Frame");
  // The choices appear without moving or resizing what the operator is looking at.
  EXPECT_EQ(run.find<QGroupBox>("SyncFrame")->geometry(), plotPlace);

  ui::SpectraPlot* plot = run.window->spectra();
  EXPECT_EQ(plot->pointCount(), 26);  // 400..425 nm, one point a nanometre
  EXPECT_EQ(run.find<QLabel>("MinVal_Label")->text(), "400.0");
  EXPECT_EQ(run.find<QLabel>("MaxVal_Label")->text(), "425.0");
  EXPECT_EQ(run.find<QProgressBar>("Perc_Panel")->value(), 100);
  // AutoHeight is on: the vertical scale is the scan's own maximum, and the entries show it.
  EXPECT_EQ(plot->yMin(), 0.0);
  EXPECT_GT(plot->yMax(), 0.0);
  EXPECT_EQ(run.find<QLineEdit>("YMax")->text().toStdString(),
            text::plainSingle(static_cast<float>(plot->yMax())));
  EXPECT_TRUE(run.status().contains("Maximum Synch Value: "));

  run.clickAndWait("AcceptReject_1", "OK_Frame");
  EXPECT_FALSE(testing::readFile(run.state.DataSet.SynPath).empty());
}

QColor CellColour(const ui::ResultsGrid* grid, int row, int column) {
  return grid->item(row - 1, column)->background().color();
}

TEST(RunWindow, AFarControlIsRefusedThenKeptAndTheChecksLetGoOfTheGridWhenItCloses) {
  ListedAlert alert;
  alert.answers = {7, 6};
  WindowRun run(true, false, 0.05f, 2, &alert);
  ui::ResultsGrid* grid = run.window->grid();
  EXPECT_EQ(grid->textAt(1, 1), "11.0");
  EXPECT_EQ(grid->textAt(1, 2), "21.0");
  run.clickAndWait("OK_1", "OK_Frame");
  run.clickAndWait("OK_1", "AR_Frame");

  // Read again: the refused row says "NS" in yellow, the next holds the same number.
  run.clickAndWait("AcceptReject_3", "AR_Frame");
  EXPECT_EQ(alert.asked, 1);
  EXPECT_EQ(grid->textAt(2, 0), "NS");
  EXPECT_EQ(CellColour(grid, 2, 1), ui::StandardColour(14));
  EXPECT_EQ(CellColour(grid, 2, 2), ui::StandardColour(14));
  EXPECT_EQ(grid->textAt(3, 0), "1");
  EXPECT_FALSE(grid->textAt(3, 1).isEmpty());

  // Kept: light red, and the "Median" row follows the database.
  run.clickAndWait("AcceptReject_3", "OK_Frame");
  EXPECT_EQ(alert.asked, 2);
  EXPECT_EQ(CellColour(grid, 3, 1), ui::StandardColour(12));
  EXPECT_EQ(grid->textAt(1, 1), "11.5");
  EXPECT_EQ(grid->textAt(1, 2), "21.5");
  EXPECT_EQ(run.qc->ControlCount(), 4);

  QTest::mouseClick(run.button("OK_2"), Qt::LeftButton);
  ZORVEL_TRY_VERIFY(run.window.isNull(), 2000);
  EXPECT_EQ(run.closedWithControls, 1);
  // A check after the window has gone paints nothing: the grid it painted is no more.
  alert.answers = {6};
  EXPECT_EQ(run.qc->CheckControl(std::vector<float>{5000, 5000}, 2, ""), Verdict::Keep);
}

}  // namespace
}  // namespace zorvel
