#include "core/quality/quality_checks.h"

#include <algorithm>
#include <cmath>

#include "core/datafiles/record_lines.h"
#include "core/files/record_filing.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr int colourOf(PaletteColour c) {
  return static_cast<int>(c);
}

float readingOf(std::span<const float> readings, int colour) {
  const auto at = static_cast<std::size_t>(colour - 1);
  return at < readings.size() ? readings[at] : 0.0f;
}

}  // namespace

std::vector<std::string> MedianTexts(const QcDatabase& controls, int colours) {
  std::vector<std::string> medians(static_cast<std::size_t>(std::max(colours, 0)));
  if (controls.count == 0) return medians;
  for (int i = 1; i <= colours && i <= kMaxColours; ++i) {
    medians[static_cast<std::size_t>(i - 1)] =
        text::fixed(controls.stats[static_cast<std::size_t>(i)].median, 1);
  }
  return medians;
}

QualityChecks::QualityChecks(const AppState& state, Clock& clock, Operator& op, AlertDialog& alert)
    : state_(state), clock_(clock), op_(op), alert_(alert) {}

int QualityChecks::colours() const {
  return std::clamp<int>(state_.Method.NoColors, 0, kMaxColours);
}

int QualityChecks::ControlCount() const {
  return std::min(controls_.count + scanOnlyControls_, kDatabaseCapacity);
}

int QualityChecks::BlankCount() const {
  return std::min(blanks_.count + scanOnlyBlanks_, kDatabaseCapacity);
}

Verdict QualityChecks::check(const CheckedReading& reading) {
  return reading.kind == CheckKind::Control
             ? CheckControl(reading.readings, reading.sampleNumber, reading.comment,
                            reading.unattended)
             : CheckBlank(reading.readings, reading.sampleNumber, reading.comment);
}

void QualityChecks::countScanOnly(CheckKind kind) {
  ++(kind == CheckKind::Control ? scanOnlyControls_ : scanOnlyBlanks_);
}

std::vector<std::string> QualityChecks::medianRow(int colours) const {
  if (!mediansKnown_)
    return std::vector<std::string>(static_cast<std::size_t>(std::max(colours, 0)));
  return MedianTexts(controls_, colours);
}

void QualityChecks::resetCounts() {
  controls_ = QcDatabase{};
  blanks_ = QcDatabase{};
  scanOnlyControls_ = scanOnlyBlanks_ = 0;
  mediansKnown_ = false;
}

void QualityChecks::load(const std::string& ctlPath, const std::string& blkPath) {
  resetCounts();
  controls_ = LoadDatabase(ctlPath, colours(), state_.DatabaseHeaderLines);
  blanks_ = LoadDatabase(blkPath, colours(), state_.DatabaseHeaderLines);
  if (controls_.count >= 3) showMedians();
}

