#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/instruments/fluorimeter_protocol.h"
#include "core/text/calendar_time.h"

namespace zorvel {

// The water-cell log beside the preferences: one header line and one line per accepted check.
inline constexpr std::string_view kWaterCellLogName = "ZORVEL.MSF";

// What one water-cell check found. It outlives the window that ran it: cancelling a later
// window writes the last result of the session into the program log.
struct WaterCellResult {
  double mean = 0.0;
  double standardDeviation = 0.0;
  fluor::TimeDriveHeader header{};  // the nine time-drive header fields as they arrived
};

// The log's header line with its 13 TAB-separated labels and CR LF.
std::string WaterCellHeaderLine();
// One record: mean and SD "0.000000", the date and time of writing, then header fields 1 to 4,
// 6, 7, 5, 8 and 9, TAB-separated, ended by CR LF.
std::string WaterCellRecordLine(const WaterCellResult& result, const CalendarTime& written);

// The running sums of a time drive, kept in single precision as the instrument's values are.
class TimeDriveSums {
 public:
  // A streamed number as read; false (and not counted) when it is the -9999 gap marker.
  bool add(std::string_view token);
  int count() const { return count_; }
  // Mean and standard deviation over the drive's points (not over the count).
  double mean(int points) const;
  double standardDeviation(int points) const;

 private:
  float sum_ = 0.0f;
  float sumOfSquares_ = 0.0f;
  int count_ = 0;
};

// The average of the column-1 values of the log's records. Nothing when the log holds no
// record that counts: a line without a TAB (a blank line, a damaged line) is not a record.
struct WaterCellHistory {
  std::optional<float> mean;
  int records = 0;
};
WaterCellHistory ReadWaterCellHistory(std::string_view logText);

// The 5 % band around the history and whether the run's mean lies in it.
struct WaterCellVerdict {
  double lower = 0.0;
  double upper = 0.0;
  double deviation = 0.0;  // |1 - history mean / run mean|
  bool within = false;
};
inline constexpr double kWaterCellBand = 0.05;
WaterCellVerdict JudgeWaterCell(float historyMean, double runMean);

// Status line 1 after a drive: "101.234 +/- 0.456".
std::string WaterCellMeanLine(const WaterCellResult& result);
// The status lines 3 onwards that tell the verdict.
std::vector<std::string> WaterCellVerdictLines(const WaterCellVerdict& verdict);

}  // namespace zorvel
