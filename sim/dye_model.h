#pragma once

#include <array>

#include "sim/bench.h"

namespace zorvel::sim {

// Where one dye colour absorbs and emits: Gaussian bands around its peaks, and how bright a
// unit amount of it reads at its own pair with the reference optics.
struct DyeBand {
  double excitationNm;
  double emissionNm;
  double excitationWidthNm;  // standard deviation of the band
  double emissionWidthNm;
  double brightness;  // intensity units per unit amount at the reference optics
};

// The 14 colours in colour-index order ("Tissue" first).
const std::array<DyeBand, kDyeCount>& DyeBands();

// What the instrument is set to when it measures.
struct Optics {
  double excitationNm = 350.0;
  double emissionNm = 397.5;
  double excitationSlitNm = 5.0;
  double emissionSlitNm = 5.0;
  int filter = 7;          // emission filter position; 7 is no filter
  int pmtVolts = 820;      // -1 is the instrument's default voltage
  double lampPower = 1.0;  // 1 for a healthy lamp, 0 when off
};

// Emission wavelength of water's Raman band for an excitation (a 3400 cm-1 shift).
double WaterRamanEmissionNm(double excitationNm);
// Fraction of the emitted light the emission filter passes.
double FilterTransmission(int filter, double emissionNm);
// Photomultiplier gain relative to 820 V.
double PmtGain(int volts);

// The noiseless intensity (instrument units, the reading divided by 1000) of a sample.
// Reference optics: slits 5/5, 820 V, no filter, full lamp; water reads about 25 units at
// 350/397.5 nm there.
double ModelIntensity(const Sample& sample, const Optics& optics);

}  // namespace zorvel::sim
