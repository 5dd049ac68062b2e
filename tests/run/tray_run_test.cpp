#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>

#include "core/run/run_alert_log.h"
#include "core/run/tray_status_lines.h"
#include "core/run/tube_cycle.h"
#include "run/tray_fixture.h"

namespace zorvel {
namespace {

using testing::ExpectGolden;
using testing::TrayFixture;
using testing::TrayMethod;

RunSetup PuresDue() {
  RunSetup setup;
  setup.PuresPending = true;
  setup.PureStartPending = true;
  return setup;
}

TEST(TubeCycle, RinseDrawAndDisposalOfOneTubeByteForByte) {
  TrayFixture fx(TrayMethod());
  fx.state.Links.CurrentArmTube = -1;
  std::vector<std::string> statuses;
  TubeCycle cycle(fx.arm, fx.pump, fx.state.Method.Autosampler,
                  [&](const std::string& s) { statuses.push_back(s); }, {});
  ASSERT_EQ(LinkFailure::None, cycle.RinseAndDry());
  EXPECT_FALSE(fx.bench.flowCellFilled);
  ASSERT_EQ(LinkFailure::None, cycle.DrawIntoFlowCell(7, 105, 70, fx.state.Steps));
  EXPECT_EQ("tube 7", fx.bench.flowCell.label);
  ASSERT_EQ(LinkFailure::None, cycle.DisposeSample(Disposition::ThrowAway, SampleType::Sample));
  EXPECT_EQ((std::vector<std::string>{"Locating Sample", "Extracting Sample",
                                      "Flushing Sample Into Flow Cell",
                                      "Back Flushing Sample Into Flow Cell"}),
            statuses);
  ExpectGolden("run/tube_cycle.txt", fx.conversation());
}

TEST(TrayRun, ShortRunWithPuresAndInterleavedReferencesFilesEachTubeAsItIsRead) {
  MethodSettings method = TrayMethod();
  method.NoPures = 1;
  TrayFixture fx(method, PuresDue());
  fx.controller->press(RunButton::InitRead);
  EXPECT_EQ("Analysis Configuration Complete|[R]ead Sample or [Q]uit", fx.view.prompt());
  fx.controller->press(RunButton::InitRead);
  EXPECT_EQ(RunState::AwaitingRead, fx.controller->state());
  EXPECT_EQ("Run completed.|[R]ead Tray or [Q]uit", fx.view.prompt());
  ExpectGolden("run/tray_short.fix", fx.file(fx.state.DataSet.FixPath));
  ExpectGolden("run/tray_short.ctl", fx.file(fx.state.DataSet.CtlPath));
  ExpectGolden("run/tray_short.blk", fx.file(fx.state.DataSet.BlkPath));
  ExpectGolden("run/tray_short.txt", fx.conversation());
  EXPECT_TRUE(fx.op.messages().empty());
}

TEST(TrayRun, EachTubesRecordHoldsWhatThatTubeHeldOnTheSimulatedBench) {
  MethodSettings method = TrayMethod();
  method.Autosampler.HasStandard = false;
  method.Autosampler.HasBlank = false;
  TrayFixture fx(method);
  sim::FluorimeterSim model(fx.bench, 2, 7);
  model.setTiming(sim::FluorimeterSim::InstantTiming());
  fx.instrument.model = &model;
  // Tubes 5 to 8: the first, second and third colour alone, then half the first.
  const int dyes[] = {4, 5, 10, 4};
  for (int k = 0; k < 4; ++k) {
    sim::Sample sample;
    sample.dyes[static_cast<std::size_t>(dyes[k])] = k == 3 ? 0.5 : 1.0;
    fx.bench.tubes[5 + k] = sample;
  }
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  std::vector<std::vector<double>> rows;
  std::istringstream records(fx.file(fx.state.DataSet.FixPath));
  for (std::string line; std::getline(records, line);) {
    std::istringstream fields(line);
    std::string label, tube;
    std::vector<double> values(3);
    fields >> label >> tube >> values[0] >> values[1] >> values[2];
    EXPECT_EQ(std::to_string(5 + rows.size()), tube);
    rows.push_back(values);
  }
  ASSERT_EQ(4u, rows.size());
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_EQ(k, static_cast<std::size_t>(std::max_element(rows[k].begin(), rows[k].end()) -
                                          rows[k].begin()))
        << "tube " << 5 + k;
  }
  EXPECT_NEAR(0.5, rows[3][0] / rows[0][0], 0.05);
}

TEST(TrayRun, SavedSamplesGoBackToTheirTubesWhileReferencesAlwaysGoToTheRinseStation) {
  MethodSettings method = TrayMethod();
  method.Autosampler.SampleDisposition = Disposition::Save;
  method.Autosampler.EndingTube = 6;
  TrayFixture fx(method);
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  // 750 uL drawn: 100 pushed back into the tube at once, the rest by the disposal.
  EXPECT_DOUBLE_EQ(750.0, fx.bench.receivedUl[5]);
  EXPECT_DOUBLE_EQ(750.0, fx.bench.receivedUl[6]);
  // The control and blank tubes only get their back-flush; their liquid goes to waste.
  EXPECT_DOUBLE_EQ(2 * 100.0, fx.bench.receivedUl[1]);
  EXPECT_DOUBLE_EQ(2 * 100.0, fx.bench.receivedUl[2]);
}

TEST(TrayRun, TwoRepetitionsWithBothScanKindsGiveTwoRecordsOfEachKindUnderOneNumber) {
  MethodSettings method = TrayMethod(true, true, 2);
  method.Autosampler.HasStandard = false;
  method.Autosampler.HasBlank = false;
  method.Autosampler.EndingTube = 6;
  TrayFixture fx(method);
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  EXPECT_SAME_BYTES(
      "S1\t5\t501.000\t502.000\t503.000\r\nS1\t5\t504.000\t505.000\t506.000\r\n"
      "S2\t6\t601.000\t602.000\t603.000\r\nS2\t6\t604.000\t605.000\t606.000\r\n",
      fx.file(fx.state.DataSet.FixPath));
  const std::string scans = fx.file(fx.state.DataSet.SynPath);
  EXPECT_EQ(4, std::count(scans.begin(), scans.end(), '\n'));
  EXPECT_EQ(0u, scans.find("S1 "));
  EXPECT_NE(std::string::npos, scans.find("\nS1 "));
  EXPECT_NE(std::string::npos, scans.find("\nS2 "));
}

int countOf(const std::vector<std::string>& lines, const std::string& line) {
  return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

TEST(TrayRun, AnAbortAfterTheRinseSendsTheArmHomeWithoutFinishing) {
  TrayFixture fx(TrayMethod());
  int rinses = 0;
  std::string last;
  fx.onYield = [&] {
    const std::string now = fx.view.status.empty() ? "" : fx.view.status.back();
    if (now == "Rinsing & Drying System" && last != now && ++rinses == 4) {
      fx.controller->keyDown(Key::F5);
      EXPECT_EQ("Aborting.  Please Wait.", fx.view.legend);
      // Told at once, with the tube the run stops after.
      const RunStatus told = fx.controller->runStatus().snapshot();
      EXPECT_EQ(RunStatusState::AbortRequested, told.state);
      EXPECT_EQ("Abort requested: stopping after the rinse, before tube 6",
                DescribeTrayStatus(told, 0).request);
    }
    last = now;
  };
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  // C1, B1, S1 (tube 5) were read; tube 6 was never touched.
  EXPECT_SAME_BYTES("S1\t5\t501.000\t502.000\t503.000\r\n", fx.file(fx.state.DataSet.FixPath));
  EXPECT_EQ("Do you want to abort the current run", fx.op.messages().at(0).text);
  EXPECT_EQ(0, countOf(fx.view.statusLog, "Finishing up run."));
  EXPECT_EQ("Run aborted.|[R]ead Tray or [Q]uit", fx.view.prompt());
  // The question came under its own status, and nothing of the run is left on show.
  EXPECT_EQ(1, countOf(fx.view.statusLog, "Abort requested"));
  EXPECT_EQ("", fx.view.legend);
  EXPECT_TRUE(fx.view.timeInfo.empty());
  EXPECT_EQ(RunEnd::Aborted, fx.controller->runStatus().snapshot().end);
  EXPECT_FALSE(DescribeTrayStatus(fx.controller->runStatus().snapshot(), 0).shown);
  const std::string talk = fx.conversation();
  EXPECT_EQ(talk.rfind("arm > RESET<CR>"), talk.rfind("arm >"));
  // Tube 6 stands at x = 110: the arm never went there.
  EXPECT_EQ(std::string::npos, talk.find("SETM ABSPOS=110,40"));
  EXPECT_EQ(0.0, fx.bench.receivedUl[6]);
  EXPECT_EQ(RunState::AwaitingRead, fx.controller->state());
}

TEST(TrayRun, AnAbortAtTheCheckAfterATubeFinishesWithTheRinse) {
  TrayFixture fx(TrayMethod());
  bool pressed = false;
  fx.onYield = [&] {
    if (!pressed && fx.bench.flowCell.label == "tube 6") {
      pressed = true;
      fx.controller->keyDown(Key::F5);
    }
  };
  fx.op.answerNext(answer::kYes);
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  EXPECT_SAME_BYTES("S1\t5\t501.000\t502.000\t503.000\r\nS2\t6\t601.000\t602.000\t603.000\r\n",
                    fx.file(fx.state.DataSet.FixPath));
  EXPECT_EQ(1, countOf(fx.view.statusLog, "Finishing up run."));
  // The finishing rinse ends with the air dry and the arm home.
  const std::string talk = fx.conversation();
  EXPECT_LT(talk.rfind("Y2A2R"), talk.rfind("arm > RESET<CR>"));
  EXPECT_EQ("Run aborted.|[R]ead Tray or [Q]uit", fx.view.prompt());
}

TEST(TrayRun, F11PausesAtTheNextCheckAndAgainResumesWithNothingLost) {
  TrayFixture fx(TrayMethod());
  std::vector<std::string> legends;
  int pausedPolls = 0;
  fx.onYield = [&] {
    if (legends.empty() && fx.bench.flowCell.label == "tube 5") {
      fx.controller->keyDown(Key::F11);
      legends.push_back(fx.view.legend);
      EXPECT_EQ("Pause requested: pausing after tube 5",
                DescribeTrayStatus(fx.controller->runStatus().snapshot(), 0).request);
    }
    if (fx.controller->state() == RunState::Paused && ++pausedPolls == 5) {
      legends.push_back(fx.view.legend);
      // Paused says so, not the step that came before.
      EXPECT_EQ("Paused", fx.view.prompt());
      EXPECT_EQ(RunStatusState::Paused, fx.controller->runStatus().snapshot().state);
      fx.controller->keyDown(Key::F11);
    }
  };
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  EXPECT_EQ((std::vector<std::string>{"Pausing.  Please Wait.", "Paused.  Press F11 to Restart"}),
            legends);
  EXPECT_EQ(5, pausedPolls);
  EXPECT_EQ("", fx.view.legend);
  EXPECT_EQ(RunEnd::Completed, fx.controller->runStatus().snapshot().end);
  EXPECT_EQ("Run completed.|[R]ead Tray or [Q]uit", fx.view.prompt());
  const std::string records = fx.file(fx.state.DataSet.FixPath);
  EXPECT_EQ(4, std::count(records.begin(), records.end(), '\n'));
  EXPECT_TRUE(fx.op.messages().empty());
}

TEST(TrayRun, TubeRangeRefusesAnEndBeforeTheStartOrBeyondTheTray) {
  TrayFixture fx(TrayMethod());
  fx.op.typeNext("7");
  fx.op.typeNext("6");   // before the start
  fx.op.typeNext("13");  // beyond the 12 tubes
  fx.op.typeNext("9");
  fx.controller->TubeRange_Click();
  EXPECT_EQ(7, fx.state.Method.Autosampler.StartingTube);
  EXPECT_EQ(9, fx.state.Method.Autosampler.EndingTube);
  const auto boxes = fx.op.messages();
  ASSERT_EQ(2u, boxes.size());
  EXPECT_EQ(
      "Ending tube must be greater than or equal to the beginning tube and less then the total "
      "tube locations on the tray.",
      boxes[0].text);
  EXPECT_EQ("Enter ending tube number ", fx.op.shown.back().box.text);
  EXPECT_EQ("Tube Range Reset", fx.op.shown.back().box.title);
}

TEST(TrayRun, AControlAlertIsKeptAndLoggedInsteadOfWaitingForAPerson) {
  const std::string entry = "\t03-07-2000\t14:05:09\r\n";
  TrayFixture fx(TrayMethod(), {},
                 "C1\t10\t10\t10" + entry + "C2\t11\t11\t11" + entry + "C3\t12\t12\t12" + entry);
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  EXPECT_EQ(0, fx.alert.asked());
  // Kept: the opening control joined the database, and the later ones pass its wider band.
  EXPECT_EQ(6, fx.quality->ControlCount());
  const auto& names = fx.state.ColourNames;
  const std::regex line("\\d\\d-\\d\\d-2000\tTime\tTube 1\tC1\tControl alert\t" + names[4] +
                        " 493/515: 101.000 outside 7.000 to 15.000 \\(4 SD\\)\t" + names[5] +
                        " 520/540: 102.000 outside 7.000 to 15.000 \\(4 SD\\)\t" + names[10] +
                        " 618/640: 103.000 outside 7.000 to 15.000 \\(4 SD\\)\r\n");
  std::string log = fx.file(fx.state.DataSet.LogFilePath);
  log = std::regex_replace(log, std::regex("\\d\\d:\\d\\d:\\d\\d"), "Time");
  EXPECT_TRUE(std::regex_match(log, line)) << testing::visible(log);
  const auto boxes = fx.op.messages();
  ASSERT_EQ(1u, boxes.size());
  EXPECT_EQ("Error/Maxima exceeded/Alert messages have been logged.  Please check " +
                fx.state.DataSet.LogFilePath + " for details.",
            boxes[0].text);
  const std::string programLog = fx.file(fx.state.LogPath);
  EXPECT_NE(std::string::npos, programLog.find("AS Run Complete"));
}

TEST(UnattendedOperator, TheInstrumentsErrorBoxesGoToTheRunLogOnlyWhileDiverted) {
  TrayFixture fx(TrayMethod());
  RunAlertLog log(fx.state, fx.wallClock);
  UnattendedOperator quiet(fx.op);
  quiet.divertTo(&log);
  log.setTube(7, "S3");
  EXPECT_EQ(answer::kOk, quiet.message("VALUE OUT OF RANGE", kLs50ErrorTitle, BoxIcon::Exclamation,
                                       BoxButtons::Ok));
  EXPECT_EQ(answer::kYes, quiet.message("Do you want to abort the current run", "ZORVEL QUERY",
                                        BoxIcon::Question, BoxButtons::YesNo));
  quiet.divertTo(nullptr);
  quiet.message("VALUE OUT OF RANGE", kLs50ErrorTitle, BoxIcon::Exclamation, BoxButtons::Ok);
  EXPECT_TRUE(log.logged());
  EXPECT_EQ(2u, fx.op.messages().size());
  EXPECT_SAME_BYTES("03-07-2000\t14:05:09\tTube 7\tS3\tInstrument error\tVALUE OUT OF RANGE\r\n",
                    fx.file(fx.state.DataSet.LogFilePath));
}

}  // namespace
}  // namespace zorvel
