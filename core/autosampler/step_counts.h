#pragma once

#include <cstdint>

#include "core/state/method_settings.h"
#include "core/state/pump_steps.h"

namespace zorvel {

// Steps per microlitre of the chosen syringe, in single precision: 0.3 for 10 mL, 0.6 for 5 mL.
float StepsPerMicrolitreFor(const AutosamplerSettings& settings);
// A volume in steps, rounded down (the product is formed in single precision, as the pump
// commands are).
std::int16_t StepsForVolume(std::int16_t volumeUl, float stepsPerMicrolitre);
// All three step counts.
PumpSteps ComputePumpSteps(const AutosamplerSettings& settings, float stepsPerMicrolitre);

}  // namespace zorvel
