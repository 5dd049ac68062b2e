#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/autosampler/autosampler_field.h"
#include "core/autosampler/step_counts.h"
#include "core/platform/operator.h"
#include "core/state/method_settings.h"

namespace zorvel {

inline constexpr const char* kZorvelErrorTitle = "ZORVEL ERROR";

// One fault of the whole autosampler check: the box it concerns (already corrected where the
// rule corrects) and what the operator is told.
struct AutosamplerFault {
  AutosamplerField field;
  std::string message;
  BoxIcon icon = BoxIcon::Exclamation;

  friend bool operator==(const AutosamplerFault&, const AutosamplerFault&) = default;
};

// Runs every check of the settings in order, correcting each faulty value as its rule says
// and going on with the next, so that one pass finds every fault. The step size and the step
// counts (the program keeps them in LinkState and AppState) are recomputed on the way. No fault
// means the settings are fit for a tray run.
std::vector<AutosamplerFault> CheckAutosamplerSettings(AutosamplerSettings& settings,
                                                       std::int16_t tubeCount,
                                                       float& stepsPerMicrolitre, PumpSteps& steps);

// The whole check as the operator meets it: each fault is shown in its box, in order, and
// `corrected` (when given) is told the box after each message so that a window can show the
// corrected value and select its text. True when the settings passed.
bool ValidateAutosamplerSettings(AutosamplerSettings& settings, std::int16_t tubeCount,
                                 float& stepsPerMicrolitre, PumpSteps& steps, Operator& person,
                                 const std::function<void(AutosamplerField)>& corrected = {});

// What a tray run needs of the settings beyond the whole check above, with it in its place:
// a tray to run on, a 5 or 10 ml syringe, the tube range within the tray, the blank placed as
// the standard must be, and frequencies of 0 or more. Every fault's message, in the order of
// the checks; the settings are not changed. Empty when a tray run may start with them.
std::vector<std::string> AutosamplerRunFaults(const AutosamplerSettings& settings,
                                              std::int16_t tubeCount);

// Opening the autosampler window after a failed whole check, once per program run.
struct AutosamplerWindowOffer {
  bool& everOpened;                  // set whenever the window opens
  std::function<void()> openWindow;  // opens it, and sets everOpened
};

// The whole check as the method editor's "Save" and "OK" run it: when it fails and the
// autosampler window has never been opened, the window is opened so that the operator can
// correct the settings.
bool ValidateAutosamplerSettings(AutosamplerSettings& settings, std::int16_t tubeCount,
                                 float& stepsPerMicrolitre, PumpSteps& steps, Operator& person,
                                 const AutosamplerWindowOffer& offer);

}  // namespace zorvel
