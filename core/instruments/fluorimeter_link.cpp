#include "core/instruments/fluorimeter_link.h"

#include <algorithm>
#include <utility>

#include "core/text/number_format.h"

namespace zorvel {

using fluor::kAccepted;
using fluor::kCarriageReturn;
using fluor::kFurtherStatus;

namespace {

// The line's reason for a failed open as a paragraph of the message; nothing when it has none.
std::string withReason(const std::string& reason) {
  return reason.empty() ? reason : "\n\n" + reason;
}

constexpr std::size_t kStatusLineLength = 6;  // four digits, CR, LF
constexpr std::size_t kStatusLength = 4;
constexpr int kHaltExitCode = 1;

const PatientLine::Words kFluorimeterWords{
    [](const SerialLine& line) {
      return line.lost() ? "The fluorimeter on " + line.describe() +
                               " has been disconnected.  Check its cable and adapter, then start "
                               "again."
                         : "The fluorimeter port " + line.describe() + " is not open." +
                               withReason(line.openFailure());
    },
    [](const SerialLine& line) {
      return "The fluorimeter on " + line.describe() + " has sent nothing for " +
             text::plain(PatientLine::kSilenceBoundS) +
             " seconds.  Retry waits again; Cancel gives up.";
    }};

}  // namespace

FluorimeterLink::FluorimeterLink(SerialLine& line, Clock& clock, Operator& person, LinkState& links,
                                 int preference)
    : line_(line),
      clock_(clock),
      person_(person),
      links_(links),
      model_(FluorimeterModelFor(preference)),
      patient_(line, clock, person, kFluorimeterWords) {}

LinkFailure FluorimeterLink::OpenFluorimeterPort() {
  if (halted_) return LinkFailure::Halted;
  if (!line_.isOpen() && !line_.open(PatientLine::kSettings)) return reportLost();
  patient_.fresh();
  const std::size_t stale = line_.charactersWaiting();
  if (stale > 0) line_.read(stale);
  return LinkFailure::None;
}

LinkFailure FluorimeterLink::PrepareScanBuffer() {
  if (halted_) return LinkFailure::Halted;
  line_.close();
  line_.setInputBufferSize(kScanBufferSize);
  if (!line_.open(PatientLine::kSettings)) return reportLost();
  return LinkFailure::None;
}

LinkFailure FluorimeterLink::IssueCommand(std::string_view command, StatusReader reader,
                                          std::string_view statusText) {
  if (halted_) return LinkFailure::Halted;
  if (!statusText.empty() && showStatus_) showStatus_(std::string(statusText));
  const std::string frame = fluor::Frame(command);
  RepeatBound refusals(kRefusalBound);
  for (;;) {
    if (lineDown() || !line_.write(frame)) return reportLost();
    LinkFailure failure = LinkFailure::None;
    switch (reader) {
      case StatusReader::Command:
        failure = AwaitCommandStatus();
        break;
      case StatusReader::Scan:
        failure = AwaitScanStatus();
        break;
      case StatusReader::Water:
        failure = AwaitWaterStatus();
        break;
    }
    if (OutcomeOf(failure) != LinkOutcome::Resend) return failure;
    if (failure == LinkFailure::DeviceFault &&
        !refusals.allowAnother(person_, instrumentOnPort(), [&](int count) {
          return "refused " + QuotedReply(command) + " " + Times(count) + ", answering " +
                 QuotedReply(lastStatus_);
        })) {
      return LinkFailure::Abandoned;
    }
  }
}

LinkFailure FluorimeterLink::AwaitCommandStatus() {
  if (halted_) return LinkFailure::Halted;
  // The limit runs on the time of day from a whole-second start; the wait itself is on the
  // monotonic scale, so the two are tied together once here.
  const double nowOfDayS = clock_.secondsSinceMidnight();
  const double startS = fluor::StatusStartS(nowOfDayS);
  const double deadlineS = clock_.monotonicS() + (startS + fluor::kStatusLimitS - nowOfDayS);
  for (;;) {
    if (!line_.waitForCharacters(kStatusLineLength, deadlineS)) {
      if (lineDown()) return reportLost();
      if (clock_.monotonicS() < deadlineS) continue;
      ++links_.LinkTimeoutCount;
      if (links_.LinkTimeoutCount >= 2) {
        HaltOnLinkFailure();
        return LinkFailure::Halted;
      }
      return LinkFailure::ReplyTimeout;
    }
    const std::string status = readStatusLine();
    if (status == kAccepted) return LinkFailure::None;
    if (status == kFurtherStatus) continue;
    lastStatus_ = status;
    ShowInstrumentError(person_, status, false);
    return LinkFailure::DeviceFault;
  }
}

LinkFailure FluorimeterLink::AwaitScanStatus() {
  for (;;) {
    const LinkFailure waited = waitPatiently(kStatusLineLength);
    if (waited != LinkFailure::None) return waited;
    const std::string status = line_.read(kStatusLineLength).substr(0, kStatusLength);
    if (status == kAccepted) return LinkFailure::None;
    if (status == kFurtherStatus) continue;
    lastStatus_ = status;
    ShowInstrumentError(person_, status, false);
    return LinkFailure::DeviceFault;
  }
}

LinkFailure FluorimeterLink::AwaitWaterStatus() {
  // The whole status line is awaited before it is read, so that a line arriving slowly is
  // not taken for a short, wrong status; what follows it (a time-drive header) stays put.
  const LinkFailure waited = waitPatiently(kStatusLineLength);
  if (waited != LinkFailure::None) return waited;
  const std::string status = line_.read(kStatusLineLength).substr(0, kStatusLength);
  if (status == kAccepted) return LinkFailure::None;
  lastStatus_ = status;
  ShowInstrumentError(person_, status, true);
  return LinkFailure::DeviceFault;
}

void FluorimeterLink::HaltOnLinkFailure() {
  if (halted_) return;
  // The port follows the message, so a wrong entry in the ports file shows for what it is.
  person_.message(
      "Communication with the fluorimeter has failed.  Program halted.\rPort: " + line_.describe(),
      kCommunicationErrorTitle, BoxIcon::Exclamation, BoxButtons::Ok);
  halted_ = true;
  person_.endProgram(kHaltExitCode);
}

bool FluorimeterLink::lineDown() const {
  return patient_.down();
}

LinkFailure FluorimeterLink::reportLost() {
  if (halted_) return LinkFailure::Halted;
  return patient_.reportLost();
}

LinkFailure FluorimeterLink::waitPatiently(std::size_t n) {
  // Nothing in the wait can halt the program, so once at the start is enough.
  if (halted_) return LinkFailure::Halted;
  return patient_.awaitCharacters(n);
}

char FluorimeterLink::readOne() {
  const std::string c = line_.read(1);
  return c.empty() ? '\0' : c.front();
}

void FluorimeterLink::discardFollowingCharacter() {
  // The LF after a CR is waited for as long as the line's silence bound allows, so that a slow
  // line cannot leave it to be read as the first character of the next reply.
  line_.waitForCharacters(1, clock_.monotonicS() + kRecordSilenceS);
  line_.read(1);
}

void FluorimeterLink::DrainUntilQuiet(double quietS, double limitS) {
  // A stream of points trickles in a few characters at a time, so only quiet or the overall
  // bound ends the draining, never a count of reads.
  const double endS = clock_.monotonicS() + limitS;
  for (;;) {
    const std::size_t waiting = line_.charactersWaiting();
    if (waiting > 0) line_.read(waiting);
    const double nowS = clock_.monotonicS();
    if (nowS >= endS || !line_.waitForCharacters(1, std::min(nowS + quietS, endS))) return;
  }
}

bool FluorimeterLink::RetryAfterRepeats(const std::string& what) {
  return AskRetryAfterRepeats(person_, instrumentOnPort() + " " + what + ".");
}

std::string FluorimeterLink::instrumentOnPort() const {
  return "The fluorimeter on " + line_.describe();
}

std::string FluorimeterLink::readStatusLine() {
  std::string status;
  const std::size_t waiting = line_.charactersWaiting();
  bool sawCarriageReturn = false;
  for (std::size_t i = 0; i < waiting; ++i) {
    const char c = readOne();
    if (c == kCarriageReturn) {
      sawCarriageReturn = true;
      break;
    }
    status.push_back(c);
  }
  if (sawCarriageReturn) {
    discardFollowingCharacter();
  } else {
    line_.read(1);
  }
  return status;
}

}  // namespace zorvel
