#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "core/state/method_settings.h"

// The control and blank databases: per kind up to 50 entries of one value per colour, kept
// twice (each colour column sorted on its own, and in arrival order for the trend), with the
// batch of every entry and the statistics the checks and windows show.
namespace zorvel {

inline constexpr int kDatabaseCapacity = 50;

struct ColourStatistics {
  double mean = 0;
  double sd = 0;
  double cv = 0;  // %
  double lower = 0;
  double median = 0;
  double upper = 0;
  double iqr = 0;  // upper - lower
};

// Entries and colours are numbered from 1; row and column 0 are unused.
struct QcDatabase {
  using Table = std::array<std::array<float, kMaxColours + 1>, kDatabaseCapacity + 1>;

  int count = 0;
  Table sorted{};
  Table history{};
  std::array<std::int16_t, kDatabaseCapacity + 1> batch{};
  // The batch given to entries added now: 1 while a new set's databases are being built, the
  // last batch on file + 1 for a reopened set.
  int currentBatch = 1;
  std::array<ColourStatistics, kMaxColours + 1> stats{};
};

// Sorts each colour column of entries 1..count ascending; equal values keep their places.
void SortDatabase(QcDatabase& db, int colours);

// Mean, standard deviation (n - 1) and coefficient of variation of the colour over entries
// 1..count. The sd is 0 below two entries and the cv 0 when the mean is 0.
void CVCheck(const QcDatabase& db, int colour, int count, double& mean, double& sd, double& cv);

// Median and quartiles of the sorted column; quartile positions are rounded halves to even
// and kept within the entries, so one or two entries still give their own values.
void Quartiles(const QcDatabase& db, int colour, int count, double& lower, double& median,
               double& upper);

// Recomputes every colour's statistics from entries 1..count.
void ComputeStatistics(QcDatabase& db, int colours);

// Adds one entry in the given batch. A full database keeps its newest 50: the oldest entry
// leaves the history and the sorted columns are rebuilt from what remains. The columns are
// sorted and the statistics recomputed before it returns.
void AddEntry(QcDatabase& db, std::span<const float> readings, int colours, int batch);

// Reads a ".CTL" or ".BLK" file: the header lines are skipped, each further line is one entry
// (label, one value per colour, date, time, comment). An entry dated as the one before it
// shares its batch; a new date starts the next batch. Values that are not numbers read as 0;
// a missing file gives an empty database. Lines may end in CR LF, CR or LF; an unended last
// line (a record cut short) is left out.
QcDatabase LoadDatabase(const std::string& path, int colours, int headerLines);

}  // namespace zorvel
