#include <gtest/gtest.h>

#include "run/run_fixture.h"

namespace zorvel {
namespace {

using testing::readGolden;
using testing::RunFixture;
using testing::ThreeColourMethod;
using testing::WithPures;

constexpr const char* kReadOrQuit = "[R]ead Sample or [Q]uit.";

// Presses Read and checks the prompt the reading ends with.
void read(RunFixture& run, const std::string& expectedPrompt) {
  run.controller->press(RunButton::InitRead);
  EXPECT_EQ(RunState::AwaitingDecision, run.controller->state());
  EXPECT_EQ(expectedPrompt, run.view.prompt());
}

TEST(CuvetteRun, FixedReadingsFromSolventBlankThroughPuresToSamplesControlsAndBlanks) {
  RunFixture run(ThreeColourMethod(true, false), WithPures());
  EXPECT_EQ("LIVER.FIX", run.view.caption);
  EXPECT_EQ("[I]nitialize Fluorimeter, [Q]uit Analysis.", run.view.prompt());
  EXPECT_EQ((std::vector<std::string>{"493/515", "520/540", "617.5/640"}), run.view.heads);

  run.controller->OK_KeyPress('I');
  EXPECT_EQ(RunState::AwaitingRead, run.controller->state());
  EXPECT_EQ(
      "Analysis Configuration Complete|Sample needed: Pure solvent blank.|[R]ead Sample or "
      "[Q]uit",
      run.view.prompt());
  EXPECT_EQ("&Read Sample", run.view.okCaption);

  read(run, "[A]ccept/[R]eject");
  EXPECT_EQ("Blank", run.view.rowLabels[2]);
  EXPECT_EQ("101.0", (run.view.cells[{2, 1}]));
  EXPECT_FALSE(run.view.commentVisible);
  run.controller->AcceptReject_KeyPress('a');
  EXPECT_EQ(
      std::string("Insert a cuvette with pure sample for color 1.|Fixed wavelength (493/515)|") +
          kReadOrQuit,
      run.view.prompt());

  read(run, "[A]ccept/[R]eject");
  EXPECT_EQ("1P", run.view.rowLabels[3]);
  run.controller->act(RunAction::Accept);
  EXPECT_EQ(
      std::string("Insert a cuvette with pure sample for color 2.|Fixed wavelength (520/540)|") +
          kReadOrQuit,
      run.view.prompt());

  // Rejected and read again at once: the same cuvette, the same number, a new row.
  read(run, "[A]ccept/[R]eject");
  run.op.answerNext(answer::kRetry);
  run.controller->AcceptReject_KeyPress('R');
  EXPECT_EQ("NS", run.view.rowLabels[4]);
  EXPECT_EQ("2P", run.view.rowLabels[5]);
  EXPECT_EQ(RunState::AwaitingDecision, run.controller->state());
  run.controller->act(RunAction::Accept);
  EXPECT_EQ(
      std::string("Insert a cuvette with pure sample for color 3.|Fixed wavelength (618/640)|") +
          kReadOrQuit,
      run.view.prompt());

  read(run, "[A]ccept/[R]eject");
  run.controller->act(RunAction::Accept);
  EXPECT_EQ(std::string("Waiting For New Cuvette.|") + kReadOrQuit, run.view.prompt());
  EXPECT_TRUE(run.view.resetEnabled);

  const std::string decide = "Enter Comments NOW if needed|[A]ccept/[R]eject/[C]ontrol/[B]lank";
  read(run, decide);
  EXPECT_TRUE(run.view.commentVisible);
  EXPECT_EQ("1", run.view.rowLabels[7]);
  run.controller->Comment_Change("  cloudy  ");
  run.controller->act(RunAction::Accept);
  EXPECT_FALSE(run.view.commentVisible);

  // Rejected and cancelled: asked for again, and the next cuvette keeps the number. A comment
  // belongs to the reading it was typed for: it goes with a cancelled reading, and with a
  // control filed, rather than onto the next record.
  read(run, decide);
  const int rejected = run.instrument.cuvette;
  run.controller->Comment_Change("bubble");
  run.op.answerNext(answer::kCancel);
  run.controller->act(RunAction::Reject);
  EXPECT_EQ("NS", run.view.rowLabels[8]);
  EXPECT_EQ(std::string("Waiting For New Cuvette.|") + kReadOrQuit, run.view.prompt());
  // Nothing of it was filed: the operator reads the same cuvette again until it is changed.
  read(run, decide);
  EXPECT_EQ(rejected, run.instrument.cuvette);
  EXPECT_EQ("2", run.view.rowLabels[9]);
  run.controller->act(RunAction::Accept);

  read(run, decide);
  run.controller->Comment_Change("smudged");
  run.controller->AcceptReject_KeyPress('c');
  EXPECT_EQ("Control", run.view.rowLabels[10]);
  EXPECT_EQ(std::string("Waiting For New Cuvette.|") + kReadOrQuit, run.view.prompt());
  read(run, decide);
  run.controller->AcceptReject_KeyPress('b');
  EXPECT_EQ(1, run.checks.ControlCount());
  EXPECT_EQ(1, run.checks.BlankCount());
  read(run, decide);
  EXPECT_EQ("3", run.view.rowLabels[12]);
  run.controller->act(RunAction::Accept);

  run.controller->OK_KeyPress('q');
  // Only the two rejects asked anything; no pures were pending at Quit.
  ASSERT_EQ(2u, run.op.messages().size());
  EXPECT_EQ("Do you wish to abort or reread the sample?  RETRY rereads, CANCEL aborts.",
            run.op.messages()[0].text);
  EXPECT_EQ("ZORVEL QUESTION", run.op.messages()[0].title);
  EXPECT_EQ(BoxButtons::RetryCancel, run.op.messages()[1].buttons);
  EXPECT_EQ(RunState::Closed, run.controller->state());
  EXPECT_TRUE(run.view.closed);

  EXPECT_SAME_BYTES(readGolden("run/fixed.FIX"), run.file(run.state.DataSet.FixPath));
  EXPECT_SAME_BYTES(readGolden("run/fixed.CTL"), run.file(run.state.DataSet.CtlPath));
  EXPECT_SAME_BYTES(readGolden("run/fixed.BLK"), run.file(run.state.DataSet.BlkPath));
  EXPECT_EQ("", run.file(run.state.DataSet.SynPath));
}

}  // namespace
}  // namespace zorvel
