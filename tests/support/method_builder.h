#pragma once

#include <array>
#include <cstdint>

#include "core/state/method_settings.h"

// The methods the run tests and benchmarks start from; each caller changes only what its case
// is about. Header only, so that the benchmarks can use it without the test library.
namespace zorvel::testing {

// Fixed readings of the first `colours` of three pairs the simulated dyes answer, with no
// emission filter at 820 V, one repetition, at the simulated instrument's fastest scan speed.
inline MethodSettings FixedMethod(int colours, float readTimeS = 0.1f) {
  static constexpr std::array<ColourDeclaration, 3> kPairs{
      {{493, 515, 5, 5, 4}, {520, 540, 5, 5, 5}, {617.5f, 640, 10, 5, 10}}};
  MethodSettings m;
  m.Fixed = true;
  m.NoColors = static_cast<std::int16_t>(colours);
  m.ReadTime = readTimeS;
  m.ReadTimePures = readTimeS;
  m.ScanSpeed = 1500;
  m.FilterSetting = EmissionFilter::None;
  m.PMTVoltage = 820;
  m.Repetitions = 1;
  for (int i = 1; i <= colours && i <= 3; ++i) m.FixedPairs.colour(i) = kPairs[i - 1];
  return m;
}

// The syringe's strokes of one tube: what it draws of the sample and of air, what it pushes
// back, and how long the flush runs.
struct Strokes {
  std::int16_t sampleUl = 300;
  std::int16_t airUl = 100;
  std::int16_t backFlowUl = 30;
  std::int16_t flushTimeMs = 300;
};

// The method's samples drawn by the arm from tubes firstTube to lastTube with a 10 ml syringe
// at the demo tray's probe heights; no control or blank unless the caller adds them.
inline void FromTray(MethodSettings& m, int firstTube, int lastTube, Strokes strokes = {}) {
  m.DeliveryMethod = Delivery::Autosampler;
  AutosamplerSettings& a = m.Autosampler;
  a.SampleVolume = strokes.sampleUl;
  a.AirVolume = strokes.airUl;
  a.BackFlowVolume = strokes.backFlowUl;
  a.FlushTime = strokes.flushTimeMs;
  a.SyringeVolume = 10;
  a.StartingTube = static_cast<std::int16_t>(firstTube);
  a.EndingTube = static_cast<std::int16_t>(lastTube);
  a.RinseHeight = 70;
  a.StandardHeight = 100;
  a.StandardBFHeight = 30;
  a.TubeHeight = 105;
  a.BackFillHeight = 70;
}

// A control in tube 1 and a blank in tube 2, each read every `every` samples.
inline void WithReferences(AutosamplerSettings& a, int every) {
  a.HasStandard = a.HasBlank = true;
  a.StandardTube = 1;
  a.BlankTube = 2;
  a.StandardFreq = a.BlankFreq = static_cast<std::int16_t>(every);
}

}  // namespace zorvel::testing
