#pragma once

#include "core/platform/real_clock.h"

namespace zorvel::testing {

// The wall clock run faster, for conversations with an instrument on a pseudo-terminal whose
// server runs at the same speed: minutes of the line's time pass in seconds. Its time of day
// starts at noon, far from midnight.
class ScaledClock final : public Clock {
 public:
  explicit ScaledClock(double speed) : speed_(speed), startS_(real_.monotonicS()) {}
  double monotonicS() override { return (real_.monotonicS() - startS_) * speed_; }
  double secondsSinceMidnight() override { return 43200.0 + monotonicS(); }
  CalendarTime now() override { return real_.now(); }
  void sleepUntil(double monotonicS) override { real_.sleepUntil(startS_ + monotonicS / speed_); }

 private:
  RealClock real_;
  double speed_;
  double startS_;
};

}  // namespace zorvel::testing
