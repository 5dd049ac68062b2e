#pragma once

#include <cstdint>

#include "core/platform/clock.h"

namespace zorvel {

// Waits a number of seconds of the time of day. A wait that would end in the last seconds
// before midnight (past 23:59:56) first lets midnight pass and then waits the full time, so a
// 10-second wait begun at 86390 s takes 20 seconds. Negative or zero waits return at once.
void WaitSeconds(Clock& clock, std::int16_t seconds);

}  // namespace zorvel
