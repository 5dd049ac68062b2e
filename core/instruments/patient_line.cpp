#include "core/instruments/patient_line.h"

#include <utility>

namespace zorvel {

PatientLine::PatientLine(SerialLine& line, Clock& clock, Operator& person, Words words)
    : line_(line), clock_(clock), person_(person), words_(std::move(words)) {}

LinkFailure PatientLine::reportLost() {
  if (!lostTold_) {
    lostTold_ = true;
    person_.message(words_.lost(line_), kCommunicationErrorTitle, BoxIcon::Exclamation,
                    BoxButtons::Ok);
  }
  return LinkFailure::LostPort;
}

LinkFailure PatientLine::awaitCharacters(std::size_t n,
                                         const std::function<LinkFailure()>& onRetry) {
  for (;;) {
    if (down()) return reportLost();
    const std::size_t waiting = line_.charactersWaiting();
    if (waiting >= n) return LinkFailure::None;
    const double deadlineS = clock_.monotonicS() + kSilenceBoundS;
    if (line_.waitForCharacters(waiting + 1, deadlineS)) continue;
    // A closed or lost line answers at once; only a live one has really waited the bound.
    if (down()) return reportLost();
    if (clock_.monotonicS() < deadlineS) continue;
    const int answer = person_.message(words_.silent(line_), kCommunicationErrorTitle,
                                       BoxIcon::Exclamation, BoxButtons::RetryCancel);
    if (answer != answer::kRetry) return LinkFailure::Abandoned;
    if (onRetry) {
      const LinkFailure again = onRetry();
      if (again != LinkFailure::None) return again;
    }
  }
}

}  // namespace zorvel
