#include "core/platform/line_settings.h"

#include <array>
#include <cctype>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::optional<Parity> parityFromLetter(std::string_view field) {
  if (field.size() != 1) return std::nullopt;
  switch (std::toupper(static_cast<unsigned char>(field[0]))) {
    case 'N':
      return Parity::None;
    case 'E':
      return Parity::Even;
    case 'O':
      return Parity::Odd;
    case 'M':
      return Parity::Mark;
    case 'S':
      return Parity::Space;
    default:
      return std::nullopt;
  }
}

std::optional<StopBits> stopBitsFrom(std::string_view field) {
  if (field == "1") return StopBits::One;
  if (field == "1.5") return StopBits::OneAndHalf;
  if (field == "2") return StopBits::Two;
  return std::nullopt;
}

std::optional<int> wholeNumber(std::string_view field) {
  if (field.empty() || field.size() > 7) return std::nullopt;
  for (char c : field) {
    if (!std::isdigit(static_cast<unsigned char>(c))) return std::nullopt;
  }
  const auto value = text::parseNumber(field);
  if (!value) return std::nullopt;
  return static_cast<int>(*value);
}

}  // namespace

std::optional<LineSettings> ParseLineSettings(std::string_view text) {
  std::array<std::string_view, 4> fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::size_t comma = text.find(',');
    const bool last = i + 1 == fields.size();
    if (last != (comma == std::string_view::npos)) return std::nullopt;
    fields[i] = text.substr(0, comma);
    if (!last) text.remove_prefix(comma + 1);
  }
  const auto baud = wholeNumber(fields[0]);
  const auto parity = parityFromLetter(fields[1]);
  const auto dataBits = wholeNumber(fields[2]);
  const auto stopBits = stopBitsFrom(fields[3]);
  if (!baud || *baud <= 0 || !parity || !dataBits || *dataBits < 5 || *dataBits > 8 || !stopBits) {
    return std::nullopt;
  }
  return LineSettings{*baud, *parity, *dataBits, *stopBits};
}

}  // namespace zorvel
