#include "core/quality/alert_presenter.h"

#include <gtest/gtest.h>

#include <sstream>

#include "core/quality/alert_console.h"

namespace zorvel {
namespace {

// Three colours; the control database gives colour 1 median 100 and colour 3 median 20.
QcSnapshot ThreeColours(std::vector<bool> flags, std::vector<float> values) {
  QcSnapshot s;
  s.colours = 3;
  s.pairs.resize(4);
  s.pairs[1] = {493, 515, 5, 5, 4};
  s.pairs[2] = {520, 540, 5, 5, 5};
  s.pairs[3] = {617.5f, 640, 10, 5, 10};
  s.flags = std::move(flags);
  s.values = std::move(values);
  for (float k : {1.0f, 2.0f, 3.0f}) {
    AddEntry(s.controls, std::vector<float>{99 + k, 50, 18 + k}, 3, 1);
  }
  return s;
}

struct RecordingAlert final : AlertView {
  std::vector<std::string> options;
  int selected = 0;
  AlertFigures figures;
  QcPlot plot;
  bool details = true;
  int trendColour = 0;
  int closedWith = 0;
  void setOptions(const std::vector<std::string>& c) override { options = c; }
  void selectOption(int o) override { selected = o; }
  void showFigures(const AlertFigures& f) override { figures = f; }
  void drawBoxPlot(const QcPlot& p) override { plot = p; }
  void showDetails(bool v) override { details = v; }
  void openTrend(const QcSnapshot&, int colour) override { trendColour = colour; }
  void closeWith(int answer) override { closedWith = answer; }
};

TEST(AlertPresenter, OneOptionPerFlaggedColourShowingItsQuartilesAgainstTheReading) {
  const QcSnapshot s = ThreeColours({false, true, false, true}, {0, 106, 50, 26.5f});
  RecordingAlert view;
  AlertPresenter alert(s, view);
  alert.Form_Load();
  EXPECT_EQ((std::vector<std::string>{"493/515", "617.5/640"}), view.options);
  EXPECT_FALSE(view.details);
  EXPECT_EQ(1, view.selected);
  EXPECT_EQ("106.000", view.figures.value);

  alert.ColorOutOfRange_Click(2);
  EXPECT_EQ(3, alert.colourOf(2));
  EXPECT_EQ("20.000", view.figures.median);
  EXPECT_EQ("19.000", view.figures.lower);  // n = 3: quartiles are entries 1 and 3
  EXPECT_EQ("21.000", view.figures.upper);
  EXPECT_EQ("26.500", view.figures.value);
  EXPECT_EQ("5.000", view.figures.cv);
  // d = 1.2 * 6.5 around the median; quartiles in blue, median in black, the reading in red.
  EXPECT_DOUBLE_EQ(27.8, view.plot.top);
  EXPECT_DOUBLE_EQ(12.2, view.plot.bottom);
  ASSERT_EQ(3u, view.plot.lines.size());
  EXPECT_DOUBLE_EQ(19, view.plot.lines[0].y1);
  EXPECT_EQ(9, view.plot.lines[0].paletteIndex);
  EXPECT_EQ(0, view.plot.lines[1].paletteIndex);
  EXPECT_DOUBLE_EQ(21, view.plot.lines[2].y1);
  ASSERT_EQ(1u, view.plot.points.size());
  EXPECT_DOUBLE_EQ(26.5, view.plot.points[0].y);

  alert.MoreInfo_Click();
  EXPECT_TRUE(view.details);
  alert.LessInfo_Click();
  EXPECT_FALSE(view.details);
  alert.TrendCheck_Click();
  EXPECT_EQ(3, view.trendColour);
  EXPECT_EQ(0, alert.ValidationAnswer());
  alert.No_Click();
  EXPECT_EQ(7, view.closedWith);
  EXPECT_EQ(7, alert.ValidationAnswer());
}

TEST(AlertPresenter, AReadingOnTheMedianStillGetsASpan) {
  ColourStatistics s;
  s.lower = 9;
  s.median = 10;
  s.upper = 12;
  QcPlot plot = AlertPresenter::BoxPlot(s, 10);
  EXPECT_DOUBLE_EQ(12.4, plot.top);  // the wider half of the box, 1.2 times
  EXPECT_DOUBLE_EQ(7.6, plot.bottom);
  s.lower = s.upper = 10;
  plot = AlertPresenter::BoxPlot(s, 10);
  EXPECT_DOUBLE_EQ(10.1, plot.top);
  s = ColourStatistics{};
  plot = AlertPresenter::BoxPlot(s, 0);
  EXPECT_GT(plot.top, plot.bottom);
}

TEST(ConsoleAlertDialog, PrintsTheFlaggedColoursAndAnswersFromTheScript) {
  const QcSnapshot s = ThreeColours({false, true, false, false}, {0, 106, 50, 20});
  AnswerScript script;
  script.loadText("no\nyes\ncancel\nmaybe\n");
  std::ostringstream out;
  ConsoleAlertDialog alert(script, out);
  EXPECT_EQ(7, alert.ask(s));
  EXPECT_NE(std::string::npos,
            out.str().find("  493/515: Value: 106.000  Lower Quartile: 100.000  Median: 101.000  "
                           "Upper Quartile: 102.000  Mean: 101.000  SD: 1.000  CV: 0.990%\n"));
  EXPECT_EQ(std::string::npos, out.str().find("520/540"));
  EXPECT_EQ(6, alert.ask(s));
  EXPECT_EQ(2, alert.ask(s));
  EXPECT_EQ(2, alert.ask(s));
  EXPECT_TRUE(script.failed());
  EXPECT_NE(std::string::npos, script.failure().find("\"maybe\""));
}

}  // namespace
}  // namespace zorvel
