#include "core/instruments/fluorimeter_link.h"

#include <algorithm>
#include <utility>

#include "core/text/number_format.h"

namespace zorvel {

using fluor::kAccepted;
using fluor::kBadRecord;
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

bool MustStop(LinkFailure failure) {
  return OutcomeOf(failure) == LinkOutcome::Stop;
}

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

std::string quoted(std::string_view text) {
  return QuotedReply(text);
}

std::string times(int count) {
  return std::to_string(count) + " times";
}

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
          return "refused " + quoted(command) + " " + times(count) + ", answering " +
                 quoted(lastStatus_);
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

TerminatedText FluorimeterLink::ReadToTerminator(char terminator, double deadlineS) {
  if (halted_) return {std::string(kBadRecord), LinkFailure::Halted};
  std::string text;
  for (;;) {
    if (lineDown()) return {std::string(kBadRecord), reportLost()};
    if (clock_.monotonicS() >= deadlineS) {
      lastTrouble_ = "no end within " + text::plain(recordBoundS_) + " seconds";
      return {std::string(kBadRecord), LinkFailure::ReadTimeout};
    }
    // The 30 seconds count afresh after every burst of characters; the deadline does not.
    const double silentS = clock_.monotonicS() + kRecordSilenceS;
    const double untilS = std::min(silentS, deadlineS);
    if (!line_.waitForCharacters(1, untilS)) {
      if (lineDown()) return {std::string(kBadRecord), reportLost()};
      if (clock_.monotonicS() < untilS || untilS == deadlineS) continue;
      lastTrouble_ = "30 seconds of silence";
      return {std::string(kBadRecord), LinkFailure::ReadTimeout};
    }
    while (line_.charactersWaiting() > 0) {
      const char c = readOne();
      if (c == terminator) {
        if (terminator == kCarriageReturn) discardFollowingCharacter();
        return {std::move(text), LinkFailure::None};
      }
      text.push_back(c);
      if (text.size() > kLongestReply) {
        lastTrouble_ = "more than " + std::to_string(kLongestReply) +
                       " characters without an end, beginning " + quoted(text.substr(0, 24));
        return {std::string(kBadRecord), LinkFailure::ReadTimeout};
      }
    }
  }
}

ReadingRecord FluorimeterLink::ReadReadingRecord(double withinS) {
  ReadingRecord record;
  recordBoundS_ = withinS;
  const double deadlineS = clock_.monotonicS() + withinS;
  const TerminatedText junk = ReadToTerminator(fluor::kDelete, deadlineS);
  if (junk.failure != LinkFailure::None) {
    record.failure = junk.failure;
    return record;
  }
  std::string* const fields[] = {&record.fieldA, &record.fieldB};
  for (std::string* field : fields) {
    TerminatedText part = ReadToTerminator(',', deadlineS);
    if (MustStop(part.failure)) return {{}, {}, {}, part.failure};
    *field = std::move(part.text);
  }
  for (int f = 2; f < model_.recordFieldsBeforeIntensity; ++f) {
    const TerminatedText extra = ReadToTerminator(',', deadlineS);
    if (MustStop(extra.failure)) return {{}, {}, {}, extra.failure};
  }
  TerminatedText intensity = ReadToTerminator(kCarriageReturn, deadlineS);
  if (MustStop(intensity.failure)) return {{}, {}, {}, intensity.failure};
  record.fieldC = std::move(intensity.text);
  const TerminatedText status = ReadToTerminator(kCarriageReturn, deadlineS);
  if (MustStop(status.failure)) return {{}, {}, {}, status.failure};
  if (status.text != kAccepted) {
    lastStatus_ = status.text;
    person_.message("<> 0000: " + status.text, kLs50ReturnErrorTitle, BoxIcon::Exclamation,
                    BoxButtons::Ok);
    record.failure = LinkFailure::DeviceFault;
  }
  return record;
}

Reading FluorimeterLink::TakeReading(double excitationNm, double emissionNm, float readTimeS,
                                     fluor::AcceptanceRule rule) {
  const std::string command = fluor::ReadCommand(readTimeS);
  RepeatBound missing(kMissingRecordBound);
  RepeatBound refused(kRefusalBound);
  RepeatBound offTarget(kRefusalBound);
  for (;;) {
    const LinkFailure sent = IssueCommand(command, StatusReader::Command);
    if (sent != LinkFailure::None) return {0.0, sent};
    const ReadingRecord record = ReadReadingRecord(readTimeS + kRecordMarginS);
    if (MustStop(record.failure)) return {0.0, record.failure};
    bool again = true;
    if (record.failure == LinkFailure::ReadTimeout) {
      again = tolerateMissingRecord(missing, command);
    } else if (record.failed()) {
      again = tolerateBadRecordStatus(refused, command);
    } else {
      // An intensity that is not a number is no reading: it is read again like one taken at
      // the wrong wavelengths.
      const std::optional<double> intensity = fluor::WholeNumberField(record.fieldC);
      if (intensity && fluor::WavelengthsAccepted(rule, record.fieldA, record.fieldB, excitationNm,
                                                  emissionNm)) {
        return {*intensity / 1000.0, LinkFailure::None};
      }
      again = tolerateOffTarget(offTarget, command, record, excitationNm, emissionNm);
    }
    if (!again) return {0.0, LinkFailure::Abandoned};
  }
}

bool FluorimeterLink::tolerateMissingRecord(RepeatBound& bound, const std::string& command) {
  return bound.allowAnother(person_, instrumentOnPort(), [&](int count) {
    return "accepted " + quoted(command) + " but sent no whole reading record, " + times(count) +
           " (" + lastTrouble_ + ")";
  });
}

bool FluorimeterLink::tolerateBadRecordStatus(RepeatBound& bound, const std::string& command) {
  return bound.allowAnother(person_, instrumentOnPort(), [&](int count) {
    return "ended the reading record of " + quoted(command) + " with the status " +
           quoted(lastStatus_) + " instead of \"0000\", " + times(count);
  });
}

bool FluorimeterLink::tolerateOffTarget(RepeatBound& bound, const std::string& command,
                                        const ReadingRecord& record, double excitationNm,
                                        double emissionNm) {
  return bound.allowAnother(person_, instrumentOnPort(), [&](int count) {
    if (!fluor::WholeNumberField(record.fieldC)) {
      return "answered " + quoted(command) + " with an intensity that is not a number, " +
             times(count) + "; the last was " + quoted(record.fieldC);
    }
    return "answered " + quoted(command) + " with readings at other wavelengths than " +
           text::fixed(excitationNm, 1) + "/" + text::fixed(emissionNm, 1) + " nm, " +
           times(count) + "; the last was at " + quoted(record.fieldA) + "/" +
           quoted(record.fieldB);
  });
}

StatusRecord FluorimeterLink::ReadStatusRecord() {
  StatusRecord record;
  for (std::size_t k = 0; k < record.fields.size(); ++k) {
    const char terminator = k + 1 < record.fields.size() ? ',' : kCarriageReturn;
    TerminatedText part = ReadToTerminator(terminator);
    if (MustStop(part.failure)) return {{}, part.failure};
    record.fields[k] = std::move(part.text);
  }
  // The first field is what follows the DEL that ends any leading junk.
  const std::size_t del = record.fields[0].find(fluor::kDelete);
  if (del != std::string::npos) record.fields[0].erase(0, del + 1);
  const TerminatedText status = ReadToTerminator(kCarriageReturn);
  if (MustStop(status.failure)) return {{}, status.failure};
  if (status.text != kAccepted) record.failure = LinkFailure::DeviceFault;
  return record;
}

TimeDriveHeaderReply FluorimeterLink::ReadTimeDriveHeader() {
  // The header ends at the first four "0" in a row: the status that closes it. A pause on
  // the line does not break the run of zeros, so a slow line still finds its end.
  std::string text;
  int zeros = 0;
  while (zeros < 4) {
    const LinkFailure waited = waitPatiently(1);
    if (waited != LinkFailure::None) return {{}, waited};
    const char c = readOne();
    text.push_back(c);
    zeros = c == '0' ? zeros + 1 : 0;
    if (text.size() > kLongestReply) {
      if (!RetryAfterRepeats("sent more than " + std::to_string(kLongestReply) +
                             " characters of a time-drive header without its closing status, "
                             "beginning " +
                             quoted(text.substr(0, 24)))) {
        return {{}, LinkFailure::Abandoned};
      }
      text.clear();
    }
  }
  return {fluor::SplitTimeDriveHeader(text), LinkFailure::None};
}

TerminatedText FluorimeterLink::ReadNumberToken() {
  std::string token;
  for (;;) {
    const LinkFailure waited = waitPatiently(1);
    if (waited != LinkFailure::None) return {std::move(token), waited};
    const char c = readOne();
    if (!fluor::IsNumberCharacter(c)) return {std::move(token), LinkFailure::None};
    token.push_back(c);
    if (token.size() > kLongestReply) {
      if (!RetryAfterRepeats("sent a number of more than " + std::to_string(kLongestReply) +
                             " characters, beginning " + quoted(token.substr(0, 24)))) {
        return {std::move(token), LinkFailure::Abandoned};
      }
      token.clear();
    }
  }
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
