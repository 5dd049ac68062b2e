#pragma once

#include <optional>
#include <string>

#include "core/instruments/fluorimeter_model.h"
#include "core/state/method_settings.h"

namespace zorvel {

// What the model would refuse in the method: read times, the PMT voltage (other than the
// default, -1), wavelengths and slits of the fixed pairs and of the scan outside its ranges.
// The first problem found, as a sentence for the operator; nothing when the instrument takes
// every value.
std::optional<std::string> InstrumentRangeProblem(const MethodSettings& method,
                                                  const FluorimeterModel& model);

}  // namespace zorvel
