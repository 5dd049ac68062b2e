#include "core/quality/trend_presenter.h"

#include <algorithm>

#include "core/text/number_format.h"

namespace zorvel {

TrendPresenter::TrendPresenter(const QcSnapshot& snapshot, Operator& op, TrendView& view,
                               bool fromAlert, int colour)
    : snapshot_(snapshot),
      op_(op),
      view_(view),
      fromAlert_(fromAlert),
      colour_(std::clamp(colour, 1, std::max(snapshot.colours, 1))) {}

std::string TrendPresenter::ColourCaption(const ColourDeclaration& pair) {
  return text::plainSingle(pair.ExWl) + "/" + text::plainSingle(pair.EmWl) + "/" +
         text::plainSingle(pair.ExSl) + "/" + text::plainSingle(pair.EmSl);
}

void TrendPresenter::Form_Load() {
  std::vector<std::string> captions;
  for (int i = 1; i <= snapshot_.colours; ++i) captions.push_back(ColourCaption(snapshot_.pair(i)));
  view_.setColourOptions(captions);
  view_.selectKind(kind_);
  view_.selectColour(colour_);
  draw();
}

void TrendPresenter::CtlOrBlank_Click(int kind) {
  kind_ = kind == kTrendBlanks ? kTrendBlanks : kTrendControls;
  draw();
}

void TrendPresenter::ColorOutOfRange_Click(int option) {
  if (option < 1 || option > snapshot_.colours) return;
  colour_ = option;
  draw();
}

TrendFigures TrendPresenter::Figures(const QcDatabase& db, int colour) {
  const ColourStatistics& s = db.stats[static_cast<std::size_t>(colour)];
  TrendFigures f{s.mean, s.sd, s.cv, s.mean - 4 * s.sd, s.mean + 4 * s.sd};
  if (f.bottom == f.top) {
    f.bottom = s.mean - 0.01 * s.mean;
    f.top = s.mean + 0.01 * s.mean;
  }
  // An empty database, or one of zeros, still gets a range to draw in.
  if (f.bottom == f.top) {
    f.bottom = s.mean - 1;
    f.top = s.mean + 1;
  }
  return f;
}

QcPlot TrendPresenter::Plot(const QcDatabase& db, int colour, const TrendFigures& figures) {
  QcPlot plot;
  plot.left = 0;
  plot.right = db.count + 1;
  plot.top = figures.top;
  plot.bottom = figures.bottom;
  std::size_t shade = 0;
  for (int k = 1; k <= db.count; ++k) {
    const auto entry = static_cast<std::size_t>(k);
    if (k > 1 && db.batch[entry] != db.batch[entry - 1]) shade = 1 - shade;
    plot.points.push_back({static_cast<double>(k),
                           db.history[entry][static_cast<std::size_t>(colour)],
                           kTrendPointColours[shade], 5});
  }
  return plot;
}

void TrendPresenter::draw() {
  if (kind_ == kTrendBlanks && snapshot_.blanks.count == 0) {
    op_.message(trend_text::kNoBlanks);
    kind_ = kTrendControls;
    view_.selectKind(kind_);
  }
  const bool blanks = kind_ == kTrendBlanks;
  view_.setCaption(blanks ? trend_text::kBlanksCaption : trend_text::kControlsCaption);
  const QcDatabase& db = blanks ? snapshot_.blanks : snapshot_.controls;
  const TrendFigures f = Figures(db, colour_);
  view_.setFigures(text::fixed(f.mean, 3), text::fixed(f.sd, 3), text::fixed(f.cv, 3) + "%");
  view_.setCurrentValue(fromAlert_
                            ? trend_text::kCurrentValue +
                                  text::fixed(static_cast<double>(snapshot_.value(colour_)), 3)
                            : "",
                        fromAlert_);
  std::array<std::string, 6> labels;
  for (int k = 0; k <= 5; ++k) {
    labels[static_cast<std::size_t>(k)] =
        text::fixed(f.bottom + k * (f.top - f.bottom) / 5, blanks ? 2 : 1);
  }
  view_.setAxisLabels(labels);
  view_.drawTrend(Plot(db, colour_, f));
}

}  // namespace zorvel
