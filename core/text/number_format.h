#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Every number form the program writes to a file, a command, a printout or a window comes from
// here, so that a reading looks the same wherever it appears. Numbers always use "." whatever
// the locale.
namespace zorvel::text {

// Shortest ordinary text of a number: 1, 0.5, 820, -3, 87.5.
std::string plain(double value);
// The same for a single-precision value, with at most 7 significant digits (a single holds no
// more), so 0.1f + 0.2f prints 0.3.
std::string plainSingle(float value);
// Print form: a blank for a non-negative value or "-" for a negative one, the shortest form
// with at most 7 significant digits, then one trailing blank (" 1.234 ", "-0.5 ").
std::string printForm(float value);
// Print form without its trailing blank, as header values with a leading sign place are
// written: " 480", "-2.5".
std::string signedPlain(float value);

// Fixed patterns "0", "0.0", "0.00", "0.000": the value rounded to that many decimals, halves
// away from zero, taken from the number's shortest decimal text (so 2.675 gives "2.68").
std::string fixed(double value, int decimals);
std::string fixed(float value, int decimals);

// Right-aligns text in a field of the given width (text that is longer is left whole).
std::string padLeft(std::string_view text, std::size_t width);
// Left-aligns text in a field of the given width (text that is longer is left whole).
std::string padRight(std::string_view text, std::size_t width);

// Rounds to the nearest integer, halves to the even neighbour (2.5 -> 2, 3.5 -> 4, -2.5 -> -2).
double roundHalfEven(double value);
// The rounding of integer fields: halves to even, nullopt when the result leaves 16 bits.
std::optional<std::int16_t> toInt16(double value);
std::optional<std::int32_t> toInt32(double value);

// A decimal number typed by a person or read from a file: optional blanks, sign, digits with
// one optional ".", optional exponent; nothing else. Always "." as the decimal separator.
std::optional<double> parseNumber(std::string_view text);

}  // namespace zorvel::text
