#include "core/run/run_alert_log.h"

#include "core/files/record_append.h"
#include "core/instruments/instrument_error.h"
#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

RunAlertLog::RunAlertLog(const AppState& state, Clock& clock) : state_(state), clock_(clock) {}

void RunAlertLog::setTube(int tube, const std::string& label) {
  tube_ = tube;
  label_ = label;
}

void RunAlertLog::alertKept(const std::vector<OutOfRange>& colours) {
  std::vector<std::string> details;
  for (const OutOfRange& c : colours) {
    const ColourDeclaration& pair = state_.Method.FixedPairs.colour(c.colour);
    const int index = pair.ColourIndex;
    const std::string name = index >= 0 && index < static_cast<int>(state_.ColourNames.size())
                                 ? state_.ColourNames[static_cast<std::size_t>(index)]
                                 : "Colour " + text::fixed(static_cast<double>(c.colour), 0);
    details.push_back(name + " " + text::fixed(pair.ExWl, 0) + "/" + text::fixed(pair.EmWl, 0) +
                      ": " + text::fixed(c.value, 3) + " outside " + text::fixed(c.low, 3) +
                      " to " + text::fixed(c.high, 3) + " (" +
                      text::fixed(static_cast<double>(c.sds), 0) + " SD)");
  }
  append("Control alert", details);
}

void RunAlertLog::instrumentError(const std::string& message) {
  append("Instrument error", {message});
}

void RunAlertLog::append(const std::string& what, const std::vector<std::string>& details) {
  logged_ = true;
  const CalendarTime now = clock_.now();
  std::string line = text::formatDate(now) + "\t" + text::formatTime(now) + "\tTube " +
                     text::fixed(static_cast<double>(tube_), 0) + "\t" + label_ + "\t" + what;
  for (const std::string& d : details) line += "\t" + d;
  if (listener_) {
    std::string told =
        "Tube " + text::fixed(static_cast<double>(tube_), 0) + " " + label_ + ": " + what;
    for (const std::string& d : details) told += "; " + d;
    listener_(told);
  }
  line += state_.LineEnding;
  // A log that cannot be written must not stop the run either; the closing box still
  // points the operator at it.
  AppendRecordDurably(path(), line, state_.LineEnding);
}

int UnattendedOperator::messageBox(const MessageBoxRequest& box) {
  const bool instrumentTells = box.buttons == BoxButtons::Ok &&
                               (box.title == kLs50ErrorTitle || box.title == kLs50ReturnErrorTitle);
  if (log_ != nullptr && instrumentTells) {
    log_->instrumentError(box.text);
    return answer::kOk;
  }
  return person_.messageBox(box);
}

}  // namespace zorvel
