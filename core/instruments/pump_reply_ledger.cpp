#include "core/instruments/pump_reply_ledger.h"

#include <algorithm>

#include "core/instruments/pump_protocol.h"

namespace zorvel {

void PumpReplyLedger::frameSent(double atS) {
  ++due_;
  lastFrameS_ = atS;
}

void PumpReplyLedger::beginCommand(double nowS) {
  if (nowS >= allDueByS()) writeOff();
  earlier_ = due_;
}

void PumpReplyLedger::writeOff() {
  due_ = 0;
  earlier_ = 0;
}

std::vector<std::string> PumpReplyLedger::take(std::string_view burst) {
  PumpReplyText split = PumpSplitReplies(burst);
  if (!split.rest.empty()) split.replies.push_back(std::move(split.rest));
  std::vector<std::string> current;
  for (std::string& reply : split.replies) {
    due_ = std::max(0, due_ - 1);
    if (earlier_ > 0) {
      --earlier_;
      continue;
    }
    current.push_back(std::move(reply));
  }
  return current;
}

bool PumpReplyLedger::endsWhole(std::string_view text) {
  const PumpReplyText split = PumpSplitReplies(text);
  return !split.replies.empty() && split.rest.empty();
}

void PumpReplyLedger::passOver(std::string_view text) {
  const auto whole = static_cast<int>(PumpSplitReplies(text).replies.size());
  due_ = std::max(0, due_ - whole);
  earlier_ = std::max(0, earlier_ - whole);
}

}  // namespace zorvel
