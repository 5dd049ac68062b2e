#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "core/instruments/instrument_error.h"
#include "run/run_fixture.h"
#include "sim/fluorimeter_sim.h"

namespace zorvel {
namespace {

using testing::readGolden;
using testing::RunFixture;
using testing::ThreeColourMethod;
using testing::WithPures;

TEST(CuvetteRun, ReplicatesAreFiledAsTheyAreReadAndPrinted) {
  MethodSettings method = ThreeColourMethod(true, false, 3);
  method.PrintResults = true;
  RunFixture run(method);
  run.controller->press(RunButton::InitRead);
  run.controller->press(RunButton::InitRead);
  // The first two replicates are on disk before the operator decides.
  const std::string beforeDecision = run.file(run.state.DataSet.FixPath);
  EXPECT_EQ(2, std::count(beforeDecision.begin(), beforeDecision.end(), '\n'));
  EXPECT_EQ(0u, beforeDecision.find("R1\t101.000"));
  run.controller->Comment_Change("clear");
  run.controller->act(RunAction::Accept);
  EXPECT_SAME_BYTES(readGolden("run/replicates.FIX"), run.file(run.state.DataSet.FixPath));
  EXPECT_EQ(
      "1         101.0  102.0  103.0\n"
      "1         104.0  105.0  106.0\n"
      "1         107.0  108.0  109.0 ***\n",
      run.printer.currentText());
  run.controller->act(RunAction::Quit);
  EXPECT_EQ(1u, run.printer.documents.size());
}

TEST(CuvetteRun, QuittingDuringThePuresDeletesTheRunsFilesOnlyAfterYes) {
  RunFixture run(ThreeColourMethod(true, true), WithPures());
  run.controller->press(RunButton::InitRead);
  run.controller->press(RunButton::InitRead);
  run.controller->act(RunAction::Accept);
  run.controller->act(RunAction::Accept);
  ASSERT_NE("", run.file(run.state.DataSet.FixPath));
  ASSERT_NE("", run.file(run.state.DataSet.SynPath));

  run.op.answerNext(answer::kNo);
  run.controller->act(RunAction::Quit);
  EXPECT_EQ(RunState::AwaitingRead, run.controller->state());
  EXPECT_NE("", run.file(run.state.DataSet.FixPath));
  const MessageBoxRequest box = run.op.messages().back();
  EXPECT_EQ(
      "You are trying to quit prior to reading all pure samples.  If you quit the data file will "
      "be deleted and you will need to recreate it and reread the solvent blank and ALL pure "
      "samples.  Do you wish to quit now?",
      box.text);
  EXPECT_EQ(BoxButtons::YesNo, box.buttons);

  run.op.answerNext(answer::kYes);
  run.controller->OK_KeyPress('Q');
  EXPECT_EQ(RunState::Closed, run.controller->state());
  EXPECT_FALSE(std::filesystem::exists(run.state.DataSet.FixPath));
  EXPECT_FALSE(std::filesystem::exists(run.state.DataSet.SynPath));
  EXPECT_NE(std::string::npos, run.file(run.state.LogPath).find("Run aborted\t"));
  EXPECT_FALSE(run.line.isOpen());
}

TEST(CuvetteRun, ResetNumberAppliesToTheNextReading) {
  RunFixture run(ThreeColourMethod(true, false));
  run.op.typeNext("100");
  run.controller->ResetSamp_Click();
  EXPECT_EQ(
      "Current sample number is 0.  Please enter new sample number.  The number offered, 1, is "
      "the one the next sample would take.",
      run.op.shown.back().box.text);
  EXPECT_EQ("Sample Number Reset", run.op.shown.back().box.title);
  run.controller->press(RunButton::InitRead);
  // No reset while the instrument is being set up or a reading is under way.
  EXPECT_FALSE(run.view.resetEnabled);
  run.controller->press(RunButton::InitRead);
  EXPECT_EQ("100", run.view.rowLabels[2]);
  run.controller->act(RunAction::Accept);
  // OK on the number the box offers keeps the numbering: the next reading is 101, not 100
  // again.
  run.controller->ResetSamp_Click();
  EXPECT_EQ(
      "Current sample number is 100.  Please enter new sample number.  The number offered, 101, "
      "is the one the next sample would take.",
      run.op.shown.back().box.text);
  run.controller->press(RunButton::InitRead);
  EXPECT_EQ("101", run.view.rowLabels[3]);
  run.controller->act(RunAction::Accept);
  run.op.typeNext("7");
  run.controller->ResetSamp_Click();
  run.op.typeNext("");  // cancelled: nothing changes
  run.controller->ResetSamp_Click();
  run.controller->press(RunButton::InitRead);
  EXPECT_EQ("7", run.view.rowLabels[4]);
}

TEST(CuvetteRun, KeysOutsideTheChoicesOnOfferBeepAndDoNothing) {
  RunFixture run(ThreeColourMethod(true, false), WithPures());
  run.controller->OK_KeyPress('r');  // not while the caption is "&Init"
  EXPECT_EQ(RunState::AwaitingInit, run.controller->state());
  run.controller->OK_KeyPress('i');
  run.controller->OK_KeyPress('r');
  ASSERT_EQ(RunState::AwaitingDecision, run.controller->state());
  run.controller->AcceptReject_KeyPress('c');  // the solvent blank offers accept/reject only
  run.controller->AcceptReject_KeyPress('x');
  EXPECT_EQ(2, run.op.beeps);
  EXPECT_EQ(RunState::AwaitingDecision, run.controller->state());
  run.controller->OK_KeyPress('q');  // no quitting with a decision open
  EXPECT_EQ(RunState::AwaitingDecision, run.controller->state());
  // F5 and F11 belong to tray runs: in a cuvette run they show nothing and stop nothing.
  run.controller->keyDown(Key::F5);
  run.controller->keyDown(Key::F11);
  EXPECT_EQ("", run.view.legend);
  EXPECT_FALSE(run.controller->StopRequested.load());
}

TEST(CuvetteRun, DatabaseBuildingEndsWhenBothCountsReachThreeThenPuresStartAtColourOne) {
  RunSetup setup = WithPures();
  setup.BuildingDatabases = true;
  RunFixture run(ThreeColourMethod(true, false), setup);
  run.controller->press(RunButton::InitRead);
  EXPECT_EQ(
      "Analysis Configuration Complete|Building Control [0] and Blank [0] Databases|[R]ead "
      "Sample or [Q]uit",
      run.view.prompt());
  for (int k = 0; k < 6; ++k) {
    run.controller->press(RunButton::InitRead);
    EXPECT_EQ("Enter Comments NOW if needed|[R]eject/[C]ontrol/[B]lank", run.view.prompt());
    run.controller->act(k < 3 ? RunAction::Control : RunAction::Blank);
    if (k < 5) {
      EXPECT_EQ("Building Control [" + std::to_string(std::min(k + 1, 3)) + "] and Blank [" +
                    std::to_string(std::max(k - 2, 0)) +
                    "] Databases|Waiting For New Cuvette.|[R]ead Sample or [Q]uit.",
                run.view.prompt());
    }
  }
  EXPECT_EQ(
      "Insert a cuvette with pure sample for color 1.|Fixed wavelength (493/515)|[R]ead Sample or "
      "[Q]uit.",
      run.view.prompt());
  run.controller->press(RunButton::InitRead);
  EXPECT_EQ("[A]ccept/[R]eject", run.view.prompt());
}

// The real instrument model: slits and wavelengths are sent only when they change, and a
// reading taken away from its wavelengths is taken again.
TEST(CuvetteRun, CommandTranscriptOverTheSimulatedFluorimeter) {
  MethodSettings method = ThreeColourMethod(true, false);
  method.NoColors = 2;
  method.FixedPairs.colour(1) = {520, 540, 5, 5, 5};
  method.FixedPairs.colour(2) = {493, 515, 5, 5, 4};
  AppState state;
  state.Method = method;
  const std::string dir = testing::makeTempDir("transcript");
  state.DataSet.FixPath = dir + "T.FIX";
  VirtualClock clock;
  sim::Bench bench;
  sim::FluorimeterSim instrument(bench, 2, 7);
  instrument.setTiming(sim::FluorimeterSim::InstantTiming());
  instrument.misreportNextReadings(0.2);
  instrument.misreportNextReadings(0.0);
  instrument.misreportNextReadings(0.1);
  sim::SimulatedLine line(clock, instrument);
  ScriptedOperator op;
  PagePrinter printer;
  FilingCheck checks(state, clock, op);
  testing::RecordingView view;
  RunController run(RunServices{state, op, clock, printer, line, checks}, RunSetup{}, view);
  run.Form_Load();
  run.press(RunButton::InitRead);
  run.press(RunButton::InitRead);
  const std::vector<std::string> expected = {
      "$RE 0",   "$PH 0",           "$ES 0",   "$FW 7",   "$PV 820",         "$SS 240", "$SX 5.0",
      "$SM 5.0", "$GM 520.0,540.0", "$RD 1.0", "$RD 1.0", "$GM 493.0,515.0", "$RD 1.0"};
  EXPECT_EQ(expected, instrument.commands());
  EXPECT_EQ(RunState::AwaitingDecision, run.state());
  EXPECT_TRUE(op.shown.empty());
}

// The set-up and a reading over the simulated instrument, which can be made to stay silent.
struct SimulatedRun {
  SimulatedRun() {
    state.Method = ThreeColourMethod(true, false);
    state.DataSet.FixPath = testing::makeTempDir("silent") + "T.FIX";
    instrument.setTiming(sim::FluorimeterSim::InstantTiming());
    run.Form_Load();
  }
  AppState state;
  VirtualClock clock;
  sim::Bench bench;
  sim::FluorimeterSim instrument{bench, 2, 7};
  sim::SimulatedLine line{clock, instrument};
  ScriptedOperator op;
  PagePrinter printer;
  FilingCheck checks{state, clock, op};
  testing::RecordingView view;
  RunController run{RunServices{state, op, clock, printer, line, checks}, RunSetup{}, view};
};

TEST(CuvetteRun, StatusTimeOutsCountAcrossTheWholeSetUp) {
  {
    SimulatedRun one;
    one.instrument.silenceNextCommands(1);
    one.run.press(RunButton::InitRead);
    EXPECT_EQ(RunState::AwaitingRead, one.run.state());
    EXPECT_EQ(1, one.state.Links.LinkTimeoutCount);  // left for the next command to see
    one.run.press(RunButton::InitRead);
    EXPECT_EQ(0, one.state.Links.LinkTimeoutCount);  // each reading command starts afresh
  }
  SimulatedRun two;
  two.instrument.silenceNextCommands(2);
  two.run.press(RunButton::InitRead);
  EXPECT_TRUE(two.op.ended);
  EXPECT_EQ(RunState::Closed, two.run.state());
  EXPECT_TRUE(two.view.closed);
  EXPECT_EQ(kCommunicationErrorTitle, two.op.messages().back().title);
}

}  // namespace
}  // namespace zorvel
