#include "core/method/method_checks.h"

#include <algorithm>
#include <utility>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

bool within(float value, float low, float high) {
  return value >= low && value <= high;
}

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

using Problem = std::optional<MethodProblem>;

Problem problem(std::string message, MethodControl focus) {
  return MethodProblem{std::move(message), focus, false};
}

// Numbers of colours and the read settings.
Problem readSettingsProblem(const MethodSettings& m) {
  using C = MethodControl;
  if (m.NoColors < 1 || m.NoColors > kMaxColours)
    return problem("Number of colors must be between 1 and 30.", C::nColors_Box);
  if (!within(m.ScanSpeed, -1500, -10) && !within(m.ScanSpeed, 10, 1500))
    return problem("Scan speed must be between -1500 and -10 or 10 and 1500.", C::ScnSpd_Box);
  if (!within(m.ReadTime, 0.1f, 100))
    return problem("Read time for samples must be between 0.1 and 100.", C::RdTime_Box);
  if (!within(m.ReadTimePures, 0.1f, 100))
    return problem("Read time for pures must be between 0.1 and 100.", C::RdTimePures_Box);
  return std::nullopt;
}

Problem synchProblem(const MethodSettings& m, const FixedTableExtremes& extremes) {
  using C = MethodControl;
  const SynchScanSettings& s = m.SynchScan;
  if (!within(s.ExSl, 2.5f, 15))
    return problem("Excitation slit must be between 2.5 and 15.  Please try again!",
                   C::ExSlSync_Box);
  if (!within(s.EmSl, 2.5f, 20))
    return problem("Emission slit must be between 2.5 and 20.  Please try again!", C::EmSlSync_Box);
  if (!within(s.LowerLimit, 200, 800))
    return problem(
        "Scan excitation wavelength lower limit must be between 200 and 800.  Please try again!",
        C::ScanLL_Box);
  if (!(s.UpperLimit > s.LowerLimit && s.UpperLimit <= 800))
    return problem("Scan excitation wavelength upper limit must be between " +
                       text::plainSingle(s.LowerLimit) + " and 800.  Please try again!",
                   C::ScanUL_Box);
  if (s.UpperLimit + s.MonochromatorOffset > 900)
    return problem(
        "Scan excitation wavelength upper limit + the offset must be less than 900.  Please try "
        "again!",
        C::ScanUL_Box);
  if (s.MonochromatorOffset < 1)
    return problem("Scan offset must be a positive number.  Please try again!", C::ScanOff_Box);
  if (!within(s.ScanDataInterval, 0.1f, 5))
    return problem("Scan data interval must be between 0.1 and 5 nm.  Please try again!",
                   C::ScanDInt_Box);
  if (!m.Fixed) return std::nullopt;
  if (s.LowerLimit > extremes.LowestFixedExcitation)
    return problem(
        "Scan Lower Limit must be <= than the lowest fixed wavelength excitation wavelength (" +
            text::fixed(extremes.LowestFixedExcitation, 1) + ").",
        C::ScanLL_Box);
  if (s.UpperLimit < extremes.HighestFixedEmission)
    return problem(
        "Scan Upper Limit must be >= than the highest fixed wavelength emission wavelength (" +
            text::fixed(extremes.HighestFixedEmission, 1) + ").",
        C::ScanUL_Box);
  return std::nullopt;
}

Problem identityProblem(const MethodSettings& m) {
  using C = MethodControl;
  if (m.Operator.empty()) return problem("Please enter an analyst name/code.", C::Op_Box);
  if (!(m.AmtSolvent > 0))
    return problem("Amount of solvent must be a positive number.", C::AmtSolv_Box);
  if (m.StudyId.empty()) return problem("Please enter a sample description.", C::sampid_box);
  if (m.Repetitions < 1)
    return problem("Number of repetitions must be a positive integer. Please reenter.",
                   C::NumReps_Box);
  return std::nullopt;
}

}  // namespace

const std::int16_t* IntegerField(const MethodSettings& m, std::string_view key) {
  using M = MethodSettings;
  using A = AutosamplerSettings;
  static constexpr std::pair<std::string_view, std::int16_t M::*> kHeader[] = {
      {"No.Colors", &M::NoColors}, {"No.Pures", &M::NoPures}, {"Repetitions", &M::Repetitions}};
  static constexpr std::pair<std::string_view, std::int16_t A::*> kAutosampler[] = {
      {"SampleVolume", &A::SampleVolume},
      {"AirVolume", &A::AirVolume},
      {"BackFlowVolume", &A::BackFlowVolume},
      {"FillSpeed", &A::FillSpeed},
      {"DispenseSpeed", &A::DispenseSpeed},
      {"FillSpeedFlush", &A::FillSpeedFlush},
      {"DispenseSpeedFlush", &A::DispenseSpeedFlush},
      {"FlushTime", &A::FlushTime},
      {"AirDryTime", &A::AirDryTime},
      {"SyringeVolume", &A::SyringeVolume},
      {"StartingTube", &A::StartingTube},
      {"EndingTube", &A::EndingTube},
      {"StandardTube", &A::StandardTube},
      {"StandardFreq", &A::StandardFreq},
      {"BlankTube", &A::BlankTube},
      {"BlankFreq", &A::BlankFreq},
      {"RinseHeight", &A::RinseHeight},
      {"StandardHeight", &A::StandardHeight},
      {"TubeHeight", &A::TubeHeight},
      {"BackFillHeight", &A::BackFillHeight},
      {"StandardBFHeight", &A::StandardBFHeight},
      {"PumpDirection", &A::PumpDirection}};
  for (const auto& [name, member] : kHeader) {
    if (name == key) return &(m.*member);
  }
  for (const auto& [name, member] : kAutosampler) {
    if (name == key) return &(m.Autosampler.*member);
  }
  return nullptr;
}

