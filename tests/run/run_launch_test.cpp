#include "core/run/run_launch.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "run/run_fixture.h"

namespace zorvel {
namespace {

using testing::ThreeColourMethod;

struct Launch {
  explicit Launch(const MethodSettings& method) {
    FillColourTables(state);
    state.StartDirectory = testing::makeTempDir("launch");
    state.DataDirectory = state.StartDirectory;
    state.Method = method;
    state.DataSet.MethodFilePath = state.StartDirectory + "LIVER.MTH";
  }
  LaunchServices services() {
    return {state, op, clock, printer, checks, checks, [this] { return autosamplerAccepted; }, {}};
  }
  RunLaunch newSet(int answerToNotice) {
    op.chooseNext(state.StartDirectory + "RUN1.FIX");
    op.answerNext(answer::kNo);  // no database building
    op.answerNext(answerToNotice);
    return LaunchNewDataSet(services(), 5);
  }

  AppState state;
  VirtualClock clock;
  ScriptedOperator op;
  PagePrinter printer;
  FilingCheck checks{state, clock, op};
  bool autosamplerAccepted = true;
};

TEST(RunLaunch, ANewSetWithAScanForcesPuresAndAsksAboutThem) {
  Launch yes(ThreeColourMethod(false, true));
  yes.state.Method.Spillover = false;
  const RunLaunch started = yes.newSet(answer::kYes);
  ASSERT_TRUE(started.startRun);
  EXPECT_TRUE(yes.state.Method.Spillover);
  EXPECT_TRUE(started.setup.PuresPending);
  EXPECT_TRUE(started.setup.NewDataSet);
  EXPECT_FALSE(started.setup.BuildingDatabases);
  EXPECT_EQ(5, started.setup.FirstSampleNumber);
  EXPECT_TRUE(std::filesystem::exists(yes.state.StartDirectory + "RUN1.SYN"));
  const auto boxes = yes.op.messages();
  ASSERT_EQ(2u, boxes.size());
  EXPECT_EQ("Database Build?", boxes[0].title);
  EXPECT_EQ(BoxButtons::YesNo, boxes[0].buttons);
  EXPECT_EQ("Pure Blank Notification", boxes[1].title);
  EXPECT_EQ(
      "The requested analysis requires a solvent blank be read first followed by 3 pure samples "
      "(one for each color present).\rPress:  Yes-Continue; No-Stop; Cancel-Continue without "
      "pures",
      boxes[1].text);
  EXPECT_EQ(BoxButtons::YesNoCancel, boxes[1].buttons);

  Launch cancel(ThreeColourMethod(true, false));
  const RunLaunch withoutPures = cancel.newSet(answer::kCancel);
  ASSERT_TRUE(withoutPures.startRun);
  EXPECT_FALSE(withoutPures.setup.PuresPending);
  EXPECT_EQ(1, withoutPures.setup.SampleNumber);

  Launch no(ThreeColourMethod(true, false));
  const RunLaunch stopped = no.newSet(answer::kNo);
  EXPECT_FALSE(stopped.startRun);
  EXPECT_TRUE(stopped.backToNoMethod);
  EXPECT_EQ("Not Loaded", stopped.window.dataFileLabel);
}

TEST(RunLaunch, DatabaseBuildingIsOfferedOnlyWhileControlsAreFewAndNoPuresMeansNoNotice) {
  Launch few(ThreeColourMethod(true, false));
  few.state.Method.Spillover = false;
  few.op.chooseNext(few.state.StartDirectory + "RUN1.FIX");
  few.op.answerNext(answer::kYes);
  const RunLaunch building = LaunchNewDataSet(few.services(), 1);
  EXPECT_TRUE(building.startRun);
  EXPECT_TRUE(building.setup.BuildingDatabases);
  EXPECT_FALSE(building.setup.PuresPending);
  EXPECT_EQ(1u, few.op.messages().size());

  // A cancelled Save As dialog starts nothing and asks nothing.
  Launch cancelled(ThreeColourMethod(true, false));
  cancelled.op.chooseNext("");
  EXPECT_FALSE(LaunchNewDataSet(cancelled.services(), 1).startRun);
  EXPECT_TRUE(cancelled.op.messages().empty());
}

TEST(RunLaunch, AppendingContinuesTheNumbersWithoutQuestions) {
  MethodSettings method = ThreeColourMethod(true, false);
  method.PrintResults = true;
  Launch append(method);
  // The set's file says where numbering goes on, not what the window remembers (7): a second
  // run on the same reopened set continues after the first one's records.
  append.state.DataSet.FixPath = append.state.StartDirectory + "RUN1.FIX";
  testing::writeFile(append.state.DataSet.FixPath, "em wl\t1\r\nS12\t1.000\r\n");
  const RunLaunch launch = LaunchAppend(append.services(), false, 8, 7);
  ASSERT_TRUE(launch.startRun);
  EXPECT_FALSE(launch.setup.NewDataSet);
  EXPECT_EQ(12, launch.setup.SampleNumber);
  testing::writeFile(append.state.DataSet.FixPath, "em wl\t1\r\nS12\t1.000\r\nS13\t1.000\r\n");
  EXPECT_EQ(13, LaunchAppend(append.services(), false, 8, 7).setup.SampleNumber);
  EXPECT_FALSE(launch.setup.BuildingDatabases);
  EXPECT_FALSE(launch.setup.PuresPending);
  EXPECT_TRUE(append.op.shown.empty());
  EXPECT_NE(std::string::npos, append.printer.currentText().find("Appending Data"));

  // Autosampler delivery needs its link: refused settings start no run.
  method.DeliveryMethod = Delivery::Autosampler;
  method.PrintResults = false;
  Launch refused(method);
  refused.autosamplerAccepted = false;
  EXPECT_FALSE(LaunchAppend(refused.services(), false, 1, 0).startRun);
  EXPECT_FALSE(refused.state.Flags.AutosamplerPortOpen);
  refused.autosamplerAccepted = true;
  EXPECT_TRUE(LaunchAppend(refused.services(), false, 1, 0).startRun);
  EXPECT_TRUE(refused.state.Flags.AutosamplerPortOpen);
}

TEST(RunLaunch, TheAutosamplerNoticeNamesThePureStandardAndBlankTubes) {
  MethodSettings method = ThreeColourMethod(true, false);
  method.DeliveryMethod = Delivery::Autosampler;
  method.Autosampler.StartingTube = 4;
  method.Autosampler.HasStandard = true;
  method.Autosampler.StandardTube = 1;
  method.Autosampler.HasBlank = true;
  method.Autosampler.BlankTube = 2;
  EXPECT_EQ(
      "The requested analysis requires reading a pure sample for each color to be quantified.  "
      "The method calls for reading 3 wavelengths so tubes 4 - 6 must contain pure samples.\r"
      "Standard is required in tube position 1.\rBlank (pure solvent) is required in tube "
      "position 2.\rPress:  Yes-Continue; No-Stop; Cancel-Continue without pures",
      PureBlankNotice(method));
}

}  // namespace
}  // namespace zorvel
