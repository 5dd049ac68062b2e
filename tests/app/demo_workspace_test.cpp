#include "core/app/demo_workspace.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "app/fake_views.h"
#include "core/app/main_presenter.h"
#include "core/app/port_map.h"
#include "core/datafiles/data_set_headers.h"
#include "core/files/file_output.h"
#include "core/method/demo_methods.h"
#include "core/method/method_commands.h"
#include "core/platform/page_printer.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

namespace fs = std::filesystem;

TEST(DemoWorkspace, StartsWithoutQuestionsOnSimulatedInstrumentsAndLoadsItsMethods) {
  const std::string dir = testing::makeTempDir("demo");
  ScriptedOperator op;
  ASSERT_TRUE(PrepareDemoWorkspace(dir + "ws", op));
  EXPECT_TRUE(op.shown.empty());
  const PortMap ports = LoadPortMap({}, dir + "ws/ZORVEL.PRF");
  EXPECT_TRUE(ports.isSimulated(1) && ports.isSimulated(2) && ports.isSimulated(3));

  AppState state;
  VirtualClock clock;
  PagePrinter printer;
  testing::FakeMainView view;
  MainPresenter presenter(state, op, clock, printer, view);
  ASSERT_TRUE(presenter.startUp(dir + "ws"));
  EXPECT_TRUE(op.shown.empty());
  EXPECT_TRUE(state.Prefs.AutoSampler);
  EXPECT_EQ(state.Tray.TubeCount, 96);
  EXPECT_EQ(state.Method.Autosampler.EndingTube, 96);  // autosampler defaults follow the tray
  EXPECT_TRUE(view.trayVisible);

  op.chooseNext(state.MethodsDirectory + "/" + kDemoFixedMethod);
  presenter.editMethodFile();
  EXPECT_TRUE(op.messages().empty());
  // The label shows the path as it is on disk.
  EXPECT_EQ(view.methodLabel, state.MethodsDirectory + "/" + kDemoFixedMethod);
  EXPECT_TRUE(view.controlsEnabled);  // the editor holds the method
  EXPECT_TRUE(state.Method.Fixed);

  // A second preparation reuses the workspace as it is.
  testing::writeFile(dir + "ws/ZORVEL.PRF", "kept");
  ASSERT_TRUE(PrepareDemoWorkspace(dir + "ws", op));
  EXPECT_EQ(testing::readFile(dir + "ws/ZORVEL.PRF"), "kept");
}

TEST(DemoWorkspace, AppendingAMissingSetSaysSoAndChangesNothing) {
  const std::string dir = testing::makeTempDir("demo-append");
  ScriptedOperator op;
  ASSERT_TRUE(PrepareDemoWorkspace(dir, op));
  AppState state;
  VirtualClock clock;
  PagePrinter printer;
  testing::FakeMainView view;
  MainPresenter presenter(state, op, clock, printer, view);
  ASSERT_TRUE(presenter.startUp(dir));
  op.chooseNext(state.DataDirectory + "/none.fix");
  presenter.appendDataFile();
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text, "File does not exist.");
  EXPECT_FALSE(view.controlsEnabled);
  EXPECT_EQ(view.dataLabel, "None open");
}

TEST(DemoWorkspace, AReopenedSetsNumbersGoWithCancelAndWithTheNextMethodLoaded) {
  const std::string dir = testing::makeTempDir("demo-numbers");
  ScriptedOperator op;
  ASSERT_TRUE(PrepareDemoWorkspace(dir, op));
  AppState state;
  VirtualClock clock;
  PagePrinter printer;
  testing::FakeMainView view;
  MainPresenter presenter(state, op, clock, printer, view);
  ASSERT_TRUE(presenter.startUp(dir));
  const std::string method = state.MethodsDirectory + "/" + kDemoFixedMethod;
  op.chooseNext(method);
  presenter.editMethodFile();
  state.DataSet.MethodFilePath = method;
  NoQualityDatabases none;
  const std::string set = state.DataDirectory + "/run.fix";
  WriteDataSetHeaders(state, set, CalendarTime{}, none);
  ASSERT_TRUE(AppendRecord(state.DataSet.FixPath, "S17\t1.000\r\n"));

  for (const bool cancel : {true, false}) {
    op.chooseNext(state.DataSet.FixPath);
    presenter.appendDataFile();
    ASSERT_EQ(presenter.methodEditor().state().FirstSampleNumber, 18);
    if (cancel) {
      presenter.cancelMethod();
    } else {
      op.chooseNext(method);
      presenter.editMethodFile();
    }
    EXPECT_EQ(presenter.methodEditor().state().FirstSampleNumber, 1);
    EXPECT_EQ(presenter.editor().lastSampleNumber, 0);
  }
}

}  // namespace
}  // namespace zorvel

namespace zorvel {
namespace {

// Checks that know two controls and their medians.
class TwoControls final : public QualityCheck {
 public:
  int ControlCount() const override { return 2; }
  int BlankCount() const override { return 0; }
  Verdict check(const CheckedReading&) override { return Verdict::Keep; }
  void countScanOnly(CheckKind) override {}
  std::vector<std::string> medianRow(int colours) const override {
    return std::vector<std::string>(static_cast<std::size_t>(colours), "11.5");
  }
};

TEST(DemoWorkspace, AClosedRunLeavesNoSetLoadedAndShowsTheMediansAndTrend) {
  const std::string dir = testing::makeTempDir("demo-close");
  ScriptedOperator op;
  ASSERT_TRUE(PrepareDemoWorkspace(dir, op));
  AppState state;
  VirtualClock clock;
  PagePrinter printer;
  testing::FakeMainView view;
  MainPresenter presenter(state, op, clock, printer, view);
  TwoControls checks;
  NoQualityDatabases databases;
  presenter.setQualityChecks(checks, databases);
  presenter.setAvailable(MainMenu::ShowExistingControls, true);
  ASSERT_TRUE(presenter.startUp(dir));
  state.Method.NoColors = 2;
  EXPECT_TRUE(presenter.runClosed());  // controls exist: the trend follows
  EXPECT_EQ(view.dataLabel, "Not Loaded");
  EXPECT_EQ(view.medians, (std::vector<std::string>{"11.5", "11.5"}));
  EXPECT_TRUE(view.menus[MainMenu::ShowExistingControls]);
  EXPECT_TRUE(view.menus[MainMenu::EditMethodFile]);
  // The medians belong to the set: cancelling it leaves none on show.
  presenter.cancelMethod();
  EXPECT_TRUE(view.medians.empty());
}

}  // namespace
}  // namespace zorvel
