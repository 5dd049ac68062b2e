#pragma once

#include <optional>
#include <string>

#include "core/state/method_settings.h"

namespace zorvel {

// What the fluorimeter would refuse in the method: read times outside 0.1 to 100 s, a PMT
// voltage outside 0 to 900 V (other than the default, -1), wavelengths and slits of the fixed
// pairs and of the scan outside the instrument's ranges. The first problem found, as a
// sentence for the operator; nothing when the instrument takes every value.
std::optional<std::string> InstrumentRangeProblem(const MethodSettings& method);

}  // namespace zorvel
