#include "ui/windows/trend_window.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"
#include "ui/qt_app.h"
#include "ui/windows/run_palette.h"
#include "ui/windows/trend_canvas.h"

namespace zorvel {
namespace {

template <typename T>
T* child(QWidget& parent, const QString& name) {
  T* widget = parent.findChild<T*>(name);
  EXPECT_NE(widget, nullptr) << name.toStdString();
  return widget;
}

// Columns (x) of the picture that hold a pixel of the colour.
std::vector<int> columnsOf(const QImage& image, const QColor& colour) {
  std::vector<int> columns;
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) {
      if (QColor(image.pixel(x, y)) == colour) {
        columns.push_back(x);
        break;
      }
    }
  }
  return columns;
}

TEST(TrendWindow, PlotsTheControlsByBatchAndRefusesAnEmptyBlankDatabase) {
  testing::qtApp();
  QcSnapshot s;
  s.colours = 2;
  s.pairs.resize(3);
  s.pairs[1] = {493, 515, 5, 5, 4};
  s.pairs[2] = {617.5f, 640, 10, 2.5f, 10};
  s.values = {0, 12, 7};
  s.flags = {false, false, false};
  const float values[] = {10, 20, 30, 20};
  const int batches[] = {1, 1, 2, 3};
  for (int k = 0; k < 4; ++k) AddEntry(s.controls, std::vector<float>{values[k], 5}, 2, batches[k]);
  ScriptedOperator op;
  ui::TrendWindow window(s, op, false);
  window.show();
  EXPECT_EQ("TREND", window.objectName());
  EXPECT_EQ("Controls Screen", window.windowTitle());
  EXPECT_EQ("617.5/640/10/2.5", child<QRadioButton>(window, "ColorOutOfRange2")->text());
  EXPECT_TRUE(child<QRadioButton>(window, "CtlOrBlank0")->isChecked());
  EXPECT_EQ("20.000", child<QLabel>(window, "MeanLabel")->text());
  EXPECT_FALSE(child<QLabel>(window, "CurValue")->isVisible());
  EXPECT_EQ("52.7", child<QLabel>(window, "YLabel5")->text());
  EXPECT_GT(child<QLabel>(window, "YLabel0")->y(), child<QLabel>(window, "YLabel5")->y());

  // Entries at x = 1..4 of 0..5: the first two and the last in one colour, the third (a new
  // batch) in the other.
  const QImage image = child<ui::QcCanvas>(window, "Spectra")->picture(QSize(501, 101));
  const std::vector<int> first = columnsOf(image, ui::StandardColour(kTrendPointColours[0]));
  const std::vector<int> second = columnsOf(image, ui::StandardColour(kTrendPointColours[1]));
  ASSERT_FALSE(first.empty());
  ASSERT_FALSE(second.empty());
  EXPECT_NEAR(100, first.front(), 3);
  EXPECT_NEAR(400, first.back(), 3);
  EXPECT_NEAR(300, second.front(), 3);
  EXPECT_NEAR(300, second.back(), 3);

  child<QRadioButton>(window, "CtlOrBlank1")->click();
  ASSERT_EQ(1u, op.messages().size());
  EXPECT_EQ("There are no blanks available for this dataset.", op.messages()[0].text);
  EXPECT_TRUE(child<QRadioButton>(window, "CtlOrBlank0")->isChecked());
  EXPECT_EQ("Controls Screen", window.windowTitle());

  child<QRadioButton>(window, "ColorOutOfRange2")->click();
  EXPECT_EQ("5.000", child<QLabel>(window, "MeanLabel")->text());
  child<QPushButton>(window, "OK")->click();
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace zorvel
