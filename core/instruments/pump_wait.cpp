#include "core/instruments/pump_wait.h"

namespace zorvel {

namespace {

constexpr double kSecondsPerDay = 86400.0;
constexpr double kLatestEndS = 86396.0;
constexpr double kMidnightPassedS = 85000.0;

// Sleeps until the time of day has wrapped past midnight.
void waitForMidnight(Clock& clock) {
  // A few rounds at most: the first sleep lands on midnight, rounding may need a nudge.
  for (int round = 0; round < 8 && clock.secondsSinceMidnight() > kMidnightPassedS; ++round) {
    clock.sleepFor(kSecondsPerDay - clock.secondsSinceMidnight() + 0.001);
  }
}

}  // namespace

void WaitSeconds(Clock& clock, std::int16_t seconds) {
  if (seconds <= 0) return;
  const double now = clock.secondsSinceMidnight();
  if (now + seconds > kLatestEndS) {
    if (now > kMidnightPassedS) {
      waitForMidnight(clock);
    }
    // Otherwise the wait is simply long enough to run past midnight: it takes its full time
    // from now, which the time-of-day arithmetic alone could never reach.
  }
  // The end is counted on the monotonic scale so that the day's wrap cannot stretch the wait.
  clock.sleepFor(seconds);
}

}  // namespace zorvel
