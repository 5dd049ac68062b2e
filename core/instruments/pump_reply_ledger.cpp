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
  held_.clear();
}

std::vector<std::string> PumpReplyLedger::take(std::string_view text, bool quiet) {
  PumpReplyText split = PumpSplitReplies(held_ + std::string(text));
  held_ = std::move(split.rest);
  if (quiet && !held_.empty()) {
    split.replies.push_back(std::move(held_));
    held_.clear();
  }
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

bool PumpReplyLedger::endsWhole(std::string_view text) const {
  const PumpReplyText split = PumpSplitReplies(held_ + std::string(text));
  return !split.replies.empty() && split.rest.empty();
}

void PumpReplyLedger::passOver(std::string_view text) {
  take(text, false);
  held_.clear();
}

}  // namespace zorvel
