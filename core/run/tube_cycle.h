#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/instruments/arm.h"
#include "core/instruments/instrument_error.h"
#include "core/instruments/pump.h"
#include "core/run/sample_type.h"
#include "core/state/method_settings.h"
#include "core/state/pump_steps.h"

namespace zorvel {

namespace tube_status {
inline constexpr const char* kRinsing = "Rinsing & Drying System";
inline constexpr const char* kLocating = "Locating Sample";
inline constexpr const char* kExtracting = "Extracting Sample";
inline constexpr const char* kFlushing = "Flushing Sample Into Flow Cell";
inline constexpr const char* kBackFlushing = "Back Flushing Sample Into Flow Cell";
}  // namespace tube_status

// The arm and the dilutor bringing one tube's liquid into the flow cell and taking it away
// again: the rinse and air dry before every tube, the draw at the tube's probe heights, and
// the disposal afterwards. Each operation returns the first failure of the arm or the dilutor
// (the operator has been told) and stops there.
class TubeCycle {
 public:
  // showStatus puts a step's title in the run window; yield lets the window's events through
  // between steps.
  TubeCycle(Arm& arm, Pump& pump, const AutosamplerSettings& settings,
            std::function<void(const std::string&)> showStatus, std::function<void()> yield);

  // Solvent through the probe, the line and the flow cell at the rinse station, the arm home,
  // then air through the flow cell for AirDryTime seconds.
  LinkFailure RinseAndDry();
  // Over the tube, the probe down to the extraction height to draw the sample, up to the flush
  // height to draw air behind it into the flow cell, then a little pushed back.
  LinkFailure DrawIntoFlowCell(std::int16_t tube, std::int16_t extractionHeight,
                               std::int16_t flushHeight, const PumpSteps& steps);
  // A sample to be saved goes back into its tube; one thrown away, and every
  // pure, control and blank, goes to the rinse station.
  LinkFailure DisposeSample(Disposition disposition, SampleType type);

  Arm& arm() { return arm_; }
  Pump& pump() { return pump_; }

 private:
  void status(const char* text);
  void yield();

  Arm& arm_;
  Pump& pump_;
  const AutosamplerSettings& settings_;
  std::function<void(const std::string&)> showStatus_;
  std::function<void()> yield_;
};

}  // namespace zorvel
