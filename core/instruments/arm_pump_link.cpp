#include "core/instruments/arm_pump_link.h"

#include <utility>

#include "core/text/number_format.h"

namespace zorvel {

ArmPumpLine::ArmPumpLine(SerialLine& line, Clock& clock, Operator& person, std::string instrument)
    : line_(line), clock_(clock), operator_(person), instrument_(std::move(instrument)) {}

LinkFailure ArmPumpLine::ensureOpen() {
  if (line_.isOpen()) return LinkFailure::None;
  if (line_.lost()) return lostLine();
  if (!line_.open(kSettings)) {
    if (line_.lost()) return lostLine();
    operator_.message("The " + instrument_ + " port " + line_.describe() + " could not be opened.",
                      kCommunicationErrorTitle, BoxIcon::Exclamation);
    return LinkFailure::LostPort;
  }
  // A port that opens again is a fresh connection: its next loss is news.
  lostTold_ = false;
  return LinkFailure::None;
}

void ArmPumpLine::close() {
  if (line_.isOpen()) line_.close();
}

LinkFailure ArmPumpLine::send(std::string_view bytes) {
  if (!line_.write(bytes)) return lostLine();
  return LinkFailure::None;
}

LinkFailure ArmPumpLine::waitOnce() {
  const double deadline = clock_.monotonicS() + kSilenceBoundS;
  if (line_.waitForCharacters(1, deadline)) return LinkFailure::None;
  // A closed or lost line answers at once; only a live one has really waited the bound.
  if (line_.lost() || !line_.isOpen()) return lostLine();
  return LinkFailure::Abandoned;
}

bool ArmPumpLine::operatorRetries() {
  const std::string text = "The " + instrument_ + " on " + line_.describe() +
                           " has not answered for " + text::plain(kSilenceBoundS) +
                           " seconds.\n\nRetry waits again; Cancel abandons the command.";
  return operator_.message(text, kCommunicationErrorTitle, BoxIcon::Exclamation,
                           BoxButtons::RetryCancel) == answer::kRetry;
}

std::string ArmPumpLine::readBurst(double quietGapS) {
  std::string text = line_.read(line_.charactersWaiting());
  if (text.empty()) return text;
  // A device that never stops talking still ends the burst, at a size no reply comes near.
  while (text.size() < kLongestBurst &&
         line_.waitForCharacters(1, clock_.monotonicS() + quietGapS)) {
    text += line_.read(line_.charactersWaiting());
  }
  return text;
}

LinkFailure ArmPumpLine::lostLine() {
  if (!lostTold_) {
    lostTold_ = true;
    operator_.message(
        "The connection to the " + instrument_ + " on " + line_.describe() + " was lost.",
        kCommunicationErrorTitle, BoxIcon::Exclamation);
  }
  return LinkFailure::LostPort;
}

}  // namespace zorvel
