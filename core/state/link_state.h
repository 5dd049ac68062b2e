#pragma once

#include <cstdint>

namespace zorvel {

// Where the arm was last sent and the tray calibration. The offsets hold for every later move,
// a tray run's included, until the operator calibrates again.
struct ArmPlacement {
  float ArmX = 0;  // last commanded position, mm
  float ArmY = 0;
  float ArmOffsetX = 0;  // added to the tray's coordinates of every position
  float ArmOffsetY = 0;
};

// Instrument link state shared by every window that drives an instrument.
struct LinkState {
  // Consecutive 10-second status time-outs of the fluorimeter; the program halts at 2.
  std::int16_t LinkTimeoutCount = 0;
  // Last commanded probe height (the arm's own height units) and tube of the autosampler arm.
  std::int16_t CurrentArmHeight = 0;
  std::int16_t CurrentArmTube = 0;
  // Pump steps per microlitre of the chosen syringe.
  float StepsPerMicrolitre = 0;
  // Kept here rather than by one arm object, so the autosampler window's calibration holds
  // for the run's arm as well.
  ArmPlacement Placement;
};

}  // namespace zorvel
