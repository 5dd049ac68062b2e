#include <gtest/gtest.h>

#include <vector>

#include "core/run/run_status.h"
#include "core/run/tray_status_lines.h"

namespace zorvel {
namespace {

constexpr long kStartS = 23 * 3600 + 59 * 60;  // 23:59:00, so the run passes midnight

void Start(RunStatusBoard& board) {
  board.settingUp(4, 2, kStartS, CalendarTime{}, "/d/RUN.LOG");
}

TEST(RunStatus, ToldAsTheRunGoesAndTheKeysArePressed) {
  RunStatusBoard board;
  Start(board);
  // A control read ahead of the range is no tube of it.
  board.tubeStarted(1, 0, "Control", 12);
  EXPECT_EQ("Before tube 1 of 2: Control 12 in tray tube 1",
            DescribeTrayStatus(board.snapshot(), kStartS).tube);
  std::vector<RunStatusState> told;
  board.setListener([&told](const RunStatus& s) { told.push_back(s.state); });
  board.tubeStarted(5, 1, "Sample", 12);
  board.step("Locating Sample");
  board.pauseRequested();
  TrayStatusLines lines = DescribeTrayStatus(board.snapshot(), kStartS + 30);
  EXPECT_EQ("Tube 1 of 2: Sample 12 in tray tube 5", lines.tube);
  EXPECT_EQ("Step: Locating Sample", lines.step);
  EXPECT_EQ("Pause requested: pausing after tube 5", lines.request);
  // A minute per tube: three more to go.
  board.tubeDone(0);
  board.paused();
  EXPECT_EQ("Paused", DescribeTrayStatus(board.snapshot(), 30).request);
  // The estimate holds between tubes; the elapsed and current times tick.
  EXPECT_EQ((std::vector<std::string>{"Elapsed Time: 00:01:30    Completed (1 / 4)",
                                      "Time Per Sample: 00:01:00", "Estimated Completion: 00:03:00",
                                      "Current Time: 00:00:30"}),
            DescribeTrayStatus(board.snapshot(), 30).timeInfo);
  board.resumed();
  board.abortRequested();
  board.alert("Tube 5  S12  Control alert");
  lines = DescribeTrayStatus(board.snapshot(), 100);
  EXPECT_EQ("Abort requested: stopping after tube 5", lines.request);
  EXPECT_EQ("1 alert logged in /d/RUN.LOG; the last: Tube 5  S12  Control alert", lines.alerts);
  EXPECT_EQ(1, lines.progressDone);
  EXPECT_EQ(4, lines.progressOf);
  board.ended(RunEnd::Aborted);
  EXPECT_FALSE(DescribeTrayStatus(board.snapshot(), 100).shown);
  EXPECT_EQ(RunEnd::Aborted, board.snapshot().end);
  const std::vector<RunStatusState> expected{
      RunStatusState::Reading,        RunStatusState::Reading,
      RunStatusState::PauseRequested, RunStatusState::PauseRequested,
      RunStatusState::Paused,         RunStatusState::Reading,
      RunStatusState::AbortRequested, RunStatusState::AbortRequested,
      RunStatusState::Ended};
  EXPECT_EQ(expected, told);
}

TEST(RunStatus, AKeyBetweenRunsChangesNothing) {
  RunStatusBoard board;
  board.pauseRequested();
  board.abortRequested();
  EXPECT_EQ(RunStatusState::Idle, board.snapshot().state);
  EXPECT_FALSE(DescribeTrayStatus(board.snapshot(), 0).shown);
}

}  // namespace
}  // namespace zorvel
