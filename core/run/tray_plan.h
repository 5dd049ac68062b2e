#pragma once

#include <cstdint>
#include <vector>

#include "core/run/sample_type.h"
#include "core/state/method_settings.h"

// The order in which a tray run visits the tubes: the opening control and blank rounds, the
// tube range with the pures first and controls and blanks between the samples at their
// frequencies, and the closing control and blank.
namespace zorvel {

enum class TrayPhase { Opening, Tubes, Closing };

struct TrayVisit {
  std::int16_t tube = 0;
  SampleType type = SampleType::Sample;
  TrayPhase phase = TrayPhase::Opening;
  std::int16_t extractionHeight = 0;
  std::int16_t flushHeight = 0;
  // The first sample tube: reaching it ends the pures.
  bool endsPures = false;

  friend bool operator==(const TrayVisit&, const TrayVisit&) = default;
};

// What decides the plan besides the method's autosampler settings.
struct TrayPlanInput {
  const AutosamplerSettings& tray;
  int pures = 0;  // No.Pures
  bool puresPending = false;
  bool buildingDatabases = false;
};

// The first tube read as a sample: the starting tube, after the pure tubes while pures are due.
int FirstSampleTube(const TrayPlanInput& input);
// The number of tubes the time display counts on (an estimate, as the operator knows it).
int PlannedTotal(const TrayPlanInput& input);
// Every visit of the run, in order.
std::vector<TrayVisit> PlanTray(const TrayPlanInput& input);

}  // namespace zorvel
