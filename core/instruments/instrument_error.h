#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/platform/operator.h"

namespace zorvel {

// Why a fluorimeter operation did not end with what the caller asked for. The set is closed:
// every caller can act on every member through OutcomeOf.
enum class LinkFailure {
  None,          // the command was accepted, the record or token arrived
  ReplyTimeout,  // no status line within the 10-second limit
  ReadTimeout,   // a record stopped arriving for 30 seconds ("Bad**")
  Mismatch,      // a reading taken at other wavelengths than asked
  DeviceFault,   // the instrument answered with an error status
  LostPort,      // the port's device vanished or the port is not open
  Abandoned,     // the operator gave up waiting on a silent instrument
  Halted,        // the second status time-out ended the program
};

// What a caller does about a failure.
enum class LinkOutcome {
  Continue,  // nothing failed
  Resend,    // send the same command again
  Stop,      // unwind: the conversation is over
};

LinkOutcome OutcomeOf(LinkFailure failure);
inline bool MustStop(LinkFailure failure) {
  return OutcomeOf(failure) == LinkOutcome::Stop;
}
// A short English name for logs and test messages ("reply time-out").
std::string_view DescribeFailure(LinkFailure failure);

// Box titles of the fluorimeter conversation.
inline constexpr const char* kLs50ErrorTitle = "ZORVEL LS50 ERROR";
inline constexpr const char* kLs50ReturnErrorTitle = "ZORVEL LS50 RETURN ERROR";
inline constexpr const char* kCommunicationErrorTitle = "ZORVEL COMMUNICATION ERROR";

// The message for an instrument status, or nothing when none is shown. "0002" is only told
// during the water-cell check; elsewhere it is resent silently, like a code not in the table.
std::optional<std::string> InstrumentErrorMessage(std::string_view status, bool waterCell);

// Shows the status's message, if it has one, in the fluorimeter's error box.
void ShowInstrumentError(Operator& person, std::string_view status, bool waterCell);

}  // namespace zorvel
