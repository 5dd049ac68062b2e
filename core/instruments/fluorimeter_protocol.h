#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

// Text of the fluorimeter's commands and the parsing of its replies, free of any line or
// clock, so that every byte the program sends and every rule it applies to a reply can be
// checked on its own.
namespace zorvel::fluor {

inline constexpr char kCarriageReturn = '\r';
inline constexpr char kLineFeed = '\n';
// Ends the junk the instrument may send ahead of a record.
inline constexpr char kDelete = '\x7f';
inline constexpr std::string_view kAccepted = "0000";
inline constexpr std::string_view kFurtherStatus = "0110";
// What the record reader returns after 30 seconds of silence.
inline constexpr std::string_view kBadRecord = "Bad**";

// A command as it goes on the line: its text and one carriage return.
std::string Frame(std::string_view command);

// Commands with a parameter. Slits, wavelengths, limits and read times use the "0.0" form;
// filter, voltage, scan speed and point counts their plain form.
std::string ExcitationSlitCommand(float slitNm);
std::string EmissionSlitCommand(float slitNm);
std::string MonochromatorCommand(float excitationNm, float emissionNm);
std::string ReadCommand(float readTimeS);
std::string FilterCommand(int position);
std::string PmtVoltageCommand(int volts);
std::string ScanSpeedCommand(float nmPerMinute);
std::string LowerLimitCommand(float wavelengthNm);
std::string UpperLimitCommand(float wavelengthNm);
std::string TimeDriveCommand(int points);

// The numeric value of a field's leading number, 0 when it has none: "350.1" is 350.1,
// " 12abc" is 12, "-.5," is -0.5, "abc" is 0.
double FieldValue(std::string_view field);
// The intensity field as a number: the whole field (blanks around it aside) must be one;
// nothing for "1#7x3" or an empty field.
std::optional<double> WholeNumberField(std::string_view field);

// True for the characters a streamed number is made of: "0123456789-.".
bool IsNumberCharacter(char c);

// How a reading's reported wavelengths are judged against the ones asked for.
enum class AcceptanceRule {
  WithinTolerance,  // the run: both within 0.15 nm, the emission tested first
  Exact,            // the intensity check: both exactly equal (its settings are whole numbers)
};
inline constexpr double kWavelengthToleranceNm = 0.15;

// Field A carries the excitation, field B the emission the instrument is at.
bool WavelengthsAccepted(AcceptanceRule rule, std::string_view fieldA, std::string_view fieldB,
                         double excitationNm, double emissionNm);

// The start of the 10-second status limit: the time of day rounded to a whole second,
// halves to even, so the effective limit lies between 9.5 and 10.5 seconds.
double StatusStartS(double secondsSinceMidnight);
inline constexpr double kStatusLimitS = 10.0;

// The nine fields of a time-drive header in the order they arrive.
using TimeDriveHeader = std::array<std::string, 9>;
// Splits the header text as read (its first character, the DEL, is dropped): eight fields
// each up to the next ",", the ninth up to the next CR. A missing separator makes the field
// the whole remaining text and leaves nothing for those after it.
TimeDriveHeader SplitTimeDriveHeader(std::string_view text);

}  // namespace zorvel::fluor
