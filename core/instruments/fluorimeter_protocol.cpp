#include "core/instruments/fluorimeter_protocol.h"

#include <charconv>
#include <cmath>

#include "core/text/number_format.h"

namespace zorvel::fluor {

std::string Frame(std::string_view command) {
  std::string out(command);
  out.push_back(kCarriageReturn);
  return out;
}

std::string ExcitationSlitCommand(float slitNm) {
  return "$SX " + text::fixed(slitNm, 1);
}

std::string EmissionSlitCommand(float slitNm) {
  return "$SM " + text::fixed(slitNm, 1);
}

std::string MonochromatorCommand(float excitationNm, float emissionNm) {
  return "$GM " + text::fixed(excitationNm, 1) + "," + text::fixed(emissionNm, 1);
}

std::string ReadCommand(float readTimeS) {
  return "$RD " + text::fixed(readTimeS, 1);
}

std::string FilterCommand(int position) {
  return "$FW " + text::plain(position);
}

std::string PmtVoltageCommand(int volts) {
  return "$PV " + text::plain(volts);
}

std::string ScanSpeedCommand(float nmPerMinute) {
  return "$SS " + text::plainSingle(nmPerMinute);
}

std::string LowerLimitCommand(float wavelengthNm) {
  return "$AL " + text::fixed(wavelengthNm, 1);
}

std::string UpperLimitCommand(float wavelengthNm) {
  return "$AH " + text::fixed(wavelengthNm, 1);
}

std::string TimeDriveCommand(int points) {
  return "$TD " + text::plain(points);
}

namespace {

// Index of the first character at or after `at` that is not a decimal digit.
std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
  return at;
}

bool IsSign(std::string_view text, std::size_t at) {
  return at < text.size() && (text[at] == '-' || text[at] == '+');
}

}  // namespace

std::optional<double> WholeNumberField(std::string_view field) {
  while (!field.empty() && (field.front() == ' ' || field.front() == '\t')) field.remove_prefix(1);
  while (!field.empty() && (field.back() == ' ' || field.back() == '\t')) field.remove_suffix(1);
  if (field.empty()) return std::nullopt;
  for (const char c : field) {
    if (!IsNumberCharacter(c) && c != '+') return std::nullopt;
  }
  return text::parseNumber(field);
}

double FieldValue(std::string_view field) {
  std::size_t i = 0;
  while (i < field.size() && (field[i] == ' ' || field[i] == '\t')) ++i;
  const std::size_t start = i;
  if (IsSign(field, i)) ++i;
  std::size_t end = SkipDigits(field, i);
  std::size_t digits = end - i;
  if (end < field.size() && field[end] == '.') {
    const std::size_t fractionEnd = SkipDigits(field, end + 1);
    digits += fractionEnd - (end + 1);
    end = fractionEnd;
  }
  if (digits == 0) return 0.0;
  i = end;
  // An exponent counts only when digits follow it.
  if (i < field.size() && (field[i] == 'E' || field[i] == 'e')) {
    const std::size_t exponentStart = IsSign(field, i + 1) ? i + 2 : i + 1;
    const std::size_t exponentEnd = SkipDigits(field, exponentStart);
    if (exponentEnd > exponentStart) i = exponentEnd;
  }
  std::string_view number = field.substr(start, i - start);
  bool negative = false;
  if (number.front() == '-' || number.front() == '+') {
    negative = number.front() == '-';
    number.remove_prefix(1);
  }
  double value = 0.0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec != std::errc()) return 0.0;
  return negative ? -value : value;
}

bool IsNumberCharacter(char c) {
  return (c >= '0' && c <= '9') || c == '-' || c == '.';
}

bool WavelengthsAccepted(AcceptanceRule rule, std::string_view fieldA, std::string_view fieldB,
                         double excitationNm, double emissionNm) {
  const double reportedEx = FieldValue(fieldA);
  const double reportedEm = FieldValue(fieldB);
  if (rule == AcceptanceRule::Exact) {
    return reportedEm == emissionNm && reportedEx == excitationNm;
  }
  if (std::fabs(reportedEm - emissionNm) > kWavelengthToleranceNm) return false;
  return std::fabs(reportedEx - excitationNm) <= kWavelengthToleranceNm;
}

double StatusStartS(double secondsSinceMidnight) {
  return text::roundHalfEven(secondsSinceMidnight);
}

TimeDriveHeader SplitTimeDriveHeader(std::string_view text) {
  TimeDriveHeader fields;
  std::string_view rest = text.empty() ? text : text.substr(1);
  for (std::size_t k = 0; k < fields.size(); ++k) {
    const char separator = k + 1 < fields.size() ? ',' : kCarriageReturn;
    const std::size_t at = rest.find(separator);
    if (at == std::string_view::npos) {
      fields[k] = std::string(rest);
      rest = {};
    } else {
      fields[k] = std::string(rest.substr(0, at));
      rest.remove_prefix(at + 1);
    }
  }
  return fields;
}

}  // namespace zorvel::fluor
