#include "core/run/tray_status_lines.h"

#include "core/run/tube_cycle.h"
#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr long kDayS = 86400;

std::string count(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

std::string tubeLine(const RunStatus& s) {
  const std::string ofRange = " of " + count(s.tubesInRange);
  if (s.tube == 0) return "Tube 0" + ofRange + ": setting up";
  // A control or blank read ahead of the range is no tube of it yet.
  const std::string reached =
      s.tubeOfRange == 0 ? "Before tube 1" + ofRange : "Tube " + count(s.tubeOfRange) + ofRange;
  return reached + ": " + s.sampleType + " " + count(s.sampleNumber) + " in tray tube " +
         count(s.tube);
}

std::vector<std::string> timeLines(const RunStatus& s, long nowS) {
  long elapsedS = nowS - s.startS;
  if (elapsedS < 0) elapsedS += kDayS;
  const long endS = s.estimatedEndS < 0 ? nowS : s.estimatedEndS;
  return {
      "Elapsed Time: " + text::formatHms(elapsedS) + "    Completed (" + count(s.completed) +
          " / " + count(s.planned) + ")",
      "Time Per Sample: " + text::formatHms(s.perTubeS),
      "Estimated Completion: " + text::formatHms(endS % kDayS),
      "Current Time: " + text::formatHms(nowS % kDayS),
  };
}

std::string requestLine(const RunStatus& s) {
  // The keys count after the rinse that opens each tube's cycle, before the tube is touched,
  // and after each tube.
  std::string after = s.tube == 0 ? "the first tube" : "tube " + count(s.tube);
  if (s.tube != 0 && s.step == tube_status::kRinsing)
    after = "the rinse, before tube " + count(s.tube);
  switch (s.state) {
    case RunStatusState::PauseRequested:
      return "Pause requested: pausing after " + after;
    case RunStatusState::Paused:
      return "Paused";
    case RunStatusState::AbortRequested:
      return "Abort requested: stopping after " + after;
    default:
      return "";
  }
}

std::string alertsLine(const RunStatus& s) {
  if (s.alerts == 0) return "No alerts logged";
  std::string line =
      count(s.alerts) + (s.alerts == 1 ? " alert" : " alerts") + " logged in " + s.alertLogPath;
  if (!s.lastAlert.empty()) line += "; the last: " + s.lastAlert;
  return line;
}

}  // namespace

TrayStatusLines DescribeTrayStatus(const RunStatus& status, long nowS) {
  TrayStatusLines lines;
  if (status.state == RunStatusState::Idle || status.state == RunStatusState::Ended) return lines;
  lines.shown = true;
  lines.tube = tubeLine(status);
  if (!status.step.empty()) lines.step = "Step: " + status.step;
  lines.timeInfo = timeLines(status, nowS);
  lines.request = requestLine(status);
  lines.alerts = alertsLine(status);
  lines.progressDone = status.completed;
  lines.progressOf = status.planned;
  return lines;
}

}  // namespace zorvel
