#include "core/autosampler/autosampler_field.h"

#include <array>

namespace zorvel {

namespace {

struct FieldEntry {
  const char* control;
  const char* label;
  std::int16_t AutosamplerSettings::*value;
};

// In the order of AutosamplerField.
constexpr std::array<FieldEntry, kAutosamplerFieldCount> kFields{{
    {"SampleVolume", "Sample Volume (ul):", &AutosamplerSettings::SampleVolume},
    {"BackFlow", "Backfill Volume (ul):", &AutosamplerSettings::BackFlowVolume},
    {"AirVolume", "Air Volume (ul):", &AutosamplerSettings::AirVolume},
    {"FillSpeed", "Fill Speed:", &AutosamplerSettings::FillSpeed},
    {"DispenseSpeed", "Dispense Speed:", &AutosamplerSettings::DispenseSpeed},
    {"FillSpeedFlush", "Fill Speed:", &AutosamplerSettings::FillSpeedFlush},
    {"DispenseSpeedFlush", "Dispense Speed:", &AutosamplerSettings::DispenseSpeedFlush},
    {"FlushTime", "Flush Vol (ul):", &AutosamplerSettings::FlushTime},
    {"AirDryTime", "Air Dry Time (secs):", &AutosamplerSettings::AirDryTime},
    {"StartingTube", "Starting Tube:", &AutosamplerSettings::StartingTube},
    {"EndingTube", "Ending Tube:", &AutosamplerSettings::EndingTube},
    {"StandardTube", "Pos.", &AutosamplerSettings::StandardTube},
    {"StandardFreq", "Freq.", &AutosamplerSettings::StandardFreq},
    {"BlankTube", "Pos.", &AutosamplerSettings::BlankTube},
    {"BlankFreq", "Freq.", &AutosamplerSettings::BlankFreq},
}};

const FieldEntry& entry(AutosamplerField field) {
  return kFields[static_cast<std::size_t>(field)];
}

}  // namespace

const char* ControlName(AutosamplerField field) {
  return entry(field).control;
}

const char* FieldLabel(AutosamplerField field) {
  return entry(field).label;
}

std::int16_t& FieldValue(AutosamplerSettings& settings, AutosamplerField field) {
  return settings.*(entry(field).value);
}

std::int16_t FieldValue(const AutosamplerSettings& settings, AutosamplerField field) {
  return settings.*(entry(field).value);
}

}  // namespace zorvel
