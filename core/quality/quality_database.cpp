#include "core/quality/quality_database.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "core/files/file_output.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

int clampColours(int colours) {
  return std::clamp(colours, 0, kMaxColours);
}

// A position of the sorted column, rounded halves to even and kept within 1..last.
int position(double at, int last) {
  return std::clamp(static_cast<int>(text::roundHalfEven(at)), 1, std::max(last, 1));
}

// A record kept for the database: its line and the batch its date gave it.
struct KeptRecord {
  std::string_view line;
  int batch = 0;
};

std::string_view trimmedView(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Calls record(line, field) for every non-empty line after the header lines that is ended by
// CR LF, CR or LF, with the line's TAB-separated field number `fieldIndex` (0 is the label),
// trimmed. A last line without its line ending is a record a crash cut short: the next append
// drops it from the file, so it is no entry.
template <typename Record>
void ForEachWholeLine(std::string_view bytes, int headerLines, int fieldIndex, Record record) {
  int lineNumber = 0;
  std::size_t start = 0;
  std::size_t fieldStart = 0;
  std::size_t fieldEnd = std::string_view::npos;
  int tabs = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c == '\t') {
      ++tabs;
      if (tabs == fieldIndex) fieldStart = i + 1;
      if (tabs == fieldIndex + 1) fieldEnd = i;
      continue;
    }
    if (c != '\r' && c != '\n') continue;
    if (lineNumber >= headerLines && i > start) {
      std::string_view field;
      if (tabs >= fieldIndex) {
        const std::size_t end = tabs > fieldIndex ? fieldEnd : i;
        field = trimmedView(bytes.substr(fieldStart, end - fieldStart));
      }
      record(bytes.substr(start, i - start), field);
    }
    ++lineNumber;
    if (c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
    start = i + 1;
    tabs = 0;
  }
}

// Entry k's values from its record line: field i is colour i; what is not a number reads as 0.
void FillEntry(QcDatabase& db, int k, std::string_view line, int colours) {
  auto& entry = db.history[static_cast<std::size_t>(k)];
  std::size_t start = line.find('\t');
  for (int i = 1; i <= colours; ++i) {
    std::optional<double> value;
    if (start != std::string_view::npos) {
      const std::size_t end = line.find('\t', start + 1);
      value = text::parseNumber(trimmedView(line.substr(
          start + 1, end == std::string_view::npos ? std::string_view::npos : end - start - 1)));
      start = end;
    }
    entry[static_cast<std::size_t>(i)] = static_cast<float>(value.value_or(0.0));
  }
}

// Sorts each colour column of entries 1..count ascending at once (loading).
void SortColumns(QcDatabase& db, int colours) {
  std::array<float, kDatabaseCapacity> column{};
  for (int i = 1; i <= colours; ++i) {
    const auto c = static_cast<std::size_t>(i);
    for (int k = 1; k <= db.count; ++k)
      column[static_cast<std::size_t>(k - 1)] = db.sorted[static_cast<std::size_t>(k)][c];
    std::sort(column.begin(), column.begin() + db.count);
    for (int k = 1; k <= db.count; ++k)
      db.sorted[static_cast<std::size_t>(k)][c] = column[static_cast<std::size_t>(k - 1)];
  }
}

void dropOldest(QcDatabase& db, int colours) {
  for (int k = 1; k < db.count; ++k) {
    db.history[static_cast<std::size_t>(k)] = db.history[static_cast<std::size_t>(k + 1)];
    db.batch[static_cast<std::size_t>(k)] = db.batch[static_cast<std::size_t>(k + 1)];
  }
  --db.count;
  for (int k = 1; k <= db.count; ++k) {
    for (int i = 1; i <= colours; ++i) {
      db.sorted[static_cast<std::size_t>(k)][static_cast<std::size_t>(i)] =
          db.history[static_cast<std::size_t>(k)][static_cast<std::size_t>(i)];
    }
  }
}

}  // namespace

void SortDatabase(QcDatabase& db, int colours) {
  colours = clampColours(colours);
  for (int i = 1; i <= colours; ++i) {
    const auto column = static_cast<std::size_t>(i);
    for (int j = 1; j < db.count; ++j) {
      for (int k = j + 1; k <= db.count; ++k) {
        float& a = db.sorted[static_cast<std::size_t>(j)][column];
        float& b = db.sorted[static_cast<std::size_t>(k)][column];
        if (a > b) std::swap(a, b);
      }
    }
  }
}

