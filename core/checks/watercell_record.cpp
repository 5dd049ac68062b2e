#include "core/checks/watercell_record.h"

#include <cmath>
#include <vector>

#include "core/instruments/gap_marker.h"
#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr char kTab = '\t';
constexpr const char* kLineEnd = "\r\n";

// The record's columns 5 to 13 take the header fields in this order (numbered from 1).
constexpr int kHeaderFieldOrder[] = {1, 2, 3, 4, 6, 7, 5, 8, 9};

// Lines of the log, ended by CR LF, LF or CR alone.
std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r' && text[i] != '\n') continue;
    lines.push_back(text.substr(start, i - start));
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    start = i + 1;
  }
  if (start < text.size()) lines.push_back(text.substr(start));
  return lines;
}

}  // namespace

std::string WaterCellHeaderLine() {
  static constexpr const char* kLabels[] = {"Mean",
                                            "SD",
                                            "Date",
                                            "Time",
                                            "Soft. Rev.",
                                            "Misc.",
                                            "Ex Mono Pos",
                                            "Em Mono Pos",
                                            "Ex Slit",
                                            "Em Slit",
                                            "Scan Speed.Response Time",
                                            "# Pts Used",
                                            "Collection Interval"};
  std::string line;
  for (const char* label : kLabels) {
    if (!line.empty()) line += kTab;
    line += label;
  }
  return line + kLineEnd;
}

std::string WaterCellRecordLine(const WaterCellResult& result, const CalendarTime& written) {
  std::string line = text::fixed(result.mean, 6) + kTab + text::fixed(result.standardDeviation, 6) +
                     kTab + text::formatDate(written) + kTab + text::formatTime(written);
  for (int field : kHeaderFieldOrder) {
    line += kTab;
    line += result.header[static_cast<std::size_t>(field - 1)];
  }
  return line + kLineEnd;
}

bool TimeDriveSums::add(std::string_view token) {
  const auto value = static_cast<float>(fluor::FieldValue(token) / 1000.0);
  if (IsGapMarker(value)) return false;
  sum_ += value;
  sumOfSquares_ += value * value;
  ++count_;
  return true;
}

double TimeDriveSums::mean(int points) const {
  return static_cast<double>(sum_) / points;
}

double TimeDriveSums::standardDeviation(int points) const {
  const double sum = sum_;
  const double variance = (static_cast<double>(sumOfSquares_) - sum * sum / points) / (points - 1);
  // Single-precision sums of a very steady drive can leave a tiny negative variance.
  return variance > 0.0 ? std::sqrt(variance) : 0.0;
}

WaterCellHistory ReadWaterCellHistory(std::string_view logText) {
  const std::vector<std::string_view> lines = SplitLines(logText);
  double total = 0.0;
  int records = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::size_t tab = lines[i].find(kTab);
    if (tab == std::string_view::npos) continue;
    total += fluor::FieldValue(lines[i].substr(0, tab));
    ++records;
  }
  if (records == 0) return {};
  return {static_cast<float>(total / records), records};
}

WaterCellVerdict JudgeWaterCell(float historyMean, double runMean) {
  const double history = historyMean;
  WaterCellVerdict verdict;
  verdict.lower = history - kWaterCellBand * history;
  verdict.upper = history + kWaterCellBand * history;
  verdict.deviation = std::fabs(1.0 - history / runMean);
  // A run mean of 0 gives an infinite or undefined deviation: outside.
  verdict.within = verdict.deviation <= kWaterCellBand;
  return verdict;
}

std::string WaterCellMeanLine(const WaterCellResult& result) {
  return text::fixed(result.mean, 3) + " +/- " + text::fixed(result.standardDeviation, 3);
}

std::vector<std::string> WaterCellVerdictLines(const WaterCellVerdict& verdict) {
  const std::string range = text::fixed(verdict.lower, 3) + " - " + text::fixed(verdict.upper, 3);
  if (verdict.within) {
    return {"Intensity level is WITHIN the expected range (" + range + ")."};
  }
  return {"Intensity level is OUTSIDE expected range (" + range + "). If water",
          "cell is present in cuvette holder then the spectrofluorimeter needs to",
          "be restarted.  Please restart the spectrofluorimeter and run another water",
          "cell time drive.  If it remains out of expected limits, please DO NOT run",
          "samples until the source of the problem has been diagnosed."};
}

}  // namespace zorvel
