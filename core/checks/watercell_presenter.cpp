#include "core/checks/watercell_presenter.h"

#include <algorithm>
#include <array>

#include "core/files/file_output.h"
#include "core/files/log_line.h"
#include "core/files/paths.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

struct SetUpStep {
  const char* statusText;
  FluorimeterSetting setting;
};

// The water cell is always read at the same conditions, so that every check compares alike:
// the Raman band of water at 350 nm excitation.
using S = FluorimeterSetting;
const std::array<SetUpStep, 8> kSetUp = {{
    {"Set Free Run Mode", S::FreeRun()},
    {"Set Excitation Slit", S::ExSlit(5.0f)},
    {"Set Emission Slit", S::EmSlit(5.0f)},
    {"Set Filter Wheel", S::Filter(2)},
    {"Set PMT Voltage", S::Voltage(820)},
    {"Set Monochromators", S::Wavelengths(350.0f, 397.5f)},
    {"Set Time Interval", S::Interval(0.5f)},
    {"Set Response Time", S::Response(0.0f)},
}};

// The drive sends a point every half second: a line this long quiet has ended its stream.
constexpr int kDriveQuietS = 2;

}  // namespace

WaterCellPresenter::WaterCellPresenter(AppState& state, Operator& op, Clock& clock,
                                       SerialLine& line, WaterCellResult& lastResult,
                                       WaterCellView& view)
    : state_(state), op_(op), clock_(clock), line_(line), result_(lastResult), view_(view) {}

WaterCellButtons WaterCellPresenter::ButtonsFor(WaterCellStage stage) {
  WaterCellButtons b;
  switch (stage) {
    case WaterCellStage::WaitingForStart:
      b.start = b.cancel = b.startIsDefault = true;
      break;
    case WaterCellStage::Running:
      break;
    case WaterCellStage::Within:
      b.ok = b.okIsDefault = b.okCentred = true;
      break;
    case WaterCellStage::Outside:
    case WaterCellStage::Stopped:
      b.rerun = b.ok = b.okIsDefault = b.okIsCancel = true;
      break;
  }
  return b;
}

std::string WaterCellPresenter::waterCellLogPath() const {
  return JoinPath(state_.StartDirectory, std::string(kWaterCellLogName));
}

void WaterCellPresenter::opened() {
  stage_ = WaterCellStage::WaitingForStart;
  view_.printLine(CheckArea::Messages, 1, "Place watercell in the cuvette holder", true);
  view_.printLine(CheckArea::Messages, 2, "and then press the ENTER key or click", false);
  view_.printLine(CheckArea::Messages, 3, "the Start button to start sampling.", false);
  view_.showButtons(ButtonsFor(stage_));
}

bool WaterCellPresenter::beginStart() {
  if (stage_ != WaterCellStage::WaitingForStart) return false;
  stopRequested_ = false;
  view_.setStoppable(true);
  stage_ = WaterCellStage::Running;
  view_.showButtons(ButtonsFor(stage_));
  view_.clearArea(CheckArea::Status);
  return true;
}

bool WaterCellPresenter::beginRerun() {
  if (!ButtonsFor(stage_).rerun) return false;
  stopRequested_ = false;
  view_.setStoppable(true);
  stage_ = WaterCellStage::Running;
  view_.clearArea(CheckArea::Messages);
  view_.showButtons(ButtonsFor(stage_));
  return true;
}

void WaterCellPresenter::ok() {
  if (!ButtonsFor(stage_).ok) return;
  if (stage_ == WaterCellStage::Within) {
    const std::string record = WaterCellRecordLine(result_, clock_.now());
    if (!AppendRecord(waterCellLogPath(), record)) {
      op_.message("The water-cell log " + waterCellLogPath() + " cannot be written.",
                  "ZORVEL ERROR", BoxIcon::Exclamation);
    }
  }
  log("Watercell run complete");
  view_.close();
}

void WaterCellPresenter::cancel() {
  if (stage_ != WaterCellStage::WaitingForStart) return;
  log("Watercell out of limits.  Aborted");
  // The session's last result goes into the program log as it would into ZORVEL.MSF.
  AppendRecord(state_.LogPath, WaterCellHeaderLine() + WaterCellRecordLine(result_, clock_.now()));
  log("Watercell run complete");
  view_.close();
}

