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

std::optional<Refusal> RefuseReading(const IntensitySettings& s, const IntensityLimits& l) {
  const auto outside = [](double v, double low, double high) { return !(v >= low && v <= high); };
  if (outside(s.excitationNm, l.excitationMinNm, l.excitationMaxNm)) {
    return Refusal{IntensityBox::ExWl, "The excitation wavelength must be from " +
                                           Range(l.excitationMinNm, l.excitationMaxNm, "nm.")};
  }
  if (outside(s.emissionNm, l.emissionMinNm, l.emissionMaxNm)) {
    return Refusal{IntensityBox::EmWl, "The emission wavelength must be from " +
                                           Range(l.emissionMinNm, l.emissionMaxNm, "nm.")};
  }
  if (outside(s.excitationSlitNm, l.excitationSlitMinNm, l.excitationSlitMaxNm)) {
    return Refusal{IntensityBox::ExSl,
                   "The excitation slit must be from " +
                       Range(l.excitationSlitMinNm, l.excitationSlitMaxNm, "nm.")};
  }
  if (outside(s.emissionSlitNm, l.emissionSlitMinNm, l.emissionSlitMaxNm)) {
    return Refusal{IntensityBox::EmSl, "The emission slit must be from " +
                                           Range(l.emissionSlitMinNm, l.emissionSlitMaxNm, "nm.")};
  }
  if (outside(s.readTimeS, l.readTimeMinS, l.readTimeMaxS)) {
    return Refusal{IntensityBox::RdTime,
                   "The read time must be from " + Range(l.readTimeMinS, l.readTimeMaxS, "sec.")};
  }
  if (outside(std::fabs(s.scanSpeed), l.scanSpeedMin, l.scanSpeedMax)) {
    return Refusal{IntensityBox::ScnSpd, "The scan speed must be from " +
                                             Range(-l.scanSpeedMax, -l.scanSpeedMin, "or from ") +
                                             Range(l.scanSpeedMin, l.scanSpeedMax, "nm/min.")};
  }
  if (s.voltageOption == kVoltageSelected && outside(s.pmtVolts, l.pmtMinV, l.pmtMaxV)) {
    return Refusal{IntensityBox::PMTVoltage,
                   "The PMT voltage must be from " + Range(l.pmtMinV, l.pmtMaxV, "V.")};
  }
  return std::nullopt;
}

std::vector<IntensityCommand> IntensitySetUpCommands(const IntensitySettings& s) {
  const std::string prefix = "Setting-up Instrument...";
  return {
      {prefix + "Set Free Run Mode", "$RE 0"},
      {prefix + "Set Fluorescence Mode", "$PH 0"},
      {prefix + "Turn Lamp On", "$ES 0"},
      {prefix + "Set Filter", fluor::FilterCommand(s.filter)},
      {prefix + "Set PMT Voltage", fluor::PmtVoltageCommand(s.pmtVolts)},
      {prefix + "Set Scan Speed", fluor::ScanSpeedCommand(s.scanSpeed)},
      {"Setting Excitation Slit", fluor::ExcitationSlitCommand(s.excitationSlitNm)},
      {"Setting Emission Slit", fluor::EmissionSlitCommand(s.emissionSlitNm)},
      {"Setting Monochromators", fluor::MonochromatorCommand(s.excitationNm, s.emissionNm)},
  };
}

}  // namespace zorvel
