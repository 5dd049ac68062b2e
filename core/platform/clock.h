#pragma once

#include "core/text/calendar_time.h"

namespace zorvel {

// Every time-out, delay and time stamp of the program goes through this seam, so that tests
// run on a virtual clock where a 30-second time-out takes no real time.
class Clock {
 public:
  virtual ~Clock() = default;

  // Seconds since an arbitrary start, never going back; deadlines are on this scale.
  virtual double monotonicS() = 0;
  // Seconds since local midnight, with fractions: the instrument time-outs are defined on it.
  virtual double secondsSinceMidnight() = 0;
  // Today's local date and time of day.
  virtual CalendarTime now() = 0;
  // Blocks until monotonicS() reaches the moment (returns at once for a moment in the past).
  virtual void sleepUntil(double monotonicS) = 0;

  void sleepFor(double seconds) { sleepUntil(monotonicS() + seconds); }
};

}  // namespace zorvel
