#include "core/text/date_format.h"

#include <cstdio>

namespace zorvel::text {

std::string formatDate(const CalendarTime& t) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%02d-%02d-%04d", t.month, t.day, t.year);
  return buf;
}

std::string formatTime(const CalendarTime& t) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%02d:%02d:%02d", t.hour, t.minute, t.second);
  return buf;
}

std::string formatHms(long seconds) {
  if (seconds < 0) seconds = 0;
  char buf[40];
  std::snprintf(buf, sizeof buf, "%02ld:%02ld:%02ld", seconds / 3600, seconds / 60 % 60,
                seconds % 60);
  return buf;
}

}  // namespace zorvel::text
