#include "core/checks/intensity_settings.h"

#include <cmath>

#include "core/instruments/fluorimeter_protocol.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t") == std::string_view::npos;
}

// Wavelength and slit boxes: numbers are rounded to whole ones, an empty box is -1 silently,
// anything else is told and also left at -1 so that no reading is taken with it.
BoxRuleOutcome WholeNumberRule(std::int16_t& value, std::string_view text) {
  if (IsBlank(text)) {
    value = -1;
    return {};
  }
  const auto number = text::parseNumber(text);
  const auto whole = number ? text::toInt16(*number) : std::nullopt;
  if (!whole) {
    value = -1;
    return {kNonNumericEntry};
  }
  value = *whole;
  return {};
}

// Slit boxes: the instrument sets slits in tenths of a nanometre, so that is what is kept.
BoxRuleOutcome TenthsRule(float& value, std::string_view text) {
  if (IsBlank(text)) {
    value = -1.0f;
    return {};
  }
  const auto number = text::parseNumber(text);
  if (!number) {
    value = -1.0f;
    return {kNonNumericEntry};
  }
  value = static_cast<float>(text::roundHalfEven(*number * 10.0) / 10.0);
  return {};
}

BoxRuleOutcome RealNumberRule(float& value, std::string_view text) {
  const auto number = text::parseNumber(text);
  if (!number) {
    value = 0.0f;
    return {kAnswerMustBeNumeric};
  }
  value = static_cast<float>(*number);
  return {};
}

std::string Range(double low, double high, const char* unit) {
  return text::plain(low) + " to " + text::plain(high) + " " + unit;
}

}  // namespace

std::string InitialBoxText(IntensityBox box) {
  switch (box) {
    case IntensityBox::ExWl:
      return "350";
    case IntensityBox::EmWl:
      return "397.5";
    case IntensityBox::ExSl:
    case IntensityBox::EmSl:
      return "5";
    case IntensityBox::RdTime:
      return "1";
    case IntensityBox::ScnSpd:
      return "480";
    case IntensityBox::PMTVoltage:
      return "820";
  }
  return {};
}

const std::vector<FilterOption>& FilterOptions() {
  static const std::vector<FilterOption> kOptions = {{1, "290 nm cutoff"},
                                                     {2, "350 nm cutoff"},
                                                     {3, "390 nm cutoff"},
                                                     {4, "430 nm cutoff"},
                                                     {5, "530 nm cutoff"},
                                                     {7, "None"},
                                                     {8, "1% transmittance attenuator"}};
  return kOptions;
}

bool IsFilterPosition(int position) {
  for (const FilterOption& option : FilterOptions()) {
    if (option.position == position) return true;
  }
  return false;
}

BoxRuleOutcome ApplyBoxText(IntensitySettings& settings, IntensityBox box, std::string_view text) {
  settings.settingsChanged = true;
  switch (box) {
    case IntensityBox::ExWl:
      return WholeNumberRule(settings.excitationNm, text);
    case IntensityBox::EmWl:
      return WholeNumberRule(settings.emissionNm, text);
    case IntensityBox::ExSl:
      return TenthsRule(settings.excitationSlitNm, text);
    case IntensityBox::EmSl:
      return TenthsRule(settings.emissionSlitNm, text);
    case IntensityBox::RdTime:
      return RealNumberRule(settings.readTimeS, text);
    case IntensityBox::ScnSpd:
      return RealNumberRule(settings.scanSpeed, text);
    case IntensityBox::PMTVoltage:
      // The box is only read when the "Selected" option is clicked.
      return {};
  }
  return {};
}

std::int16_t SelectedVoltage(std::string_view text) {
  return text::toInt16(fluor::FieldValue(text)).value_or(0);
}

std::optional<Refusal> RefuseReading(const IntensitySettings& s, const FluorimeterModel& model) {
  const auto refused = [](IntensityBox box, const char* what, ValueRange r, const char* unit) {
    return Refusal{box, std::string("The ") + what + " must be from " + Range(r.low, r.high, unit)};
  };
  if (!model.excitationNm.holds(s.excitationNm)) {
    return refused(IntensityBox::ExWl, "excitation wavelength", model.excitationNm, "nm.");
  }
  if (!model.emissionNm.holds(s.emissionNm)) {
    return refused(IntensityBox::EmWl, "emission wavelength", model.emissionNm, "nm.");
  }
  if (!model.excitationSlitNm.holds(s.excitationSlitNm)) {
    return refused(IntensityBox::ExSl, "excitation slit", model.excitationSlitNm, "nm.");
  }
  if (!model.emissionSlitNm.holds(s.emissionSlitNm)) {
    return refused(IntensityBox::EmSl, "emission slit", model.emissionSlitNm, "nm.");
  }
  if (!model.readTimeS.holds(s.readTimeS)) {
    return refused(IntensityBox::RdTime, "read time", model.readTimeS, "sec.");
  }
  const ValueRange speed = model.scanSpeedNmPerMin;
  if (!speed.holds(std::fabs(s.scanSpeed))) {
    return Refusal{IntensityBox::ScnSpd, "The scan speed must be from " +
                                             Range(-speed.high, -speed.low, "or from ") +
                                             Range(speed.low, speed.high, "nm/min.")};
  }
  if (s.voltageOption == kVoltageSelected && !model.pmtVoltageV.holds(s.pmtVolts)) {
    return refused(IntensityBox::PMTVoltage, "PMT voltage", model.pmtVoltageV, "V.");
  }
  return std::nullopt;
}

std::vector<IntensitySetUpStep> IntensitySetUpSteps(const IntensitySettings& s) {
  const std::string prefix = "Setting-up Instrument...";
  using S = FluorimeterSetting;
  return {
      {prefix + "Set Free Run Mode", S::FreeRun()},
      {prefix + "Set Fluorescence Mode", S::Fluorescence()},
      {prefix + "Turn Lamp On", S::Lamp()},
      {prefix + "Set Filter", S::Filter(s.filter)},
      {prefix + "Set PMT Voltage", S::Voltage(s.pmtVolts)},
      {prefix + "Set Scan Speed", S::Speed(s.scanSpeed)},
      {"Setting Excitation Slit", S::ExSlit(s.excitationSlitNm)},
      {"Setting Emission Slit", S::EmSlit(s.emissionSlitNm)},
      {"Setting Monochromators", S::Wavelengths(s.excitationNm, s.emissionNm)},
  };
}

}  // namespace zorvel
