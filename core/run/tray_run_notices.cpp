#include "core/run/tray_run_notices.h"

#include <utility>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string count(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

// The notice's title for the way the run ended; empty for an end a tray run never has.
std::string endTitle(RunEnd end) {
  switch (end) {
    case RunEnd::Completed:
      return "Tray run completed";
    case RunEnd::Aborted:
      return "Tray run aborted";
    case RunEnd::Terminated:
      return "Tray run stopped";
    case RunEnd::InstrumentLost:
      return "Tray run stopped by a fault";
    case RunEnd::None:
    case RunEnd::Quit:
      break;
  }
  return "";
}

}  // namespace

TrayRunNotices::TrayRunNotices(Notifier& notifier, std::string dataSet)
    : notifier_(notifier), dataSet_(std::move(dataSet)) {}

std::string TrayRunNotices::progress(const RunStatus& s) const {
  const std::string reached = s.tubeOfRange == 0
                                  ? "before the first of the " + count(s.tubesInRange) + " tubes"
                                  : "tube " + count(s.tubeOfRange) + " of " + count(s.tubesInRange);
  return count(s.completed) + " of " + count(s.planned) + " tubes read, " + reached +
         " of the range";
}

std::string TrayRunNotices::alertLog(const RunStatus& s) const {
  if (s.alerts == 0) return "";
  return " " + count(s.alerts) + (s.alerts == 1 ? " alert" : " alerts") + " logged in " +
         s.alertLogPath + ".";
}

void TrayRunNotices::seen(const RunStatus& now) {
  std::string summary;
  std::string body;
  {
    // A new run starts with no alert and no end: each may be told again.
    std::lock_guard<std::mutex> lock(mutex_);
    if (now.alerts == 0) alertTold_ = false;
    if (now.end == RunEnd::None) endTold_ = false;
    if (now.end != RunEnd::None && !endTold_ && !endTitle(now.end).empty()) {
      endTold_ = true;
      alertTold_ = true;  // the end names the alerts
      summary = endTitle(now.end);
      body = dataSet_ + ": " + progress(now) + "." +
             (now.end == RunEnd::InstrumentLost ? " An instrument stopped answering." : "") +
             alertLog(now);
    } else if (now.alerts > 0 && !alertTold_) {
      alertTold_ = true;
      summary = "Tray run alert";
      body = dataSet_ + ", tube " + count(now.tube) + ": " + now.lastAlert +
             " The run goes on; later alerts are only logged, in " + now.alertLogPath + ".";
    }
  }
  if (!summary.empty()) notifier_.notify(summary, body);
}

}  // namespace zorvel
