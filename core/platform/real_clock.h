#pragma once

#include "core/platform/clock.h"

namespace zorvel {

// The desktop clock: the steady clock for deadlines, the local time zone for dates.
class RealClock final : public Clock {
 public:
  double monotonicS() override;
  double secondsSinceMidnight() override;
  CalendarTime now() override;
  void sleepUntil(double monotonicS) override;
};

}  // namespace zorvel
