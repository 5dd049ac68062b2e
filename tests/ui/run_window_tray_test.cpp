// The run window carrying a tray run on the in-process simulators, steered by its keys.
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

#include "core/autosampler/step_counts.h"
#include "core/platform/notifier.h"
#include "core/platform/page_printer.h"
#include "core/platform/real_clock.h"
#include "core/quality/filing_check.h"
#include "support/bytes.h"
#include "support/method_builder.h"
#include "ui/platform/instrument_lines.h"
#include "ui/platform/qt_operator.h"
#include "ui/qt_app.h"
#include "ui/windows/run_window.h"

namespace zorvel {
namespace {

struct NoticeList final : Notifier {
  void notify(const std::string& summary, const std::string& body) override {
    told.push_back(summary + " | " + body);
  }
  std::vector<std::string> told;
};

// Two colours from tubes 5 to 7 of a tray whose positions lie a few millimetres apart, with
// shallow probe heights and quick strokes, so that a tube takes about two seconds (the rinse's
// and the sample's one-second waits).
struct TrayWindow {
  TrayWindow() {
    testing::qtApp();
    FillColourTables(state);
    state.StartDirectory = testing::makeTempDir("traywin");
    state.LogPath = state.StartDirectory + "ZORVEL.LOG";
    state.Method = testing::FixedMethod(2);
    testing::FromTray(state.Method, 5, 7, {100, 30, 10, 30});
    AutosamplerSettings& a = state.Method.Autosampler;
    a.RinseHeight = a.BackFillHeight = 2;
    a.TubeHeight = 3;
    for (int k = 0; k <= 7; ++k) {
      state.Tray.positions[static_cast<std::size_t>(k)] =
          TrayPosition{1.0f + static_cast<float>(k), 1.0f, static_cast<std::int16_t>(k)};
    }
    state.Tray.positionCount = 8;
    state.Tray.TubeCount = 7;
    state.Links.StepsPerMicrolitre = StepsPerMicrolitreFor(a);
    state.Steps = ComputePumpSteps(a, state.Links.StepsPerMicrolitre);
    const std::string base = state.StartDirectory + "TRAY";
    state.DataSet = {base + ".FIX", base + ".SYN", base + ".CTL",
                     base + ".BLK", base + ".STL", base + ".SLK",
                     base + ".LOG", "tray",        ""};
    sim::SimRig& rig = lines.rig();
    rig.fluorimeter().setTiming(sim::FluorimeterSim::InstantTiming());
    rig.pump.setLiquidSurface(3);
    rig.setTray(&state.Tray);
    for (int tube = 5; tube <= 7; ++tube) rig.bench.tubes[tube].dyes[4] = tube;
    for (int com = 1; com <= 3; ++com) lines.ports().devices[com] = "sim";
    window = ui::OpenRunWindow(nullptr, {state, op, clock, printer, checks, nullptr, &desktop},
                               RunSetup{}, lines);
  }
  ~TrayWindow() { delete window.data(); }

  QString label(const char* name) const { return window->findChild<QLabel*>(name)->text(); }
  bool shown(const char* name) const { return window->findChild<QWidget*>(name)->isVisible(); }
  QPushButton* ok() const { return window->findChild<QPushButton*>("OK_1"); }

