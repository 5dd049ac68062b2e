#include "core/state/app_state.h"

#include <cmath>

namespace zorvel {

void FillColourTables(AppState& state) {
  static constexpr const char* kNames[14] = {
      "Tissue",     "Blue", "Blue-Green", "Green",   "Yellow-Green", "Yellow",  "Orange",
      "Orange-Red", "Red",  "Carmine",    "Crimson", "DarkRed",      "Scarlet", "Violet"};
  static constexpr std::int16_t kExcitation[14] = {340, 380, 440, 470, 493, 510, 537,
                                                   554, 578, 591, 617, 640, 656, 682};
  state.ColourNames = {};
  state.ColourExcitation = {};
  for (int i = 0; i < 14; ++i) {
    state.ColourNames[static_cast<std::size_t>(i)] = kNames[i];
    state.ColourExcitation[static_cast<std::size_t>(i + 1)] = kExcitation[i];
  }
  state.StatusColours = {PaletteColour::Black, PaletteColour::LightGreen, PaletteColour::LightBlue,
                         PaletteColour::LightRed};
}

int ColourIndexForExcitation(const AppState& state, double excitationNm) {
  for (int k = 1; k <= 14; ++k) {
    if (std::fabs(state.ColourExcitation[static_cast<std::size_t>(k)] - excitationNm) <= 3.0)
      return k - 1;
  }
  return -1;
}

}  // namespace zorvel
