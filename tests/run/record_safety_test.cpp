// What a run does when its records cannot go on the disk, and how it names and bounds its
// sample numbers.
#include <gtest/gtest.h>

#include <filesystem>

#include "core/datafiles/data_set_headers.h"
#include "run/run_fixture.h"

namespace zorvel {
namespace {

using testing::RunFixture;
using testing::ThreeColourMethod;

RunSetup Appended(int lastNumber) {
  RunSetup setup;
  setup.NewDataSet = false;
  setup.SampleNumber = lastNumber;
  setup.FirstSampleNumber = lastNumber + 1;
  return setup;
}

TEST(RecordSafety, AReadingTheDiskRefusesIsWrittenAgainOnRetryOrOfferedAgainUnderItsNumber) {
  RunFixture run(ThreeColourMethod(true, false));
  const std::string folder = run.state.StartDirectory + "gone/";
  run.state.DataSet.FixPath = folder + "LIVER.FIX";
  run.controller->press(RunButton::InitRead);
  run.controller->press(RunButton::InitRead);
  run.op.answerNext(answer::kRetry);
  run.op.answerNext(answer::kCancel);
  run.controller->act(RunAction::Accept);
  ASSERT_EQ(2u, run.op.messages().size());
  const MessageBoxRequest box = run.op.messages()[0];
  EXPECT_EQ("The reading could not be written to " + folder +
                "LIVER.FIX: No such file or directory.\r\rRetry writes it again; Cancel leaves "
                "the reading unrecorded.",
            box.text);
  EXPECT_EQ(BoxButtons::RetryCancel, box.buttons);
  EXPECT_EQ(RunState::AwaitingRead, run.controller->state());
  EXPECT_EQ("NS", run.view.rowLabels[2]);
  EXPECT_EQ(1, run.controller->readingsNotRecorded());

  std::filesystem::create_directories(folder);
  run.controller->press(RunButton::InitRead);
  EXPECT_EQ("1", run.view.rowLabels[3]);
  run.controller->act(RunAction::Accept);
  EXPECT_EQ(0u, run.file(run.state.DataSet.FixPath).find("S1\t"));
}

TEST(RecordSafety, ThePromptNamesTheNextNumberAndNoNumberPasses32767) {
  RunFixture reopened(ThreeColourMethod(true, false), Appended(208));
  reopened.controller->press(RunButton::InitRead);
  EXPECT_NE(std::string::npos, reopened.view.prompt().find("Sample needed: Sample 209|"));
  reopened.controller->press(RunButton::InitRead);
  EXPECT_EQ("209", reopened.view.rowLabels[2]);

  RunFixture full(ThreeColourMethod(true, false), Appended(32767));
  full.controller->press(RunButton::InitRead);
  full.controller->press(RunButton::InitRead);
  EXPECT_EQ(RunState::AwaitingRead, full.controller->state());
  ASSERT_EQ(1u, full.op.messages().size());
  EXPECT_EQ(
      "The next reading would be sample 32768, beyond 32767, the last number a data set can "
      "hold.  Start a new data set to go on.",
      full.op.messages()[0].text);
  EXPECT_TRUE(full.view.rowLabels.empty());
}

TEST(RecordSafety, ANewSetThatReceivedNoReadingIsNotLeftBehind) {
  RunFixture run(ThreeColourMethod(true, false));
  WriteDataSetHeaders(run.state, run.state.StartDirectory + "EMPTY.FIX", CalendarTime{},
                      run.checks);
  ASSERT_TRUE(std::filesystem::exists(run.state.DataSet.CtlPath));
  run.controller->press(RunButton::InitRead);
  run.controller->act(RunAction::Quit);
  EXPECT_EQ(RunState::Closed, run.controller->state());
  for (const std::string& path :
       {run.state.DataSet.FixPath, run.state.DataSet.CtlPath, run.state.DataSet.BlkPath})
    EXPECT_FALSE(std::filesystem::exists(path)) << path;
}

}  // namespace
}  // namespace zorvel