  AppState state;
  RealClock clock;
  ui::QtOperator op;
  PagePrinter printer;
  FilingCheck checks{state, clock, op};
  ui::InstrumentLines lines{state, clock};
  NoticeList desktop;
  QPointer<ui::RunWindow> window;
};

// The records in the fixed data file so far.
std::size_t records(const TrayWindow& run) {
  const std::string bytes = testing::readFile(run.state.DataSet.FixPath);
  return static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
}

TEST(RunWindowTray, F11PausesAndResumesAndF5AbortsWhileTheWindowAnswers) {
  TrayWindow run;
  ASSERT_FALSE(run.window.isNull());
  // The dilutor is initialised on the worker: the window is back before it is done.
  EXPECT_TRUE(run.window->working());
  ZORVEL_TRY_VERIFY(!run.window->working(), 5000);
  QTest::mouseClick(run.ok(), Qt::LeftButton);
  ZORVEL_TRY_VERIFY(!run.window->working() && run.ok()->text() == "&Read Sample", 5000);
  EXPECT_TRUE(run.label("Status").contains("[R]ead Tray or [Q]uit"));

  QTest::mouseClick(run.ok(), Qt::LeftButton);
  ZORVEL_TRY_VERIFY(run.label("Status").contains("Extracting Sample"), 10000);
  EXPECT_TRUE(run.shown("RunStatus"));
  EXPECT_EQ("Tube 1 of 3: Sample 1 in tray tube 5", run.label("TrayTube"));
  EXPECT_EQ("Step: Extracting Sample", run.label("TrayStep"));
  QTest::keyClick(run.window, Qt::Key_F11);
  EXPECT_EQ("Pausing.  Please Wait.", run.label("AbortMsg"));
  // Said the moment the key is pressed, with the tube it waits for.
  EXPECT_EQ("Pause requested: pausing after tube 5", run.label("TrayRequest"));
  ZORVEL_TRY_COMPARE(run.label("AbortMsg"), QString("Paused.  Press F11 to Restart"), 10000);
  EXPECT_EQ(RunState::Paused, run.window->controller().state());
  ZORVEL_TRY_COMPARE(run.label("TrayRequest"), QString("Paused"), 2000);
  // The status box hears of the pause just after the panel does.
  ZORVEL_TRY_COMPARE(run.label("Status"), QString("Paused"), 2000);
  // The clock goes on while the run stands.
  const QString before = run.label("TimeInfo");
  ZORVEL_TRY_VERIFY(run.label("TimeInfo") != before, 2500);
  EXPECT_TRUE(run.label("TimeInfo").contains("Completed (1 / 3)"));
  // Held after the first tube, and the window still answers: F5 is no abort while paused.
  QTest::keyClick(run.window, Qt::Key_F5);
  QTest::qWait(300);
  EXPECT_EQ(RunState::Paused, run.window->controller().state());
  EXPECT_EQ(1u, records(run));
  QTest::keyClick(run.window, Qt::Key_F11);
  ZORVEL_TRY_COMPARE(run.window->controller().state(), RunState::TrayRun, 5000);
  EXPECT_EQ("F5 - Abort      F11 - Pause", run.label("AbortMsg"));

  // F5 during the next tube's rinse, answered Yes, ends the run before its draw: only the arm
  // goes home.
  QString asked;
  testing::whenShown("MessageBox", [&asked](QWidget* box) {
    auto* message = static_cast<QMessageBox*>(box);
    asked = message->text();
    message->button(QMessageBox::Yes)->click();
  });
  ZORVEL_TRY_VERIFY(run.label("TrayTube").endsWith("tray tube 6") &&
                        run.label("TrayStep") == "Step: Rinsing & Drying System",
                    5000);
  QTest::keyClick(run.window, Qt::Key_F5);
  EXPECT_EQ("Aborting.  Please Wait.", run.label("AbortMsg"));
  EXPECT_EQ("Abort requested: stopping after the rinse, before tube 6", run.label("TrayRequest"));
  ZORVEL_TRY_VERIFY(!run.window->working() && run.ok()->isVisible(), 15000);
  EXPECT_EQ("Do you want to abort the current run", asked);
  EXPECT_TRUE(run.label("Status").contains("Run aborted.")) << run.label("Status").toStdString();
  EXPECT_FALSE(run.label("Status").contains("Finishing up run."));
  EXPECT_EQ(1u, records(run));
  EXPECT_EQ(0.0, run.lines.rig().bench.receivedUl[6]);
  // Nothing of the run is left on show.
  EXPECT_FALSE(run.shown("RunStatus"));
  EXPECT_FALSE(run.shown("AbortMsg"));
  EXPECT_TRUE(run.label("TimeInfo").isEmpty()) << run.label("TimeInfo").toStdString();
  // Whoever left the run is told how it ended.
  EXPECT_EQ((std::vector<std::string>{
                "Tray run aborted | TRAY.FIX: 1 of 3 tubes read, tube 2 of 3 of the range."}),
            run.desktop.told);
}

}  // namespace
}  // namespace zorvel
