#pragma once

#include <string>
#include <vector>

namespace zorvel {

// The four lines of a tray run's time display: elapsed time with the tubes done of the planned
// total, time per tube, the estimated clock time of completion and the clock time now. Times
// are seconds since midnight; a run that has passed midnight has its elapsed time corrected.
std::vector<std::string> RunTimeLines(long startS, long nowS, int completed, int total);

}  // namespace zorvel