void WaterCellPresenter::closeRequested() {
  if (stage_ == WaterCellStage::WaitingForStart) {
    cancel();
  } else if (ButtonsFor(stage_).okIsCancel) {
    ok();
  }
}

void WaterCellPresenter::runCheck() {
  stoppedWhen_.clear();
  log("Watercell run started");
  view_.printLine(CheckArea::Messages, 1, "Setting-up Instrument...Please Wait", true);
  Fluorimeter fluorimeter(line_, clock_, op_, state_.Links, state_.Prefs.Fluorimeter,
                          StatusReader::Water);
  fluorimeter.setStatusText(
      [this](const std::string& text) { view_.printLine(CheckArea::Status, 1, text, true); });
  LinkFailure failure = fluorimeter.open();
  op_.setBusy(true);
  view_.clearArea(CheckArea::Status);
  if (failure == LinkFailure::None) failure = setUpInstrument(fluorimeter);
  if (failure == LinkFailure::None && stoppedWhen_.empty()) {
    failure = collectDrive(fluorimeter.link());
  }
  view_.setProgressVisible(false);
  if (failure == LinkFailure::None && !stoppedWhen_.empty()) {
    stopped(stoppedWhen_);
  } else if (failure == LinkFailure::None) {
    view_.showStep("Water-cell check: done");
    judge();
  } else {
    view_.showStep("Water-cell check stopped: " + std::string(DescribeFailure(failure)));
    view_.printLine(CheckArea::Status, 1,
                    "Time drive stopped: " + std::string(DescribeFailure(failure)), true);
    finish(WaterCellStage::Stopped);
  }
}

LinkFailure WaterCellPresenter::setUpInstrument(Fluorimeter& fluorimeter) {
  const int steps = static_cast<int>(kSetUp.size()) + 1;
  // Each command is answered before the next is sent, so between two the fluorimeter is idle.
  const auto stopBefore = [&](int done, const char* next) {
    if (!stopRequested_) {
      view_.showStep(next);
      view_.showStepProgress(done, steps);
      return false;
    }
    stoppedWhen_ = done == 0 ? std::string("before its first setting")
                             : "after setting " + std::to_string(done) + " of " +
                                   std::to_string(steps - 1) + "; the drive was not started";
    return true;
  };
  int done = 0;
  for (const SetUpStep& step : kSetUp) {
    if (stopBefore(done++, step.statusText)) return LinkFailure::None;
    const LinkFailure failure = fluorimeter.set(step.setting, step.statusText);
    if (failure != LinkFailure::None) return failure;
  }
  if (stopBefore(done, "Starting Time Drive")) return LinkFailure::None;
  const TimeDriveHeaderReply header = fluorimeter.startTimeDrive(kPoints, "Starting Time Drive");
  if (header.failure != LinkFailure::None) return header.failure;
  result_.header = header.fields;
  return LinkFailure::None;
}

LinkFailure WaterCellPresenter::collectDrive(FluorimeterLink& link) {
  view_.printLine(CheckArea::Messages, 1, "Running 2 Minute Time Drive", true);
  view_.clearArea(CheckArea::Status);
  view_.setProgress(0);
  view_.setProgressVisible(true);
  TimeDriveSums sums;
  // The clock starts with the first point, not with the command.
  double startS = 0.0;
  int shownPercent = 0;
  std::size_t strays = 0;
  view_.showStep("Time drive: 0 of " + std::to_string(kPoints) + " points");
  while (sums.count() < kPoints) {
    if (stopRequested_) {
      endStoppedDrive(link, sums.count(), sums.count() > 0 ? clock_.monotonicS() - startS : 0.0);
      return LinkFailure::None;
    }
    const TerminatedText token = link.ReadNumberToken();
    if (MustStop(token.failure)) return token.failure;
    const bool started = sums.count() > 0;
    // Characters that are no number are passed over, but not without end.
    strays = token.text.empty() ? strays + 1 : 0;
    if (strays >= FluorimeterLink::kLongestReply) {
      strays = 0;
      if (!link.RetryAfterRepeats("sent " + std::to_string(FluorimeterLink::kLongestReply) +
                                  " characters during the time drive that are no number")) {
        return LinkFailure::Abandoned;
      }
    }
    if (!token.text.empty()) sums.add(token.text);
    if (!started) {
      startS = clock_.monotonicS();
      continue;
    }
    const double elapsedS = clock_.monotonicS() - startS;
    const int percent = static_cast<int>(std::min(100.0, elapsedS / kProgressSpanS * 100.0));
    if (percent > shownPercent) {
      shownPercent = percent;
      view_.setProgress(percent);
      view_.showStep("Time drive: " + std::to_string(sums.count()) + " of " +
                     std::to_string(kPoints) + " points, " +
                     std::to_string(static_cast<int>(elapsedS)) + " of " +
                     std::to_string(static_cast<int>(kProgressSpanS)) + " s");
    }
  }
  result_.mean = sums.mean(kPoints);
  result_.standardDeviation = sums.standardDeviation(kPoints);
  return LinkFailure::None;
}

