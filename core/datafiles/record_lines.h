#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/text/calendar_time.h"

// The record lines appended to the files of a data set during a run, one line per reading.
// This is the only place that lays them out; the run's writers append what these return.
// Every line ends with the set's line ending (CR LF or CR).
namespace zorvel {

// Record letters: sample, pure sample, solvent blank or blank, control, and a replicate that is
// not the last of its cuvette reading.
namespace record_letter {
inline constexpr char kSample = 'S';
inline constexpr char kPure = 'P';
inline constexpr char kBlank = 'B';
inline constexpr char kControl = 'C';
inline constexpr char kReplicate = 'R';
}  // namespace record_letter

// The comment as written: without leading and trailing blanks; empty means no comment field.
std::string TrimmedComment(std::string_view comment);

// ".FIX": letter + sample number, the tube position in autosampler mode, each reading "0.000",
// then the comment when one was entered. Fields are TAB-separated.
std::string FixedRecordLine(char letter, int sampleNumber, std::optional<int> tube,
                            std::span<const float> readings, std::string_view comment,
                            std::string_view lineEnding);

// ".CTL" ("C") and ".BLK" ("B"): letter + sample number, each reading in print form, the date,
// the time, then the comment when one was entered.
std::string DatabaseRecordLine(char letter, int sampleNumber, std::span<const float> readings,
                               const CalendarTime& when, std::string_view comment,
                               std::string_view lineEnding);

// ".SYN", ".STL", ".SLK": letter + sample number + one blank, then every scan point in print
// form with no separator beyond the blanks of the print form.
std::string ScanRecordLine(char letter, int sampleNumber, std::span<const float> points,
                           std::string_view lineEnding);

}  // namespace zorvel
