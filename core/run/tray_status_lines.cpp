#include "core/run/tray_status_lines.h"

#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr long kDayS = 86400;

std::string count(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

std::string tubeLine(const TrayStatus& s) {
  if (s.tube == 0) return "Tube 0 of " + count(s.tubesInRange) + ": setting up";
  std::string line = "Tube " + count(s.tubeOfRange) + " of " + count(s.tubesInRange) + ": " +
                     s.sampleType + " " + count(s.sampleNumber) + " in tray tube " + count(s.tube);
  return line;
}

std::vector<std::string> timeLines(const TrayStatus& s, long nowS) {
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

std::string requestLine(const TrayStatus& s) {
  const std::string after = s.tube == 0 ? "the first tube" : "tube " + count(s.tube);
  switch (s.state) {
    case TrayRunState::PauseRequested:
      return "Pause requested: pausing after " + after;
    case TrayRunState::Paused:
      return "Paused";
    case TrayRunState::AbortRequested:
      return "Abort requested: stopping after " + after;
    default:
      return "";
  }
}

std::string alertsLine(const TrayStatus& s) {
  if (s.alerts == 0) return "No alerts logged";
  std::string line =
      count(s.alerts) + (s.alerts == 1 ? " alert" : " alerts") + " logged in " + s.alertLogPath;
  if (!s.lastAlert.empty()) line += "; the last: " + s.lastAlert;
  return line;
}

}  // namespace

TrayStatusLines DescribeTrayStatus(const TrayStatus& status, long nowS) {
  TrayStatusLines lines;
  if (status.state == TrayRunState::Idle || status.state == TrayRunState::Ended) return lines;
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
