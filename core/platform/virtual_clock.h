#pragma once

#include "core/platform/clock.h"

namespace zorvel {

// The test clock: time stands still until something waits, and a wait jumps straight to its
// moment. It starts at a chosen date and time of day so that midnight rules can be tested.
class VirtualClock final : public Clock {
 public:
  explicit VirtualClock(CalendarTime start = CalendarTime{2000, 3, 7, 14, 5, 9});

  double monotonicS() override { return elapsedS_; }
  double secondsSinceMidnight() override;
  CalendarTime now() override;
  void sleepUntil(double monotonicS) override;

  void advanceBy(double seconds);
  // Sets the time of day directly (keeps the date), for tests of the midnight and rounding rules.
  void setSecondsSinceMidnight(double seconds);

 private:
  long startDay_;
  double startSecondOfDay_;
  double elapsedS_ = 0.0;
};

}  // namespace zorvel
