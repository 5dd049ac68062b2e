#include "core/text/clock_time_format.h"

#include <cmath>
#include <cstdio>

namespace zorvel::text {

std::string formatTimeMs(double secondsSinceMidnight) {
  constexpr long kMsPerDay = 86400L * 1000L;
  long ms = static_cast<long>(std::floor(secondsSinceMidnight * 1000.0 + 1e-6)) % kMsPerDay;
  if (ms < 0) ms += kMsPerDay;
  char buf[32];
  std::snprintf(buf, sizeof buf, "%02ld:%02ld:%02ld.%03ld", ms / 3600000, ms / 60000 % 60,
                ms / 1000 % 60, ms % 1000);
  return buf;
}

}  // namespace zorvel::text
