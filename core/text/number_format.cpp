#include "core/text/number_format.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <system_error>

namespace zorvel::text {

namespace {

// Splits a finite value into its decimal digits (no leading or trailing zeros) and the power
// of ten of the first digit, using the shortest text that reads back as the same value.
struct Decimal {
  bool negative = false;
  std::string digits;  // empty for zero
  int exponent = 0;    // value = 0.d1d2d3... * 10^exponent
};

template <typename T>
Decimal decompose(T value) {
  Decimal d;
  if (value == 0 || !std::isfinite(value)) return d;
  d.negative = value < 0;
  char buf[64];
  const auto result =
      std::to_chars(buf, buf + sizeof buf, std::fabs(value), std::chars_format::scientific);
  const std::string_view text(buf, static_cast<std::size_t>(result.ptr - buf));
  const std::size_t e = text.find('e');
  for (char c : text.substr(0, e)) {
    if (c != '.') d.digits.push_back(c);
  }
  d.exponent = std::stoi(std::string(text.substr(e + 1))) + 1;
  while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
  return d;
}

// Rounds the digit string so that `keep` digits remain, halves away from zero.
void roundDigits(Decimal& d, int keep) {
  if (keep < 0) {
    d.digits.clear();
    d.exponent = 0;
    return;
  }
  if (static_cast<int>(d.digits.size()) <= keep) return;
  const bool up = d.digits[static_cast<std::size_t>(keep)] >= '5';
  d.digits.resize(static_cast<std::size_t>(keep));
  if (up) {
    int i = keep - 1;
    while (i >= 0 && d.digits[static_cast<std::size_t>(i)] == '9') {
      d.digits[static_cast<std::size_t>(i)] = '0';
      --i;
    }
    if (i < 0) {
      d.digits.insert(d.digits.begin(), '1');
      ++d.exponent;
    } else {
      ++d.digits[static_cast<std::size_t>(i)];
    }
  }
  while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
  if (d.digits.empty()) d.exponent = 0;
}

// Writes digits in ordinary notation with at least `decimals` places after the point.
std::string ordinary(const Decimal& d, int decimals) {
  std::string intPart;
  std::string fracPart;
  const int n = static_cast<int>(d.digits.size());
  if (d.exponent <= 0) {
    intPart = "0";
    fracPart = std::string(static_cast<std::size_t>(-d.exponent), '0') + d.digits;
  } else if (d.exponent >= n) {
    intPart = d.digits + std::string(static_cast<std::size_t>(d.exponent - n), '0');
  } else {
    intPart = d.digits.substr(0, static_cast<std::size_t>(d.exponent));
    fracPart = d.digits.substr(static_cast<std::size_t>(d.exponent));
  }
  if (d.digits.empty()) intPart = "0";
  if (static_cast<int>(fracPart.size()) < decimals) {
    fracPart.resize(static_cast<std::size_t>(decimals), '0');
  }
  const bool zero = d.digits.empty();
  std::string out = (d.negative && !zero) ? "-" : "";
  out += intPart;
  if (!fracPart.empty()) out += "." + fracPart;
  return out;
}

// Scientific notation for numbers too large or small for ordinary text: 1.5E+07, 2E-08.
std::string scientific(const Decimal& d) {
  std::string out = d.negative ? "-" : "";
  out += d.digits.substr(0, 1);
  if (d.digits.size() > 1) out += "." + d.digits.substr(1);
  const int e = d.exponent - 1;
  char buf[16];
  std::snprintf(buf, sizeof buf, "E%c%02d", e < 0 ? '-' : '+', std::abs(e));
  return out + buf;
}

std::string shortest(Decimal d, int maxDigits) {
  roundDigits(d, maxDigits);
  if (d.digits.empty()) return "0";
  if (d.exponent > maxDigits || d.exponent < -maxDigits) return scientific(d);
  return ordinary(d, 0);
}

template <typename T>
std::string fixedImpl(T value, int decimals) {
  if (!std::isfinite(value)) return std::isnan(value) ? "NaN" : (value < 0 ? "-Inf" : "Inf");
  Decimal d = decompose(value);
  roundDigits(d, d.exponent + decimals);
  if (d.digits.empty()) d.negative = false;
  return ordinary(d, decimals);
}

}  // namespace

std::string plain(double value) {
  return shortest(decompose(value), 15);
}

std::string plainSingle(float value) {
  return shortest(decompose(value), 7);
}

std::string printForm(float value) {
  const bool negative = value < 0;
  return std::string(negative ? "-" : " ") + plainSingle(std::fabs(value)) + " ";
}

std::string signedPlain(float value) {
  const bool negative = value < 0;
  return std::string(negative ? "-" : " ") + plainSingle(std::fabs(value));
}

std::string fixed(double value, int decimals) {
  return fixedImpl(value, decimals);
}
std::string fixed(float value, int decimals) {
  return fixedImpl(value, decimals);
}

std::string padLeft(std::string_view text, std::size_t width) {
  if (text.size() >= width) return std::string(text);
  return std::string(width - text.size(), ' ') + std::string(text);
}

std::string padRight(std::string_view text, std::size_t width) {
  std::string out(text);
  if (out.size() < width) out.resize(width, ' ');
  return out;
}

double roundHalfEven(double value) {
  const double floorValue = std::floor(value);
  const double diff = value - floorValue;
  if (diff > 0.5) return floorValue + 1.0;
  if (diff < 0.5) return floorValue;
  return std::fmod(floorValue, 2.0) == 0.0 ? floorValue : floorValue + 1.0;
}

std::optional<std::int16_t> toInt16(double value) {
  if (!std::isfinite(value)) return std::nullopt;
  const double r = roundHalfEven(value);
  if (r < std::numeric_limits<std::int16_t>::min() || r > std::numeric_limits<std::int16_t>::max())
    return std::nullopt;
  return static_cast<std::int16_t>(r);
}

std::optional<std::int32_t> toInt32(double value) {
  if (!std::isfinite(value)) return std::nullopt;
  const double r = roundHalfEven(value);
  if (r < std::numeric_limits<std::int32_t>::min() || r > std::numeric_limits<std::int32_t>::max())
    return std::nullopt;
  return static_cast<std::int32_t>(r);
}

std::optional<double> parseNumber(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  if (text.empty()) return std::nullopt;
  bool negative = false;
  if (text.front() == '+' || text.front() == '-') {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  if (text.empty() || text.front() == '+' || text.front() == '-') return std::nullopt;
  std::size_t digits = 0;
  for (char c : text) {
    if (c >= '0' && c <= '9') ++digits;
    if (c == 'e' || c == 'E') break;
  }
  if (digits == 0) return std::nullopt;
  double value = 0;
  const auto result =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::general);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return negative ? -value : value;
}

}  // namespace zorvel::text
