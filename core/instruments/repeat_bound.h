#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "core/platform/operator.h"

namespace zorvel {

// Bounds how often one request may meet the same bad answer: past the bound the operator is
// told what the instrument kept answering and chooses Retry (the count starts again) or
// Cancel. Nobody left to answer counts as Cancel.
class RepeatBound {
 public:
  explicit RepeatBound(int limit) : limit_(limit) {}

  // Counts one more bad answer; true while the caller may try again. `instrument` names the
  // instrument and its port ("The fluorimeter on COM1 (/dev/ttyUSB0)"), `what` says what it
  // kept answering, given the count.
  bool allowAnother(Operator& person, const std::string& instrument,
                    const std::function<std::string(int)>& what);

 private:
  int limit_;
  int count_ = 0;
};

// The box of a bound that was reached; true for Retry.
bool AskRetryAfterRepeats(Operator& person, const std::string& text);

// What an instrument sent, quoted as a message can show it: control characters as "\xNN".
std::string QuotedReply(std::string_view bytes);
// "5 times", for the messages of a bound.
inline std::string Times(int count) {
  return std::to_string(count) + " times";
}

}  // namespace zorvel
