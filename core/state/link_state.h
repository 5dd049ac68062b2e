#pragma once

#include <cstdint>

namespace zorvel {

// Instrument link state shared by every window that drives an instrument.
struct LinkState {
  // Consecutive 10-second status time-outs of the fluorimeter; the program halts at 2.
  std::int16_t LinkTimeoutCount = 0;
  // Last commanded probe height (the arm's own height units) and tube of the autosampler arm.
  std::int16_t CurrentArmHeight = 0;
  std::int16_t CurrentArmTube = 0;
  // Pump steps per microlitre of the chosen syringe.
  float StepsPerMicrolitre = 0;
};

}  // namespace zorvel
