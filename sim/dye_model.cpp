#include "sim/dye_model.h"

#include <cmath>

namespace zorvel::sim {

namespace {

constexpr double kRamanShiftPerCm = 3400.0;
constexpr double kWaterRamanLevel = 25.0;  // at 350 nm excitation, reference optics
constexpr double kRamanWidthNm = 3.5;
constexpr double kReferenceSlitNm = 5.0;
constexpr int kReferenceVolts = 820;
constexpr int kDefaultVolts = 775;
constexpr double kPmtExponent = 6.0;

double Band(double wavelengthNm, double peakNm, double widthNm) {
  const double z = (wavelengthNm - peakNm) / widthNm;
  return std::exp(-0.5 * z * z);
}

}  // namespace

const std::array<DyeBand, kDyeCount>& DyeBands() {
  // Excitation peaks at the colours' nominal wavelengths; emissions a Stokes shift above.
  static const std::array<DyeBand, kDyeCount> kBands{{
      {340, 420, 12, 18, 300},  // Tissue
      {380, 445, 12, 16, 420},  // Blue
      {440, 475, 11, 14, 450},  // Blue-Green
      {470, 500, 10, 13, 480},  // Green
      {493, 518, 9, 12, 520},   // Yellow-Green
      {510, 535, 9, 12, 500},   // Yellow
      {537, 560, 8, 11, 460},   // Orange
      {554, 578, 8, 11, 440},   // Orange-Red
      {578, 600, 7, 10, 420},   // Red
      {591, 615, 7, 10, 400},   // Carmine
      {617, 640, 8, 11, 380},   // Crimson
      {640, 662, 7, 10, 360},   // DarkRed
      {656, 678, 7, 10, 340},   // Scarlet
      {682, 705, 8, 11, 320},   // Violet
  }};
  return kBands;
}

double WaterRamanEmissionNm(double excitationNm) {
  return 1.0 / (1.0 / excitationNm - kRamanShiftPerCm * 1e-7);
}

double FilterTransmission(int filter, double emissionNm) {
  static constexpr double kCutoffNm[] = {0, 290, 350, 390, 430, 530};
  if (filter >= 1 && filter <= 5) {
    return 1.0 / (1.0 + std::exp(-(emissionNm - kCutoffNm[filter]) / 3.0));
  }
  if (filter == 8) return 0.01;  // the 1 % attenuator
  return 1.0;
}

double PmtGain(int volts) {
  if (volts == -1) volts = kDefaultVolts;
  if (volts <= 0) return 0.0;
  return std::pow(static_cast<double>(volts) / kReferenceVolts, kPmtExponent);
}

double ModelIntensity(const Sample& sample, const Optics& optics) {
  double light = 0.0;
  const auto& bands = DyeBands();
  for (int i = 0; i < kDyeCount; ++i) {
    const double amount = sample.dyes[static_cast<std::size_t>(i)];
    if (amount <= 0) continue;
    const DyeBand& b = bands[static_cast<std::size_t>(i)];
    light += amount * b.brightness *
             Band(optics.excitationNm, b.excitationNm, b.excitationWidthNm) *
             Band(optics.emissionNm, b.emissionNm, b.emissionWidthNm);
  }
  if (sample.water && optics.excitationNm > 0) {
    const double scatter = std::pow(350.0 / optics.excitationNm, 4.0);
    light += kWaterRamanLevel * scatter *
             Band(optics.emissionNm, WaterRamanEmissionNm(optics.excitationNm), kRamanWidthNm);
  }
  const double slits =
      (optics.excitationSlitNm / kReferenceSlitNm) * (optics.emissionSlitNm / kReferenceSlitNm);
  return light * slits * PmtGain(optics.pmtVolts) *
         FilterTransmission(optics.filter, optics.emissionNm) * optics.lampPower;
}

}  // namespace zorvel::sim
