#pragma once

#include "core/state/method_settings.h"

// The methods behind the golden method files. Fields in declaration order: Fixed, Synch,
// Spillover, NoColors, NoPures, ReadTime, ReadTimePures, ScanSpeed, FilterSetting, PMTVoltage,
// DeliveryMethod, PrintResults, AmtSolvent, Repetitions, FileType, Operator, StudyId,
// FixedPairs, SynchScan, Autosampler.
namespace zorvel::testing {

// clang-format off
inline MethodSettings FixedCuvetteMethod() {
  MethodSettings m{true, false, true, 3, 3, 1, 10, 480, EmissionFilter::Cutoff350, 820, Delivery::Cuvette, false, 2.5f, 1, DataFileType::DosWindows, "JS",
                   "Liver extracts, batch 7", {}, {}, {}, {}};
  m.FixedPairs.colour(1) = {380, 440, 5, 5, 1};
  m.FixedPairs.colour(2) = {493, 515, 5, 5, 4};
  m.FixedPairs.colour(3) = {617.5f, 640, 12.5f, 2.5f, 10};
  return m;
}

inline MethodSettings FixedSynchCuvetteMethod() {
  MethodSettings m{true, true, true, 2, 2, 0.5f, 10, -240, EmissionFilter::Transmittance1Percent, -1, Delivery::Cuvette, true, 2, 3, DataFileType::Macintosh,
                   " M. Dupr\xe9 ", "Gill tissue", {}, {4, 4, 330, 720, 15, 0.5f}, {}, {}};
  m.FixedPairs.colour(1) = {340, 400, 10, -1, 0};
  m.FixedPairs.colour(2) = {682, 705.25f, 15, 20, 13};
  return m;
}

inline MethodSettings SynchAutosamplerMethod() {
  // Autosampler: volumes, speeds and times, tubes, heights, pump direction, then the codes.
  return MethodSettings{false, true, true, 1, 1, 1, 10, 1500, EmissionFilter::None, 775, Delivery::Autosampler, false, 2, 1, DataFileType::DosWindows,
                        "robot",
                        "Plate 12", {}, {2.5f, 20, 250, 600, 30, 0.1f},
                        {750, 500, 25, 15, 10, 10, 10, 8000, 15, 5, 5, 96, 1, 50, 2, 50, 70, 100,
                         105, 70, 30, 2, PumpResolution::Fine, Disposition::Save, true, false, "/lab/METHODS/tray96.tgf"}, {}};
}
// clang-format on

}  // namespace zorvel::testing
