#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/instruments/fluorimeter.h"
#include "core/instruments/fluorimeter_model.h"

namespace zorvel {

// The boxes of the intensity check, named as its controls are.
enum class IntensityBox { ExWl, EmWl, ExSl, EmSl, RdTime, ScnSpd, PMTVoltage };

// Option indices of the "PMT Voltage" frame.
inline constexpr int kVoltageDefault = 1;
inline constexpr int kVoltageSelected = 2;

// The settings the intensity window holds while it is open. Wavelengths are whole numbers: a
// typed "397.5" is used as 398. Slits keep the tenths the instrument sets ("2.5" stays 2.5).
// -1 marks an empty or unusable box; -1 as the voltage is the instrument's own default voltage.
struct IntensitySettings {
  std::int16_t excitationNm = 350;
  std::int16_t emissionNm = 398;
  float excitationSlitNm = 5.0f;
  float emissionSlitNm = 5.0f;
  float readTimeS = 1.0f;
  float scanSpeed = 480.0f;  // nm/min.
  std::int16_t filter = 2;
  int voltageOption = kVoltageSelected;
  std::int16_t pmtVolts = 820;
  bool settingsChanged = true;
  bool filterChanged = true;
};

// The text each box opens with.
std::string InitialBoxText(IntensityBox box);

// The filter options of the "Emission Filter" frame: the wheel position and its caption.
struct FilterOption {
  int position;
  const char* caption;
};
const std::vector<FilterOption>& FilterOptions();
bool IsFilterPosition(int position);

// What typing into a box does. A message is shown (and the box's text selected) when it has
// one; the value is stored and the settings count as changed either way.
struct BoxRuleOutcome {
  std::optional<std::string> message;
};
inline constexpr const char* kNonNumericEntry = "Non-numeric entry.  Please try again.";
inline constexpr const char* kAnswerMustBeNumeric = "Answer must be numeric.  Please try again.";
BoxRuleOutcome ApplyBoxText(IntensitySettings& settings, IntensityBox box, std::string_view text);

// The voltage the "Selected" option takes from the PMTVoltage box: its leading number, rounded
// halves to even; 0 when there is none (then refused before a reading).
std::int16_t SelectedVoltage(std::string_view text);

// The first setting that keeps a reading from being taken, with the message that says why.
struct Refusal {
  IntensityBox box;
  std::string message;
};
// The ranges are the model's (FluorimeterModel); the scan speed's holds for either direction.
std::optional<Refusal> RefuseReading(const IntensitySettings& settings,
                                     const FluorimeterModel& model);

// One set-up step of a reading with the status text shown while it is in progress.
struct IntensitySetUpStep {
  std::string statusText;
  FluorimeterSetting setting;
};
std::vector<IntensitySetUpStep> IntensitySetUpSteps(const IntensitySettings& settings);

}  // namespace zorvel
