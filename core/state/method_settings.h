#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/state/colour_declaration.h"
#include "core/state/fixed_pair_table.h"

namespace zorvel {

// How the samples reach the cuvette: poured in by the operator, or drawn from the tray by the
// autosampler arm and the dilutor pump.
enum class Delivery : std::uint8_t { Cuvette, Autosampler };

// The line ends of the data files: CR LF (DOS/Windows) or CR alone (Macintosh).
enum class DataFileType : std::uint8_t { DosWindows, Macintosh };

// How finely the dilutor pump steps: its standard or its fine resolution.
enum class PumpResolution : std::uint8_t { Standard, Fine };

// What becomes of a sample once it is read: thrown away at the rinse station, or saved back
// into its tube.
enum class Disposition : std::uint8_t { ThrowAway, Save };

// The emission filter wheel's positions a method chooses from; the number is the position the
// instrument is sent and the data files record. Position 6 holds no filter a method may use.
enum class EmissionFilter : std::int16_t {
  Cutoff290 = 1,
  Cutoff350 = 2,
  Cutoff390 = 3,
  Cutoff430 = 4,
  Cutoff530 = 5,
  None = 7,
  Transmittance1Percent = 8,
};
inline int WheelPosition(EmissionFilter filter) {
  return static_cast<int>(filter);
}

// The synchronous scan of a method.
struct SynchScanSettings {
  float ExSl = 0;
  float EmSl = 0;
  float LowerLimit = 0;
  float UpperLimit = 0;
  float MonochromatorOffset = 0;
  float ScanDataInterval = 0;

  friend bool operator==(const SynchScanSettings&, const SynchScanSettings&) = default;
};

// Sampling with the autosampler arm and the dilutor pump.
struct AutosamplerSettings {
  std::int16_t SampleVolume = 0;
  std::int16_t AirVolume = 0;
  std::int16_t BackFlowVolume = 0;
  std::int16_t FillSpeed = 0;
  std::int16_t DispenseSpeed = 0;
  std::int16_t FillSpeedFlush = 0;
  std::int16_t DispenseSpeedFlush = 0;
  std::int16_t FlushTime = 0;
  std::int16_t AirDryTime = 0;
  std::int16_t SyringeVolume = 0;
  std::int16_t StartingTube = 0;
  std::int16_t EndingTube = 0;
  std::int16_t StandardTube = 0;
  std::int16_t StandardFreq = 0;
  std::int16_t BlankTube = 0;
  std::int16_t BlankFreq = 0;
  std::int16_t RinseHeight = 0;
  std::int16_t StandardHeight = 0;
  std::int16_t TubeHeight = 0;
  std::int16_t BackFillHeight = 0;
  std::int16_t StandardBFHeight = 0;
  std::int16_t PumpDirection = 0;
  PumpResolution Resolution = PumpResolution::Standard;
  Disposition SampleDisposition = Disposition::ThrowAway;
  bool HasStandard = false;
  bool HasBlank = false;
  std::string TrayDescriptorFile;

  friend bool operator==(const AutosamplerSettings&, const AutosamplerSettings&) = default;
};

// A whole number of the method file that does not fit its 16-bit field: the field holds -1
// and the whole-method check names the key and the text as the file had them.
struct UnfitNumber {
  std::string key;
  std::string text;

  friend bool operator==(const UnfitNumber&, const UnfitNumber&) = default;
};

// The current method: every setting of an analysis, named by the method file's keys.
struct MethodSettings {
  bool Fixed = false;
  bool Synch = false;
  bool Spillover = false;
  std::int16_t NoColors = 0;  // "No.Colors"
  std::int16_t NoPures = 0;   // "No.Pures"
  float ReadTime = 0;
  float ReadTimePures = 0;
  float ScanSpeed = 0;
  EmissionFilter FilterSetting{};
  float PMTVoltage = 0;
  Delivery DeliveryMethod = Delivery::Cuvette;
  bool PrintResults = false;
  float AmtSolvent = 0;
  std::int16_t Repetitions = 0;
  DataFileType FileType = DataFileType::DosWindows;
  std::string Operator;
  std::string StudyId;

  FixedPairTable FixedPairs;
  SynchScanSettings SynchScan;
  AutosamplerSettings Autosampler;
  // What the last reading of a method file could not hold; never written to a file.
  std::vector<UnfitNumber> UnfitNumbers;

  friend bool operator==(const MethodSettings&, const MethodSettings&) = default;
};

}  // namespace zorvel
