// A six-tube tray in one row (rinse station at position 0) with the run's range on tubes 3 to 5:
// small enough that a window test sees every tube, with tubes outside the range on both sides.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/method/method_defaults.h"
#include "core/state/app_state.h"

namespace zorvel::testing {

// The rinse station at X 245, Y 20 and tubes 1 to 6 every 18 mm from X 20 along Y 20.
inline TrayGeometry SixTubeTray() {
  TrayGeometry tray;
  tray.positions[0] = TrayPosition{245, 20, 0};
  for (int k = 1; k <= 6; ++k) {
    tray.positions[static_cast<std::size_t>(k)] =
        TrayPosition{20.0f + 18.0f * static_cast<float>(k - 1), 20, static_cast<std::int16_t>(k)};
  }
  tray.positionCount = 7;
  tray.TubeCount = 6;
  return tray;
}

inline void UseSixTubeTray(AppState& state) {
  state.Tray = SixTubeTray();
  SetAutosamplerDefaults(state.Method.Autosampler, 6);
  state.Method.Autosampler.StartingTube = 3;
  state.Method.Autosampler.EndingTube = 5;
}

}  // namespace zorvel::testing
