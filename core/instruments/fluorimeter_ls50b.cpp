#include "core/instruments/fluorimeter_model.h"

namespace zorvel {

// The LS-50B: its reading record carries one more field after the two wavelengths.
const FluorimeterModel kLs50B{
    .preference = 2,
    .name = "LS-50B",
    .recordFieldsBeforeIntensity = 3,
    .excitationNm = {200, 800},
    .emissionNm = {200, 900},
    .excitationSlitNm = {2.5, 15},
    .emissionSlitNm = {2.5, 20},
    .pmtVoltageV = {200, 1000},
    .readTimeS = {0.1, 100},
    .scanSpeedNmPerMin = {10, 1500},
};

}  // namespace zorvel
