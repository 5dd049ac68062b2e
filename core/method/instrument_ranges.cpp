#include "core/method/instrument_ranges.h"

#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string outside(const std::string& what, double value, ValueRange r, const char* unit) {
  return what + " " + text::plainSingle(static_cast<float>(value)) + " is outside " +
         text::plainSingle(static_cast<float>(r.low)) + " to " +
         text::plainSingle(static_cast<float>(r.high)) + " " + unit +
         ", which the fluorimeter would refuse.";
}

std::optional<std::string> pairProblem(const ColourDeclaration& p, int row,
                                       const FluorimeterModel& f) {
  const std::string colour = "Colour " + std::to_string(row) + ": the ";
  if (!f.excitationNm.holds(p.ExWl))
    return outside(colour + "excitation wavelength", p.ExWl, f.excitationNm, "nm");
  if (!f.emissionNm.holds(p.EmWl))
    return outside(colour + "emission wavelength", p.EmWl, f.emissionNm, "nm");
  if (!f.excitationSlitNm.holds(p.ExSl))
    return outside(colour + "excitation slit", p.ExSl, f.excitationSlitNm, "nm");
  if (!f.emissionSlitNm.holds(p.EmSl))
    return outside(colour + "emission slit", p.EmSl, f.emissionSlitNm, "nm");
  return std::nullopt;
}

std::optional<std::string> scanProblem(const SynchScanSettings& s, const FluorimeterModel& f) {
  if (!f.excitationSlitNm.holds(s.ExSl))
    return outside("The scan's excitation slit", s.ExSl, f.excitationSlitNm, "nm");
  if (!f.emissionSlitNm.holds(s.EmSl))
    return outside("The scan's emission slit", s.EmSl, f.emissionSlitNm, "nm");
  for (const float limit : {s.LowerLimit, s.UpperLimit}) {
    if (!f.excitationNm.holds(limit))
      return outside("The scan's excitation limit", limit, f.excitationNm, "nm");
    if (!f.emissionNm.holds(limit + s.MonochromatorOffset)) {
      return outside("The scan's emission limit", limit + s.MonochromatorOffset, f.emissionNm,
                     "nm");
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> InstrumentRangeProblem(const MethodSettings& m,
                                                  const FluorimeterModel& f) {
  if (!f.readTimeS.holds(m.ReadTime)) return outside("The read time", m.ReadTime, f.readTimeS, "s");
  // Pures are read when the method asks for them (a scan always does).
  if ((m.Spillover || m.Synch) && !f.readTimeS.holds(m.ReadTimePures))
    return outside("The read time for pures", m.ReadTimePures, f.readTimeS, "s");
  if (m.PMTVoltage != -1 && !f.pmtVoltageV.holds(m.PMTVoltage))
    return outside("The PMT voltage", m.PMTVoltage, f.pmtVoltageV, "V");
  if (m.Fixed) {
    if (m.NoColors < 1 || m.NoColors > kMaxColours) {
      return "The method declares " + std::to_string(m.NoColors) +
             " colours; a method reads 1 to 30.";
    }
    for (int row = 1; row <= m.NoColors; ++row) {
      if (auto problem = pairProblem(m.FixedPairs.colour(row), row, f)) return problem;
    }
  }
  if (m.Synch) return scanProblem(m.SynchScan, f);
  return std::nullopt;
}

}  // namespace zorvel
