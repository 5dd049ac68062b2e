#pragma once

#include <string>

#include "core/text/calendar_time.h"

namespace zorvel::text {

// Month-day-year with hyphens, as the logs and data files write dates: 03-07-2000.
std::string formatDate(const CalendarTime& t);
// 24-hour time with colons: 14:05:09.
std::string formatTime(const CalendarTime& t);
// A duration or time of day given in whole seconds, as hh:mm:ss (hours not wrapped).
std::string formatHms(long seconds);

}  // namespace zorvel::text
