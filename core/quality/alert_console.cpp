#include "core/quality/alert_console.h"

#include "core/quality/alert_presenter.h"
#include "core/quality/trend_presenter.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string pairText(const ColourDeclaration& pair) {
  return text::plainSingle(pair.ExWl) + "/" + text::plainSingle(pair.EmWl);
}

std::string figure(double value) {
  return text::fixed(value, 3);
}

void printDatabase(std::ostream& out, const char* heading, const QcSnapshot& snapshot,
                   const QcDatabase& db) {
  out << heading << " (" << db.count << " entries)\n";
  for (int i = 1; i <= snapshot.colours; ++i) {
    const TrendFigures f = TrendPresenter::Figures(db, i);
    out << "  " << TrendPresenter::ColourCaption(snapshot.pair(i)) << ": Mean: " << figure(f.mean)
        << "  SD: " << figure(f.sd) << "  CV: " << figure(f.cv) << "%\n";
  }
}

}  // namespace

int ConsoleAlertDialog::ask(const QcSnapshot& snapshot) {
  out_ << "[" << alert_text::kCaption << "] " << alert_text::kQuestion << " (yes/no/cancel)\n";
  for (int i = 1; i <= snapshot.colours; ++i) {
    if (!snapshot.flagged(i)) continue;
    const ColourStatistics& s = snapshot.controls.stats[static_cast<std::size_t>(i)];
    out_ << "  " << pairText(snapshot.pair(i)) << ": Value: " << figure(snapshot.value(i))
         << "  Lower Quartile: " << figure(s.lower) << "  Median: " << figure(s.median)
         << "  Upper Quartile: " << figure(s.upper) << "  Mean: " << figure(s.mean)
         << "  SD: " << figure(s.sd) << "  CV: " << figure(s.cv) << "%\n";
  }
  if (script_.failed()) return 2;
  const auto line = script_.next();
  if (!line) {
    script_.fail(std::string("the answer file ran out at the box \"") + alert_text::kCaption +
                 "\"");
    return 2;
  }
  out_ << "> " << line->text << "\n";
  if (line->word == "yes") return 6;
  if (line->word == "no") return 7;
  if (line->word == "cancel") return 2;
  script_.fail("line " + std::to_string(line->lineNumber) + " \"" + line->text +
               "\" does not answer the box \"" + alert_text::kCaption + "\" (yes/no/cancel)");
  return 2;
}

void PrintTrendFigures(std::ostream& out, const QcSnapshot& snapshot) {
  out << "[" << trend_text::kCaption << "]\n";
  printDatabase(out, "Controls", snapshot, snapshot.controls);
  if (snapshot.blanks.count > 0) printDatabase(out, "Blanks", snapshot, snapshot.blanks);
}

void PrintMedians(std::ostream& out, const QcSnapshot& snapshot,
                  const std::vector<std::string>& medians) {
  out << "Control medians:";
  for (int i = 1; i <= snapshot.colours && i <= static_cast<int>(medians.size()); ++i) {
    const std::string& median = medians[static_cast<std::size_t>(i - 1)];
    out << "  " << pairText(snapshot.pair(i)) << ": " << (median.empty() ? "-" : median);
  }
  out << "\n";
}

}  // namespace zorvel
