#include "core/text/calendar_time.h"

namespace zorvel {

// Howard Hinnant's days-from-civil algorithm, proleptic Gregorian calendar.
long daysFromCivil(int year, int month, int day) {
  const long y = year - (month <= 2 ? 1 : 0);
  const long era = (y >= 0 ? y : y - 399) / 400;
  const long yoe = y - era * 400;
  const long mp = (month + 9) % 12;
  const long doy = (153 * mp + 2) / 5 + day - 1;
  const long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468;
}

CalendarTime civilFromDays(long days) {
  days += 719468;
  const long era = (days >= 0 ? days : days - 146096) / 146097;
  const long doe = days - era * 146097;
  const long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const long mp = (5 * doy + 2) / 153;
  CalendarTime t;
  t.day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  t.month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  t.year = static_cast<int>(yoe + era * 400 + (t.month <= 2 ? 1 : 0));
  return t;
}

}  // namespace zorvel
