#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/instruments/fluorimeter_model.h"
#include "core/state/method_settings.h"

namespace zorvel {

// Everything a method must pass before a run, in one place, so that `zorvel-run
// --check-method`, "&Save As" and a run agree: the numbers the method file could not hold, the
// editor's whole-method checks, the pures, the fluorimeter's ranges and, for autosampler
// delivery, the whole autosampler check with what a tray run needs on the tray loaded
// (tubeCount, 0 when none is). The method-wide checks stop at their first fault; the
// autosampler checks report every fault, in order. Empty when the method may run as it
// stands: a run then neither refuses nor changes it.
std::vector<std::string> MethodRunProblems(const MethodSettings& method,
                                           const FluorimeterModel& model, int firstSampleNumber,
                                           std::int16_t tubeCount);

}  // namespace zorvel
