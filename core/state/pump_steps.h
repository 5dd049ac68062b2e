#pragma once

#include <cstdint>

namespace zorvel {

// The pump strokes of one sample cycle, in pump steps, derived from the volumes of the
// method's autosampler settings and the syringe's steps per microlitre.
struct PumpSteps {
  std::int16_t SampleSteps = 0;
  std::int16_t BackFlowSteps = 0;
  std::int16_t AirSteps = 0;

  friend bool operator==(const PumpSteps&, const PumpSteps&) = default;
};

}  // namespace zorvel