void WaterCellPresenter::endStoppedDrive(FluorimeterLink& link, int points, double elapsedS) {
  // The fluorimeter has no command that ends a drive: it streams its points to the last, and
  // only once it is quiet may it be spoken to again.
  const double leftS = std::max(0.0, kProgressSpanS - elapsedS);
  view_.showStep("Stopping: the fluorimeter ends its drive (at most " +
                 std::to_string(static_cast<int>(leftS) + 2 * kDriveQuietS) + " s)");
  link.DrainUntilQuiet(kDriveQuietS, leftS + 2 * kDriveQuietS);
  stoppedWhen_ = "after " + std::to_string(points) + " of " + std::to_string(kPoints) +
                 " points; the fluorimeter has ended its drive";
}

bool WaterCellPresenter::signalAccepted() {
  if (result_.mean > kLeastWaterSignal) return true;
  const std::string least = text::fixed(kLeastWaterSignal, 3);
  const std::string question =
      "The water cell read a mean of " + text::fixed(result_.mean, 3) + ", at or below " + least +
      ": that is no water signal. Check that the water cell is in the cuvette holder, the lamp "
      "is lit and the sample compartment is closed. Keep it as a water-cell baseline anyway?";
  if (op_.message(question, "ZORVEL QUESTION", BoxIcon::Question, BoxButtons::YesNo) ==
      answer::kYes) {
    return true;
  }
  view_.printLine(CheckArea::Status, 3, "Not stored: a mean at or below " + least, false);
  view_.printLine(CheckArea::Status, 4, "is no water signal. Check the water cell and the lamp,",
                  false);
  view_.printLine(CheckArea::Status, 5, "then run the check again.", false);
  return false;
}

void WaterCellPresenter::judge() {
  view_.printLine(CheckArea::Status, 1, WaterCellMeanLine(result_), true);
  if (!signalAccepted()) {
    finish(WaterCellStage::Outside);
    return;
  }
  const std::string path = waterCellLogPath();
  if (!FileExists(path) &&
      !CreateTextFile(path, WaterCellHeaderLine() + WaterCellRecordLine(result_, clock_.now()))) {
    op_.message("The water-cell log " + path + " cannot be created.", "ZORVEL ERROR",
                BoxIcon::Exclamation);
  }
  std::string text;
  ReadWholeFile(path, text);
  // A log with no readable record (only its header, or lines without a TAB) has no history
  // yet: the run is taken as the first, exactly as when the log is created by it.
  const WaterCellHistory history = ReadWaterCellHistory(text);
  const float historyMean = history.mean.value_or(static_cast<float>(result_.mean));
  verdict_ = JudgeWaterCell(historyMean, result_.mean);
  const std::vector<std::string> lines = WaterCellVerdictLines(verdict_);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    view_.printLine(CheckArea::Status, static_cast<int>(i) + 3, lines[i], false);
  }
  finish(verdict_.within ? WaterCellStage::Within : WaterCellStage::Outside);
}

void WaterCellPresenter::stopped(const std::string& when) {
  view_.printLine(CheckArea::Status, 1, "Stopped " + when + ".", true);
  view_.printLine(CheckArea::Status, 2, "Nothing was stored. Rerun to check again.", false);
  view_.showStep("Stopped: nothing stored; the fluorimeter is idle, its port closed");
  finish(WaterCellStage::Stopped);
}

void WaterCellPresenter::finish(WaterCellStage stage) {
  view_.setStoppable(false);
  op_.setBusy(false);
  line_.close();
  stage_ = stage;
  view_.showButtons(ButtonsFor(stage_));
}

void WaterCellPresenter::log(const std::string& entry) {
  WriteLogEntry(state_.LogPath, clock_, entry);
}

}  // namespace zorvel
