#include "core/quality/alert_presenter.h"

#include <algorithm>
#include <cmath>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

// Pure blue, black and pure red of the standard palette.
constexpr int kBlue = 9;
constexpr int kBlack = 0;
constexpr int kRed = 12;

std::string figure(double value) {
  return text::fixed(value, 3);
}

}  // namespace

AlertPresenter::AlertPresenter(const QcSnapshot& snapshot, AlertView& view)
    : snapshot_(snapshot), view_(view) {}

void AlertPresenter::Form_Load() {
  optionColours_.clear();
  std::vector<std::string> captions;
  for (int i = 1; i <= snapshot_.colours; ++i) {
    if (!snapshot_.flagged(i)) continue;
    optionColours_.push_back(i);
    const ColourDeclaration& pair = snapshot_.pair(i);
    captions.push_back(text::plainSingle(pair.ExWl) + "/" + text::plainSingle(pair.EmWl));
  }
  view_.setOptions(captions);
  view_.showDetails(false);
  if (!optionColours_.empty()) ColorOutOfRange_Click(1);
}

int AlertPresenter::colourOf(int option) const {
  if (option < 1 || option > static_cast<int>(optionColours_.size())) return 0;
  return optionColours_[static_cast<std::size_t>(option - 1)];
}

void AlertPresenter::ColorOutOfRange_Click(int option) {
  const int colour = colourOf(option);
  if (colour == 0) return;
  shownColour_ = colour;
  view_.selectOption(option);
  const ColourStatistics& s = snapshot_.controls.stats[static_cast<std::size_t>(colour)];
  const double value = snapshot_.value(colour);
  view_.showFigures(
      {figure(s.cv), figure(s.lower), figure(s.median), figure(s.upper), figure(value)});
  view_.drawBoxPlot(BoxPlot(s, value));
}

void AlertPresenter::TrendCheck_Click() {
  view_.openTrend(snapshot_, std::max(shownColour_, 1));
}

void AlertPresenter::answer(int code) {
  answer_ = code;
  view_.closeWith(code);
}

QcPlot AlertPresenter::BoxPlot(const ColourStatistics& stats, double value) {
  double d = 1.2 * std::abs(stats.median - value);
  // A reading on the median leaves no span: the box's own spread gives one, else a hundredth
  // of the median, else one unit.
  if (d == 0) d = 1.2 * std::max(stats.upper - stats.median, stats.median - stats.lower);
  if (d == 0) d = 0.01 * std::abs(stats.median);
  if (d == 0) d = 1;
  QcPlot plot;
  plot.left = 0;
  plot.right = 10;
  plot.top = stats.median + d;
  plot.bottom = stats.median - d;
  plot.lines.push_back({2, stats.lower, 8, stats.lower, kBlue, 2});
  plot.lines.push_back({2, stats.median, 8, stats.median, kBlack, 2});
  // The upper quartile as a line of the same kind as the lower one, so that it can be seen.
  plot.lines.push_back({2, stats.upper, 8, stats.upper, kBlue, 2});
  plot.points.push_back({5, value, kRed, 3});
  return plot;
}

}  // namespace zorvel
