#pragma once

#include <string>

namespace zorvel::text {

// A time of day to the millisecond, for traces: 14:05:09.123 (truncated, never rounded up into
// the next second; values past midnight wrap).
std::string formatTimeMs(double secondsSinceMidnight);

}  // namespace zorvel::text
