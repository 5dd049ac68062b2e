#pragma once

#include <cstdint>

#include "core/state/method_settings.h"

namespace zorvel {

// The text boxes of the autosampler window, each bound to one integer of the method's
// autosampler settings.
enum class AutosamplerField {
  SampleVolume,
  BackFlow,
  AirVolume,
  FillSpeed,
  DispenseSpeed,
  FillSpeedFlush,
  DispenseSpeedFlush,
  FlushTime,
  AirDryTime,
  StartingTube,
  EndingTube,
  StandardTube,
  StandardFreq,
  BlankTube,
  BlankFreq,
};

inline constexpr int kAutosamplerFieldCount = 15;

// The control's object name ("SampleVolume", "BackFlow", ...).
const char* ControlName(AutosamplerField field);
// The label beside the box ("Sample Volume (ul):").
const char* FieldLabel(AutosamplerField field);
// The setting the box edits.
std::int16_t& FieldValue(AutosamplerSettings& settings, AutosamplerField field);
std::int16_t FieldValue(const AutosamplerSettings& settings, AutosamplerField field);

}  // namespace zorvel