std::optional<std::string> PuresProblem(const MethodSettings& m) {
  // Pures are read only with a spillover matrix (a scan always makes one).
  if (!(m.Spillover || m.Synch) || m.NoPures == m.NoColors) return std::nullopt;
  return "No.Pures " + whole(m.NoPures) + " must equal No.Colors (" + whole(m.NoColors) +
         "): one pure sample is read for each colour.";
}

std::optional<WavelengthFault> FindWavelengthFault(const MethodSettings& method,
                                                   FixedTableExtremes& extremes) {
  extremes = FixedTableExtremes{};
  const int rows = std::clamp<int>(method.NoColors, 0, kMaxColours);
  for (int row = 1; row <= rows; ++row) {
    const ColourDeclaration& pair = method.FixedPairs.colour(row);
    if (!within(pair.ExWl, 200, 800)) return WavelengthFault{PairField::ExWl, row};
    extremes.LowestFixedExcitation = std::min<double>(extremes.LowestFixedExcitation, pair.ExWl);
    if (!within(pair.EmWl, 200, 900)) return WavelengthFault{PairField::EmWl, row};
    extremes.HighestFixedEmission = std::max<double>(extremes.HighestFixedEmission, pair.EmWl);
    if (!within(pair.ExSl, 2.5f, 15)) return WavelengthFault{PairField::ExSl, row};
    if (!within(pair.EmSl, 2.5f, 20)) return WavelengthFault{PairField::EmSl, row};
  }
  return std::nullopt;
}

std::string WavelengthFaultMessage(PairField field) {
  switch (field) {
    case PairField::ExWl:
      return "Answer must be between 200 and 800.";
    case PairField::EmWl:
      return "Answer must be between 200 and 900.";
    case PairField::ExSl:
      return "Answer must be between 2.5 and 15.";
    case PairField::EmSl:
      break;
  }
  return "Answer must be between 2.5 and 20.";
}

std::optional<MethodProblem> FirstMethodProblem(const MethodSettings& m, int firstSampleNumber,
                                                const FixedTableExtremes& extremes,
                                                const std::function<bool()>& wavelengthsValid) {
  if (Problem p = readSettingsProblem(m)) return p;
  if (m.Synch) {
    if (Problem p = synchProblem(m, extremes)) return p;
  }
  if (Problem p = identityProblem(m)) return p;
  if (m.Fixed && !wavelengthsValid())
    return MethodProblem{kWavelengthDeclarationError, MethodControl::Other, true};
  const int tubes = m.Autosampler.EndingTube - m.Autosampler.StartingTube + 1;
  if (m.DeliveryMethod == Delivery::Autosampler && tubes < m.NoColors) {
    return problem("You have requested that there be " + whole(m.NoColors) +
                       " colors.  However you have indicated that " + whole(tubes) +
                       " tubes are to be used.  The number of tube positions must be greater "
                       "than or equal to the number of colors.  Please correct!",
                   MethodControl::nColors_Box);
  }
  // The field stores -1 for text that is no number; a typed negative number is no better.
  if (firstSampleNumber < 0)
    return problem("The starting number is negative or undefined.  Please correct.",
                   MethodControl::swell_box);
  return std::nullopt;
}

std::optional<std::string> UnfitNumberProblem(const MethodSettings& method) {
  for (const UnfitNumber& unfit : method.UnfitNumbers) {
    // A value typed since the file was read replaces what the file said.
    const std::int16_t* field = IntegerField(method, unfit.key);
    if (field == nullptr || *field != -1) continue;
    return unfit.key + " " + unfit.text +
           " does not fit: the method file must give a whole number from -32768 to 32767.";
  }
  return std::nullopt;
}

std::optional<std::string> CheckMethodForRun(const MethodSettings& method, int firstSampleNumber) {
  if (auto unfit = UnfitNumberProblem(method)) return unfit;
  FixedTableExtremes extremes;
  const std::optional<WavelengthFault> fault = FindWavelengthFault(method, extremes);
  const std::optional<MethodProblem> p =
      FirstMethodProblem(method, firstSampleNumber, extremes, [&fault] { return !fault; });
  if (!p) return PuresProblem(method);
  if (!p->wavelengths || !fault) return p->message;
  return p->message + "\nRow " + whole(fault->row) + ": " + WavelengthFaultMessage(fault->field);
}

}  // namespace zorvel