void CVCheck(const QcDatabase& db, int colour, int count, double& mean, double& sd, double& cv) {
  mean = sd = cv = 0;
  if (count < 1) return;
  double sum = 0;
  double sumSq = 0;
  for (int k = 1; k <= count; ++k) {
    const double x = db.sorted[static_cast<std::size_t>(k)][static_cast<std::size_t>(colour)];
    sum += x;
    sumSq += x * x;
  }
  mean = sum / count;
  const double ss = sumSq - sum * sum / count;
  sd = count < 2 ? 0.0 : std::sqrt(std::max(ss, 0.0) / (count - 1));
  cv = mean == 0 ? 0.0 : sd / mean * 100.0;
}

void Quartiles(const QcDatabase& db, int colour, int count, double& lower, double& median,
               double& upper) {
  lower = median = upper = 0;
  if (count < 1) return;
  const auto a = [&](int k) {
    return static_cast<double>(
        db.sorted[static_cast<std::size_t>(k)][static_cast<std::size_t>(colour)]);
  };
  const int n = count;
  if (n % 2 == 0) {
    median = (a(n / 2) + a(n / 2 + 1)) / 2;
    const int low = position(n / 4.0, n - 1);
    const int high = position(3.0 * n / 4.0, n - 1);
    lower = (a(low) + a(low + 1)) / 2;
    upper = (a(high) + a(high + 1)) / 2;
  } else {
    median = a((n + 1) / 2);
    lower = a(position((n + 1) / 4.0, n));
    upper = a(position((3.0 * n + 3) / 4.0, n));
  }
}

void ComputeStatistics(QcDatabase& db, int colours) {
  colours = clampColours(colours);
  for (int i = 1; i <= colours; ++i) {
    ColourStatistics& s = db.stats[static_cast<std::size_t>(i)];
    CVCheck(db, i, db.count, s.mean, s.sd, s.cv);
    Quartiles(db, i, db.count, s.lower, s.median, s.upper);
    s.iqr = s.upper - s.lower;
  }
}

void AddEntry(QcDatabase& db, std::span<const float> readings, int colours, int batch) {
  colours = clampColours(colours);
  if (db.count >= kDatabaseCapacity) dropOldest(db, colours);
  ++db.count;
  const auto entry = static_cast<std::size_t>(db.count);
  for (int i = 1; i <= colours; ++i) {
    const auto at = static_cast<std::size_t>(i - 1);
    const float x = at < readings.size() ? readings[at] : 0.0f;
    db.sorted[entry][static_cast<std::size_t>(i)] = x;
    db.history[entry][static_cast<std::size_t>(i)] = x;
  }
  db.batch[entry] = static_cast<std::int16_t>(batch);
  SortDatabase(db, colours);
  ComputeStatistics(db, colours);
}

QcDatabase LoadDatabase(const std::string& path, int colours, int headerLines) {
  QcDatabase db;
  colours = clampColours(colours);
  std::string bytes;
  if (!ReadWholeFile(path, bytes)) return db;
  // One pass over the file: every record's date counts towards the batches, but only the
  // newest 50 records stay in the database, so only their values are read; the columns are
  // then sorted and the statistics computed once.
  std::array<KeptRecord, kDatabaseCapacity> kept{};
  int records = 0;
  int batch = 0;
  std::string_view previousDate;
  ForEachWholeLine(bytes, headerLines, colours + 1,
                   [&](std::string_view line, std::string_view date) {
                     if (date.empty() || date != previousDate) ++batch;
                     previousDate = date;
                     kept[static_cast<std::size_t>(records % kDatabaseCapacity)] = {line, batch};
                     ++records;
                   });
  const int count = std::min(records, kDatabaseCapacity);
  for (int k = 1; k <= count; ++k) {
    const KeptRecord& record =
        kept[static_cast<std::size_t>((records - count + k - 1) % kDatabaseCapacity)];
    FillEntry(db, k, record.line, colours);
    db.batch[static_cast<std::size_t>(k)] = static_cast<std::int16_t>(record.batch);
  }
  db.count = count;
  db.sorted = db.history;
  SortColumns(db, colours);
  ComputeStatistics(db, colours);
  db.currentBatch = batch + 1;
  return db;
}

}  // namespace zorvel
