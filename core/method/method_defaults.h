#pragma once

#include <cstdint>

#include "core/state/app_state.h"
#include "core/state/method_settings.h"

namespace zorvel {

// The settings of a new method made without a template: fixed-wavelength reads of one colour
// with spillover, 350 nm filter, 820 V, cuvette delivery, DOS/Windows line ends, every fixed
// pair zero, and the autosampler defaults. LineEnding becomes CR LF.
void SetMethodDefaults(AppState& state);

// The autosampler settings of a new method, also set at start-up. EndingTube is the number of
// tubes of the loaded tray.
void SetAutosamplerDefaults(AppState& state);
void SetAutosamplerDefaults(AutosamplerSettings& settings, std::int16_t tubeCount);

}  // namespace zorvel
