#include <gtest/gtest.h>

#include "run/run_fixture.h"

namespace zorvel {
namespace {

using testing::readGolden;
using testing::RunFixture;
using testing::ThreeColourMethod;
using testing::WithPures;

constexpr const char* kAcceptReject = "[A]ccept/[R]eject";

void decide(RunFixture& run, int index) {
  const RunAction decisions[] = {RunAction::Accept, RunAction::Reject, RunAction::Control,
                                 RunAction::Blank};
  run.controller->act(decisions[index - 1]);
}

// Only -9999 after the division by 1000 is the gap marker; a raw -9999 is a point of -9.999.
TEST(CuvetteRun, AScanPointOfMinusNinePointNineNineNineIsKept) {
  RunFixture run(ThreeColourMethod(false, true), WithPures());
  run.instrument.lowPointAt = 3;
  run.controller->press(RunButton::InitRead);  // the instrument is set up
  run.controller->press(RunButton::InitRead);  // the solvent blank is scanned
  ASSERT_EQ(5u, run.view.plotted.size());
  EXPECT_FLOAT_EQ(-9.999f, static_cast<float>(run.view.plotted[2].value));
  EXPECT_EQ(401.0, run.view.plotted[2].x);
}

TEST(CuvetteRun, SynchronousScansOnlyFileSamplesPuresControlsAndBlanks) {
  RunFixture run(ThreeColourMethod(false, true), WithPures());
  EXPECT_EQ("LIVER.SYN", run.view.caption);
  run.controller->press(RunButton::InitRead);

  run.controller->press(RunButton::InitRead);
  EXPECT_EQ(std::string("Maximum Synch Value: 15.000|") + kAcceptReject, run.view.prompt());
  // Five points from 400 to 402 nm, plotted in the band of 385-415 nm.
  ASSERT_EQ(5u, run.view.plotted.size());
  EXPECT_EQ(402.0, run.view.plotted.back().x);
  EXPECT_EQ(15.0, run.view.plotted.back().value);
  EXPECT_EQ(100, run.view.progress);
  decide(run, 1);
  run.controller->press(RunButton::InitRead);
  decide(run, 1);

  // A "no point" marker in the stream is no point; a rejected scan is scanned again.
  run.instrument.noPointBefore = 2;
  run.controller->press(RunButton::InitRead);
  EXPECT_EQ(5u, run.view.plotted.size());
  run.op.answerNext(answer::kRetry);
  decide(run, 2);
  EXPECT_EQ("Reread synchronous sample or abort the sample?  RETRY rereads, CANCEL aborts.",
            run.op.messages().back().text);
  EXPECT_EQ("ZORVEL QUERY", run.op.messages().back().title);
  decide(run, 1);
  run.instrument.noPointBefore = 0;
  run.controller->press(RunButton::InitRead);
  decide(run, 1);
  EXPECT_EQ("Waiting For New Cuvette.|[R]ead Sample or [Q]uit.", run.view.prompt());

  run.controller->press(RunButton::InitRead);
  EXPECT_EQ("Maximum Synch Value: 55.000|[A]ccept/[R]eject/[C]ontrol/[B]lank", run.view.prompt());
  decide(run, 1);
  run.controller->press(RunButton::InitRead);
  decide(run, 3);
  EXPECT_EQ(1, run.checks.ControlCount());
  run.controller->press(RunButton::InitRead);
  decide(run, 4);
  EXPECT_EQ(1, run.checks.BlankCount());
  run.controller->press(RunButton::InitRead);
  run.op.answerNext(answer::kCancel);
  decide(run, 2);
  EXPECT_EQ(RunState::AwaitingRead, run.controller->state());
  run.controller->press(RunButton::InitRead);
  decide(run, 1);
  run.controller->act(RunAction::Quit);

  EXPECT_SAME_BYTES(readGolden("run/synch.SYN"), run.file(run.state.DataSet.SynPath));
  EXPECT_SAME_BYTES(readGolden("run/synch.STL"), run.file(run.state.DataSet.StlPath));
  EXPECT_SAME_BYTES(readGolden("run/synch.SLK"), run.file(run.state.DataSet.SlkPath));
  EXPECT_EQ("", run.file(run.state.DataSet.FixPath));
  EXPECT_EQ("", run.file(run.state.DataSet.CtlPath));
}

TEST(CuvetteRun, FixedReadingThenScanOfTheSameCuvette) {
  RunFixture run(ThreeColourMethod(true, true), WithPures());
  EXPECT_EQ("LIVER.FIX/LIVER.SYN", run.view.caption);
  run.controller->press(RunButton::InitRead);
  for (int pure = 0; pure <= 3; ++pure) {
    run.controller->press(RunButton::InitRead);
    EXPECT_EQ(kAcceptReject, run.view.prompt());
    decide(run, 1);
    EXPECT_EQ(
        std::string("Maximum Synch Value: ") + std::to_string(pure + 1) + "5.000|" + kAcceptReject,
        run.view.prompt());
    if (pure == 2) {
      run.op.answerNext(answer::kRetry);
      decide(run, 2);
      EXPECT_EQ(
          "Reread synchronous sample or abort the entire sample including the fixed wavelength "
          "read?  RETRY rereads, CANCEL aborts.",
          run.op.messages().back().text);
    }
    decide(run, 1);
    if (pure == 0) {
      // The second cuvette: the fixed limits come back, then only what the scan changed.
      run.instrument.commands.clear();
    }
    if (pure == 1) {
      const std::vector<std::string> expected = {
          "$MX 0",     "$AL 200",   "$AH 800",         "$MX 1",   "$AL 200",
          "$AH 900",   "$MX 0",     "$GM 493.0,515.0", "$RD 2.0", "$GM 520.0,540.0",
          "$RD 2.0",   "$SX 10.0",  "$GM 617.5,640.0", "$RD 2.0", "$SX 5.0",
          "$MX 0",     "$AL 400.0", "$AH 402.0",       "$MX 1",   "$AL 420.0",
          "$AH 422.0", "$MQ 0",     "$MX 2",           "$SC 1"};
      EXPECT_EQ(expected, run.instrument.commands);
    }
  }

  run.controller->press(RunButton::InitRead);
  run.controller->Comment_Change("hazy");
  decide(run, 1);
  decide(run, 1);

  // A control: its scan is asked about as a control, read again, then both parts filed.
  run.controller->press(RunButton::InitRead);
  decide(run, 3);
  EXPECT_EQ(std::string("Maximum Synch Value: 65.000|") + kAcceptReject, run.view.prompt());
  run.op.answerNext(answer::kRetry);
  decide(run, 2);
  EXPECT_EQ(
      "[R]eread synchronous sample or abort the entire control including the fixed wavelength "
      "read?  RETRY rereads, CANCEL aborts.",
      run.op.messages().back().text);
  decide(run, 1);
  run.controller->press(RunButton::InitRead);
  decide(run, 4);
  decide(run, 1);
  EXPECT_EQ(1, run.checks.ControlCount());
  EXPECT_EQ(1, run.checks.BlankCount());

  run.controller->press(RunButton::InitRead);
  decide(run, 1);
  run.op.answerNext(answer::kCancel);
  decide(run, 2);
  run.controller->press(RunButton::InitRead);
  decide(run, 1);
  decide(run, 1);
  run.controller->act(RunAction::Quit);

  for (const char* ext : {"FIX", "SYN", "CTL", "BLK", "STL", "SLK"}) {
    SCOPED_TRACE(ext);
    EXPECT_SAME_BYTES(readGolden(std::string("run/both.") + ext),
                      run.file(run.state.StartDirectory + "LIVER." + ext));
  }
}

}  // namespace
}  // namespace zorvel
