#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/state/method_settings.h"

// The texts that the method file writes for its coded settings, and back. Reading compares the
// exact text: anything else falls to the default code of the setting (the filter keeps its code).
namespace zorvel::method_codes {

// "290 nm" .. "530 nm", "None", "1% transmittance"; an unknown code is written as its number.
std::string FilterText(EmissionFilter filter);
// Sets the code when the text is one of the filter texts; leaves it unchanged otherwise.
void ApplyFilterText(std::string_view text, EmissionFilter& filter);

// "AutoSampler" or "Cuvette"; any other text reads as the cuvette.
std::string_view DeliveryText(Delivery delivery);
Delivery DeliveryFromText(std::string_view text);

// "Macintosh" or "DOS/Windows"; any other text reads as DOS/Windows.
std::string_view FileTypeText(DataFileType type);
DataFileType FileTypeFromText(std::string_view text);

// "Fine" or "Standard"; any other text reads as standard.
std::string_view ResolutionText(PumpResolution resolution);
PumpResolution ResolutionFromText(std::string_view text);

// "Save" or "Throw Away"; any other text reads as thrown away.
std::string_view DispositionText(Disposition disposition);
Disposition DispositionFromText(std::string_view text);

std::string_view FlagText(bool flag);

}  // namespace zorvel::method_codes

namespace zorvel {

// The data files' line terminator: CR LF for DOS/Windows, CR for Macintosh.
std::string LineEndingFor(DataFileType type);

}  // namespace zorvel
