#include "core/platform/virtual_clock.h"

#include <cmath>

namespace zorvel {

namespace {
constexpr double kSecondsPerDay = 86400.0;
}

VirtualClock::VirtualClock(CalendarTime start)
    : startDay_(daysFromCivil(start.year, start.month, start.day)),
      startSecondOfDay_(start.hour * 3600.0 + start.minute * 60.0 + start.second) {}

double VirtualClock::secondsSinceMidnight() {
  return std::fmod(startSecondOfDay_ + elapsedS_, kSecondsPerDay);
}

CalendarTime VirtualClock::now() {
  const double total = startSecondOfDay_ + elapsedS_;
  const long dayOffset = static_cast<long>(std::floor(total / kSecondsPerDay));
  const long secondOfDay = static_cast<long>(std::floor(total - dayOffset * kSecondsPerDay));
  CalendarTime t = civilFromDays(startDay_ + dayOffset);
  t.hour = static_cast<int>(secondOfDay / 3600);
  t.minute = static_cast<int>(secondOfDay / 60 % 60);
  t.second = static_cast<int>(secondOfDay % 60);
  return t;
}

void VirtualClock::sleepUntil(double moment) {
  if (moment > elapsedS_) elapsedS_ = moment;
}

void VirtualClock::advanceBy(double seconds) {
  if (seconds > 0) elapsedS_ += seconds;
}

void VirtualClock::setSecondsSinceMidnight(double seconds) {
  startSecondOfDay_ += seconds - secondsSinceMidnight();
}

}  // namespace zorvel
