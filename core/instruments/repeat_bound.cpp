#include "core/instruments/repeat_bound.h"

#include "core/instruments/instrument_error.h"

namespace zorvel {

bool AskRetryAfterRepeats(Operator& person, const std::string& text) {
  if (person.answersExhausted()) return false;
  const int answer =
      person.message(text + "\r\rRetry tries again; Cancel gives up.", kCommunicationErrorTitle,
                     BoxIcon::Exclamation, BoxButtons::RetryCancel);
  return answer == answer::kRetry && !person.answersExhausted();
}

std::string QuotedReply(std::string_view bytes) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out = "\"";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7f) {
      out.push_back(c);
    } else {
      for (const char part : {'\\', 'x', kHex[byte >> 4], kHex[byte & 0xf]}) out.push_back(part);
    }
  }
  out.push_back('"');
  return out;
}

bool RepeatBound::allowAnother(Operator& person, const std::string& instrument,
                               const std::function<std::string(int)>& what) {
  if (person.answersExhausted()) return false;
  if (++count_ < limit_) return true;
  const int count = count_;
  count_ = 0;
  return AskRetryAfterRepeats(person, instrument + " " + what(count) + ".");
}

}  // namespace zorvel
