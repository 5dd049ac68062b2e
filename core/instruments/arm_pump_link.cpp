#include "core/instruments/arm_pump_link.h"

#include <utility>

#include "core/instruments/repeat_bound.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

PatientLine::Words WordsFor(const std::string& instrument) {
  return {[instrument](const SerialLine& line) {
            return "The connection to the " + instrument + " on " + line.describe() + " was lost.";
          },
          [instrument](const SerialLine& line) {
            return "The " + instrument + " on " + line.describe() + " has not answered for " +
                   text::plain(PatientLine::kSilenceBoundS) +
                   " seconds.\n\nRetry waits again; Cancel abandons the command.";
          }};
}

// The line's reason for a failed open as a paragraph of the message; nothing when it has none.
std::string withReason(const std::string& reason) {
  return reason.empty() ? reason : "\n\n" + reason;
}

}  // namespace

ArmPumpLine::ArmPumpLine(SerialLine& line, Clock& clock, Operator& person, std::string instrument)
    : clock_(clock),
      operator_(person),
      instrument_(std::move(instrument)),
      line_(line, clock, person, WordsFor(instrument_)) {}

LinkFailure ArmPumpLine::ensureOpen() {
  SerialLine& line = line_.line();
  if (line.isOpen()) return LinkFailure::None;
  if (line.lost()) return lostLine();
  if (!line.open(PatientLine::kSettings)) {
    if (line.lost()) return lostLine();
    operator_.message("The " + instrument_ + " port " + line.describe() + " could not be opened." +
                          withReason(line.openFailure()),
                      kCommunicationErrorTitle, BoxIcon::Exclamation);
    return LinkFailure::LostPort;
  }
  line_.fresh();
  return LinkFailure::None;
}

void ArmPumpLine::close() {
  if (line_.line().isOpen()) line_.line().close();
}

LinkFailure ArmPumpLine::send(std::string_view bytes) {
  if (!line_.line().write(bytes)) return lostLine();
  return LinkFailure::None;
}

std::string ArmPumpLine::readWaiting() {
  SerialLine& line = line_.line();
  return line.read(line.charactersWaiting());
}

std::string ArmPumpLine::readBurst(double quietGapS,
                                   const std::function<bool(std::string_view)>& whole) {
  std::string text = readWaiting();
  if (text.empty()) return text;
  // A device that never stops talking still ends the burst, at a size no reply comes near.
  while (text.size() < kLongestBurst && !(whole && whole(text)) &&
         waitForCharacter(clock_.monotonicS() + quietGapS)) {
    text += readWaiting();
  }
  return text;
}

bool ArmPumpLine::busyTooLongRetries(double boundS, std::string_view lastReply) {
  return AskRetryAfterRepeats(operator_, "The " + instrument_ + " on " + line_.line().describe() +
                                             " has answered for " + text::plain(boundS) +
                                             " seconds without reporting that it is done; its "
                                             "last answer was " +
                                             QuotedReply(lastReply) + ".");
}

bool ArmPumpLine::errorRetries(std::string_view device, std::string_view command,
                               std::string_view error) {
  return AskRetryAfterRepeats(operator_, "The " + instrument_ + "'s " + std::string(device) +
                                             " on " + line_.line().describe() + " reports " +
                                             std::string(error) + " after the command " +
                                             QuotedReply(command) + ".");
}

}  // namespace zorvel
