#include "core/autosampler/step_counts.h"

#include <cmath>

#include "core/instruments/pump_protocol.h"

namespace zorvel {

float StepsPerMicrolitreFor(const AutosamplerSettings& settings) {
  return StepsPerMicrolitre(settings.SyringeVolume);
}

std::int16_t StepsForVolume(std::int16_t volumeUl, float stepsPerMicrolitre) {
  const float product = static_cast<float>(volumeUl) * stepsPerMicrolitre;
  return static_cast<std::int16_t>(std::floor(product));
}

PumpSteps ComputePumpSteps(const AutosamplerSettings& settings, float stepsPerMicrolitre) {
  return PumpSteps{StepsForVolume(settings.SampleVolume, stepsPerMicrolitre),
                   StepsForVolume(settings.BackFlowVolume, stepsPerMicrolitre),
                   StepsForVolume(settings.AirVolume, stepsPerMicrolitre)};
}

}  // namespace zorvel
