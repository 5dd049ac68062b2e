#include "core/quality/trend_presenter.h"

#include <gtest/gtest.h>

#include <sstream>

#include "core/platform/scripted_operator.h"
#include "core/quality/alert_console.h"

namespace zorvel {
namespace {

struct RecordingTrend final : TrendView {
  std::string caption, mean, sd, cv, current;
  bool currentVisible = true;
  std::vector<std::string> options;
  int kind = -1, colour = 0;
  std::array<std::string, 6> axis;
  QcPlot plot;
  bool closed = false;
  void setCaption(const std::string& c) override { caption = c; }
  void setColourOptions(const std::vector<std::string>& o) override { options = o; }
  void selectKind(int k) override { kind = k; }
  void selectColour(int c) override { colour = c; }
  void setFigures(const std::string& m, const std::string& s, const std::string& c) override {
    mean = m;
    sd = s;
    cv = c;
  }
  void setCurrentValue(const std::string& t, bool v) override {
    current = t;
    currentVisible = v;
  }
  void setAxisLabels(const std::array<std::string, 6>& a) override { axis = a; }
  void drawTrend(const QcPlot& p) override { plot = p; }
  void close() override { closed = true; }
};

// Two colours; four controls in batches 1, 1, 2, 3 (colour 1: 10, 20, 30, 20).
QcSnapshot Controls() {
  QcSnapshot s;
  s.colours = 2;
  s.pairs.resize(3);
  s.pairs[1] = {493, 515, 5, 5, 4};
  s.pairs[2] = {617.5f, 640, 10, 2.5f, 10};
  s.values = {0, 12.25f, 7};
  s.flags = {false, true, false};
  const float values[] = {10, 20, 30, 20};
  const int batches[] = {1, 1, 2, 3};
  for (int k = 0; k < 4; ++k) AddEntry(s.controls, std::vector<float>{values[k], 5}, 2, batches[k]);
  return s;
}

TEST(TrendPresenter, PlotsTheControlsByBatchWithinFourSd) {
  const QcSnapshot s = Controls();
  ScriptedOperator op;
  RecordingTrend view;
  TrendPresenter trend(s, op, view, false);
  trend.Form_Load();
  EXPECT_EQ((std::vector<std::string>{"493/515/5/5", "617.5/640/10/2.5"}), view.options);
  EXPECT_EQ("Controls Screen", view.caption);
  EXPECT_EQ("20.000", view.mean);
  EXPECT_EQ("8.165", view.sd);
  EXPECT_EQ("40.825%", view.cv);
  EXPECT_FALSE(view.currentVisible);
  // 20 -/+ 4 * 8.165 in five steps, "0.0" for controls.
  EXPECT_EQ("-12.7", view.axis[0]);
  EXPECT_EQ("52.7", view.axis[5]);
  EXPECT_DOUBLE_EQ(5, view.plot.right);
  EXPECT_NEAR(52.66, view.plot.top, 0.01);
  ASSERT_EQ(4u, view.plot.points.size());
  const int a = kTrendPointColours[0], b = kTrendPointColours[1];
  EXPECT_EQ((std::vector<int>{a, a, b, a}),
            (std::vector<int>{view.plot.points[0].paletteIndex, view.plot.points[1].paletteIndex,
                              view.plot.points[2].paletteIndex, view.plot.points[3].paletteIndex}));
  EXPECT_EQ(30, view.plot.points[2].y);

  // Colour 2 has no spread: one hundredth of the mean either way.
  trend.ColorOutOfRange_Click(2);
  EXPECT_DOUBLE_EQ(4.95, view.plot.bottom);
  EXPECT_DOUBLE_EQ(5.05, view.plot.top);
  EXPECT_EQ("5.1", view.axis[5]);
  EXPECT_EQ("0.000%", view.cv);

  // No blanks: the message, and back to controls.
  trend.CtlOrBlank_Click(kTrendBlanks);
  ASSERT_EQ(1u, op.messages().size());
  EXPECT_EQ("There are no blanks available for this dataset.", op.messages()[0].text);
  EXPECT_EQ(BoxIcon::None, op.messages()[0].icon);
  EXPECT_EQ(kTrendControls, view.kind);
  EXPECT_EQ(kTrendControls, trend.kind());
  EXPECT_EQ("Controls Screen", view.caption);
  trend.OK_Click();
  EXPECT_TRUE(view.closed);
}

TEST(TrendPresenter, FromTheAlertShowsTheReadingAndBlanksUseTwoDecimals) {
  QcSnapshot s = Controls();
  for (float v : {0.5f, 0.7f}) AddEntry(s.blanks, std::vector<float>{v, v}, 2, 1);
  ScriptedOperator op;
  RecordingTrend view;
  TrendPresenter trend(s, op, view, true, 2);
  trend.Form_Load();
  EXPECT_EQ(2, view.colour);
  EXPECT_TRUE(view.currentVisible);
  EXPECT_EQ("Current Value: 7.000", view.current);
  trend.CtlOrBlank_Click(kTrendBlanks);
  EXPECT_TRUE(op.messages().empty());
  EXPECT_EQ("Blanks Screen", view.caption);
  EXPECT_EQ("0.600", view.mean);
  EXPECT_EQ("0.03", view.axis[0]);  // 0.6 - 4 * 0.1414
  EXPECT_EQ("1.17", view.axis[5]);
  EXPECT_EQ(2u, view.plot.points.size());
}

TEST(TrendPresenter, HeadlessFiguresAndMedians) {
  const QcSnapshot s = Controls();
  std::ostringstream out;
  PrintTrendFigures(out, s);
  EXPECT_EQ(
      "[Controls Display]\nControls (4 entries)\n"
      "  493/515/5/5: Mean: 20.000  SD: 8.165  CV: 40.825%\n"
      "  617.5/640/10/2.5: Mean: 5.000  SD: 0.000  CV: 0.000%\n",
      out.str());
  out.str("");
  PrintMedians(out, s, {"20.0", ""});
  EXPECT_EQ("Control medians:  493/515: 20.0  617.5/640: -\n", out.str());
}

}  // namespace
}  // namespace zorvel
