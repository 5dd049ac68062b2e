#include "core/instruments/fluorimeter_model.h"

namespace zorvel {

// The LS-50: its reading record holds the two wavelengths before the intensity.
const FluorimeterModel kLs50{
    .preference = 1,
    .name = "LS-50",
    .recordFieldsBeforeIntensity = 2,
    .excitationNm = {200, 800},
    .emissionNm = {200, 900},
    .excitationSlitNm = {2.5, 15},
    .emissionSlitNm = {2.5, 20},
    .pmtVoltageV = {200, 1000},
    .readTimeS = {0.1, 100},
    .scanSpeedNmPerMin = {10, 1500},
};

}  // namespace zorvel