void QualityChecks::flag(const QcDatabase& db, std::span<const float> readings, bool alertRule) {
  for (int i = 1; i <= colours(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    const ColourStatistics& s = db.stats[at];
    const double x = readingOf(readings, i);
    check_.flags[at] = false;
    for (int level : {3, 4}) {
      if (x >= s.mean - level * s.sd && x <= s.mean + level * s.sd) continue;
      check_.flags[at] = true;
      check_.cellColours[at] =
          colourOf(level == 3 ? PaletteColour::LightGreen : PaletteColour::LightBlue);
      if (level == 4 && alertRule && (x > 1.05 * s.mean || x < 0.95 * s.mean)) {
        check_.alert = true;
        check_.cellColours[at] = colourOf(PaletteColour::LightRed);
      }
    }
  }
}

Verdict QualityChecks::CheckControl(std::span<const float> readings, int sampleNumber,
                                    const std::string& comment, UnattendedAlerts* unattended) {
  check_ = QcCheckState{};
  check_.cellColours.fill(colourOf(PaletteColour::White));
  if (controls_.count < 2) {
    AddControl(readings, sampleNumber, comment);
    return check_.verdict = Verdict::Keep;
  }
  flag(controls_, readings, true);
  const bool anyFlagged =
      std::find(check_.flags.begin(), check_.flags.end(), true) != check_.flags.end();
  if (check_.alert && unattended != nullptr) {
    // Nobody is at the bench: the reading is kept, its cells painted and the alert logged.
    ShowQcFlags(false, readings);
    unattended->alertKept(outOfRange(controls_, readings));
    check_.alert = false;
  } else if (check_.alert) {
    const Verdict answer = ShowQcFlags(true, readings);
    if (answer != Verdict::Keep) {
      for (int i = 1; i <= colours() && grid_ != nullptr; ++i)
        grid_->paintCell(i, colourOf(PaletteColour::Yellow));
      return answer;
    }
    check_.alert = false;
  } else if (anyFlagged) {
    ShowQcFlags(false, readings);
  }
  AddControl(readings, sampleNumber, comment);
  return check_.verdict = Verdict::Keep;
}

Verdict QualityChecks::CheckBlank(std::span<const float> readings, int sampleNumber,
                                  const std::string& comment) {
  check_ = QcCheckState{};
  check_.cellColours.fill(colourOf(PaletteColour::White));
  if (blanks_.count >= 2) {
    flag(blanks_, readings, false);
    if (std::find(check_.flags.begin(), check_.flags.end(), true) != check_.flags.end())
      ShowQcFlags(false, readings);
  }
  AddBlank(readings, sampleNumber, comment);
  return check_.verdict = Verdict::Keep;
}

Verdict QualityChecks::ShowQcFlags(bool withAlert, std::span<const float> readings) {
  bool anyFlagged = false;
  for (int i = 1; i <= colours(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    if (!check_.flags[at]) continue;
    anyFlagged = true;
    if (grid_ != nullptr) grid_->paintCell(i, check_.cellColours[at]);
  }
  if (!withAlert || !anyFlagged) return check_.verdict;
  check_.verdict = static_cast<Verdict>(alert_.ask(snapshotOf(readings)));
  if (check_.verdict != Verdict::Keep && grid_ != nullptr) grid_->labelRow("NS");
  return check_.verdict;
}

std::vector<OutOfRange> QualityChecks::outOfRange(const QcDatabase& db,
                                                  std::span<const float> readings) const {
  std::vector<OutOfRange> out;
  for (int i = 1; i <= colours(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    if (!check_.flags[at]) continue;
    const ColourStatistics& s = db.stats[at];
    const int sds = check_.cellColours[at] == colourOf(PaletteColour::LightGreen) ? 3 : 4;
    out.push_back({i, readingOf(readings, i), s.mean - sds * s.sd, s.mean + sds * s.sd, sds});
  }
  return out;
}

void QualityChecks::AddControl(std::span<const float> readings, int sampleNumber,
                               const std::string& comment) {
  add(controls_, record_letter::kControl, state_.DataSet.CtlPath, readings, sampleNumber, comment);
  showMedians();
}

void QualityChecks::AddBlank(std::span<const float> readings, int sampleNumber,
                             const std::string& comment) {
  add(blanks_, record_letter::kBlank, state_.DataSet.BlkPath, readings, sampleNumber, comment);
}

void QualityChecks::add(QcDatabase& db, char letter, const std::string& path,
                        std::span<const float> readings, int sampleNumber,
                        const std::string& comment) {
  const std::string line =
      DatabaseRecordLine(letter, sampleNumber, readings, clock_.now(), comment, state_.LineEnding);
  if (!FileRecord(op_, path, line, state_.LineEnding)) {
    ++notRecorded_;
    return;
  }
  // While the databases are being built every entry is batch 1, whatever a reopened set's
  // files held before.
  AddEntry(db, readings, colours(), building_ ? 1 : db.currentBatch);
  if (building_ && ControlCount() >= 3 && BlankCount() >= 3) building_ = false;
}

void QualityChecks::showMedians() {
  mediansKnown_ = true;
  const std::vector<std::string> medians = MedianTexts(controls_, colours());
  if (grid_ != nullptr) grid_->showMedians(medians);
  if (mediansChanged_) mediansChanged_(medians);
}

QcSnapshot QualityChecks::snapshotOf(std::span<const float> readings) const {
  QcSnapshot s;
  s.colours = colours();
  const auto size = static_cast<std::size_t>(s.colours + 1);
  s.pairs.assign(size, ColourDeclaration{});
  s.values.assign(size, 0.0f);
  s.flags.assign(size, false);
  for (int i = 1; i <= s.colours; ++i) {
    s.pairs[static_cast<std::size_t>(i)] = state_.Method.FixedPairs.colour(i);
    s.values[static_cast<std::size_t>(i)] = readingOf(readings, i);
    s.flags[static_cast<std::size_t>(i)] = check_.flags[static_cast<std::size_t>(i)];
  }
  s.controls = controls_;
  s.blanks = blanks_;
  return s;
}

}  // namespace zorvel
