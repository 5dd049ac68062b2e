#include "core/quality/quality_database.h"

#include <algorithm>
#include <cmath>
#include <vector>

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

std::vector<std::string> splitLines(const std::string& bytes) {
  std::vector<std::string> lines;
  std::string line;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c == '\r' || c == '\n') {
      lines.push_back(line);
      line.clear();
      if (c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') ++i;
    } else {
      line += c;
    }
  }
  // A last line without its line ending is a record a crash cut short: the next append drops
  // it from the file, so it is no entry.
  return lines;
}

std::vector<std::string> splitTabs(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t start = 0;
  for (std::size_t tab = line.find('\t'); tab != std::string::npos; tab = line.find('\t', start)) {
    fields.push_back(line.substr(start, tab - start));
    start = tab + 1;
  }
  fields.push_back(line.substr(start));
  return fields;
}

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
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
  const std::vector<std::string> lines = splitLines(bytes);
  int batch = 0;
  std::string previousDate;
  std::vector<float> values(static_cast<std::size_t>(colours));
  for (std::size_t n = static_cast<std::size_t>(std::max(headerLines, 0)); n < lines.size(); ++n) {
    if (lines[n].empty()) continue;
    const std::vector<std::string> fields = splitTabs(lines[n]);
    for (int i = 1; i <= colours; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const auto value = at < fields.size() ? text::parseNumber(trimmed(fields[at])) : std::nullopt;
      values[at - 1] = static_cast<float>(value.value_or(0.0));
    }
    const auto dateAt = static_cast<std::size_t>(colours + 1);
    const std::string date = dateAt < fields.size() ? trimmed(fields[dateAt]) : "";
    if (date.empty() || date != previousDate) ++batch;
    previousDate = date;
    AddEntry(db, values, colours, batch);
  }
  db.currentBatch = batch + 1;
  return db;
}

}  // namespace zorvel
