#pragma once

#include <optional>
#include <string_view>

namespace zorvel {

enum class Parity { None, Even, Odd, Mark, Space };
enum class StopBits { One, OneAndHalf, Two };

// A port's settings text such as "9600,N,8,1": speed, parity letter, data bits, stop bits.
struct LineSettings {
  int baud = 9600;
  Parity parity = Parity::None;
  int dataBits = 8;
  StopBits stopBits = StopBits::One;

  friend bool operator==(const LineSettings&, const LineSettings&) = default;
};

// Reads "9600,N,8,1" (parity N, E, O, M or S in either case; 5 to 8 data bits; 1, 1.5 or 2
// stop bits). Nothing when any part is missing or out of range.
std::optional<LineSettings> ParseLineSettings(std::string_view text);

}  // namespace zorvel
