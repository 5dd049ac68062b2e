#include "core/method/instrument_ranges.h"

#include "core/text/number_format.h"

namespace zorvel {

namespace {

struct Range {
  double low;
  double high;
};
constexpr Range kReadTimeS{0.1, 100};
constexpr Range kPmtV{0, 900};
constexpr Range kExcitationNm{200, 800};
constexpr Range kEmissionNm{200, 900};
constexpr Range kExcitationSlitNm{2.5, 15};
constexpr Range kEmissionSlitNm{2.5, 20};

bool within(double value, Range r) {
  return value >= r.low && value <= r.high;
}

std::string outside(const std::string& what, double value, Range r, const char* unit) {
  return what + " " + text::plainSingle(static_cast<float>(value)) + " is outside " +
         text::plainSingle(static_cast<float>(r.low)) + " to " +
         text::plainSingle(static_cast<float>(r.high)) + " " + unit +
         ", which the fluorimeter would refuse.";
}

std::optional<std::string> pairProblem(const ColourDeclaration& p, int row) {
  const std::string colour = "Colour " + std::to_string(row) + ": the ";
  if (!within(p.ExWl, kExcitationNm))
    return outside(colour + "excitation wavelength", p.ExWl, kExcitationNm, "nm");
  if (!within(p.EmWl, kEmissionNm))
    return outside(colour + "emission wavelength", p.EmWl, kEmissionNm, "nm");
  if (!within(p.ExSl, kExcitationSlitNm))
    return outside(colour + "excitation slit", p.ExSl, kExcitationSlitNm, "nm");
  if (!within(p.EmSl, kEmissionSlitNm))
    return outside(colour + "emission slit", p.EmSl, kEmissionSlitNm, "nm");
  return std::nullopt;
}

std::optional<std::string> scanProblem(const SynchScanSettings& s) {
  if (!within(s.ExSl, kExcitationSlitNm))
    return outside("The scan's excitation slit", s.ExSl, kExcitationSlitNm, "nm");
  if (!within(s.EmSl, kEmissionSlitNm))
    return outside("The scan's emission slit", s.EmSl, kEmissionSlitNm, "nm");
  for (const float limit : {s.LowerLimit, s.UpperLimit}) {
    if (!within(limit, kExcitationNm))
      return outside("The scan's excitation limit", limit, kExcitationNm, "nm");
    if (!within(limit + s.MonochromatorOffset, kEmissionNm)) {
      return outside("The scan's emission limit", limit + s.MonochromatorOffset, kEmissionNm, "nm");
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> InstrumentRangeProblem(const MethodSettings& m) {
  if (!within(m.ReadTime, kReadTimeS)) return outside("The read time", m.ReadTime, kReadTimeS, "s");
  // Pures are read when the method asks for them (a scan always does).
  if ((m.Spillover || m.Synch) && !within(m.ReadTimePures, kReadTimeS))
    return outside("The read time for pures", m.ReadTimePures, kReadTimeS, "s");
  if (m.PMTVoltage != -1 && !within(m.PMTVoltage, kPmtV))
    return outside("The PMT voltage", m.PMTVoltage, kPmtV, "V");
  if (m.Fixed) {
    if (m.NoColors < 1 || m.NoColors > kMaxColours) {
      return "The method declares " + std::to_string(m.NoColors) +
             " colours; a method reads 1 to 30.";
    }
    for (int row = 1; row <= m.NoColors; ++row) {
      if (auto problem = pairProblem(m.FixedPairs[static_cast<std::size_t>(row)], row))
        return problem;
    }
  }
  if (m.Synch) return scanProblem(m.SynchScan);
  return std::nullopt;
}

}  // namespace zorvel
