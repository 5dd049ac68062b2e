#include <algorithm>
#include <utility>

#include "core/instruments/fluorimeter_link.h"
#include "core/text/number_format.h"

// The replies that follow a command's status: reading records, status records, the time-drive
// header and streamed numbers, each read up to its terminator.
namespace zorvel {

using fluor::kAccepted;
using fluor::kBadRecord;
using fluor::kCarriageReturn;

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
                       " characters without an end, beginning " + QuotedReply(text.substr(0, 24));
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
    return "accepted " + QuotedReply(command) + " but sent no whole reading record, " +
           Times(count) + " (" + lastTrouble_ + ")";
  });
}

bool FluorimeterLink::tolerateBadRecordStatus(RepeatBound& bound, const std::string& command) {
  return bound.allowAnother(person_, instrumentOnPort(), [&](int count) {
    return "ended the reading record of " + QuotedReply(command) + " with the status " +
           QuotedReply(lastStatus_) + " instead of \"0000\", " + Times(count);
  });
}

bool FluorimeterLink::tolerateOffTarget(RepeatBound& bound, const std::string& command,
                                        const ReadingRecord& record, double excitationNm,
                                        double emissionNm) {
  return bound.allowAnother(person_, instrumentOnPort(), [&](int count) {
    if (!fluor::WholeNumberField(record.fieldC)) {
      return "answered " + QuotedReply(command) + " with an intensity that is not a number, " +
             Times(count) + "; the last was " + QuotedReply(record.fieldC);
    }
    return "answered " + QuotedReply(command) + " with readings at other wavelengths than " +
           text::fixed(excitationNm, 1) + "/" + text::fixed(emissionNm, 1) + " nm, " +
           Times(count) + "; the last was at " + QuotedReply(record.fieldA) + "/" +
           QuotedReply(record.fieldB);
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
                             QuotedReply(text.substr(0, 24)))) {
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
                             " characters, beginning " + QuotedReply(token.substr(0, 24)))) {
        return {std::move(token), LinkFailure::Abandoned};
      }
      token.clear();
    }
  }
}

}  // namespace zorvel
