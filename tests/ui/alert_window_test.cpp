#include "ui/windows/alert_window.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

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

int pixelsOf(const QImage& image, const QColor& colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) count += QColor(image.pixel(x, y)) == colour;
  return count;
}

// Three colours, the first and third outside the band; controls 100, 101, 102 and 19, 20, 21.
QcSnapshot Flagged() {
  QcSnapshot s;
  s.colours = 3;
  s.pairs.resize(4);
  s.pairs[1] = {493, 515, 5, 5, 4};
  s.pairs[2] = {520, 540, 5, 5, 5};
  s.pairs[3] = {617.5f, 640, 10, 5, 10};
  s.flags = {false, true, false, true};
  s.values = {0, 106, 50, 26.5f};
  for (float k : {1.0f, 2.0f, 3.0f})
    AddEntry(s.controls, std::vector<float>{99 + k, 50, 18 + k}, 3, 1);
  return s;
}

TEST(AlertWindow, ShowsTheFlaggedColoursDrawsTheBoxPlotAndAnswersByButton) {
  testing::qtApp();
  const QcSnapshot snapshot = Flagged();
  ScriptedOperator op;
  ui::AlertWindow window(snapshot, op);
  window.show();
  EXPECT_EQ("ERRFORM", window.objectName());
  EXPECT_EQ("Validation Sample(s) Out of Range", window.windowTitle());
  EXPECT_TRUE(child<QLabel>(window, "Question")->text().startsWith("One or more validation"));
  EXPECT_TRUE(
      child<QLabel>(window, "Legend")->text().contains("Check Trend - show controls over time"));
  EXPECT_EQ("493/515", child<QRadioButton>(window, "ColorOutOfRange1")->text());
  EXPECT_EQ("617.5/640", child<QRadioButton>(window, "ColorOutOfRange2")->text());
  EXPECT_TRUE(child<QRadioButton>(window, "ColorOutOfRange2")->isVisible());
  EXPECT_FALSE(child<QRadioButton>(window, "ColorOutOfRange3")->isVisible());
  EXPECT_FALSE(child<QGroupBox>(window, "ColorInfo")->isVisible());

  child<QPushButton>(window, "MoreInfo")->click();
  EXPECT_TRUE(child<QGroupBox>(window, "ColorInfo")->isVisible());
  child<QRadioButton>(window, "ColorOutOfRange2")->click();
  EXPECT_EQ("26.500", child<QLabel>(window, "ValueBox")->text());
  EXPECT_EQ("19.000", child<QLabel>(window, "MinBox")->text());

  // Quartiles in blue, the median in black, the reading in red near the top of the span.
  const QImage image = child<ui::QcCanvas>(window, "BoxPlot")->picture(QSize(100, 100));
  EXPECT_GT(pixelsOf(image, ui::StandardColour(9)), 100);
  EXPECT_GT(pixelsOf(image, ui::StandardColour(0)), 50);
  EXPECT_GE(pixelsOf(image, ui::StandardColour(12)), 4);
  const QColor red = ui::StandardColour(12);
  EXPECT_TRUE(QColor(image.pixel(49, 7)) == red || QColor(image.pixel(50, 8)) == red);

  child<QPushButton>(window, "LessInfo")->click();
  EXPECT_FALSE(child<QGroupBox>(window, "ColorInfo")->isVisible());

  // "Check Trend" opens the trend on the colour shown, with the reading's value.
  QString current;
  bool currentShown = false;
  testing::whenShown("TREND", [&](QWidget* trend) {
    auto* label = trend->findChild<QLabel*>("CurValue");
    current = label->text();
    currentShown = label->isVisible();
    trend->findChild<QPushButton*>("OK")->click();
  });
  child<QPushButton>(window, "TrendCheck")->click();
  EXPECT_EQ("Current Value: 26.500", current);
  EXPECT_TRUE(currentShown);
  EXPECT_TRUE(window.isVisible());

  child<QPushButton>(window, "No")->click();
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(7, window.result());
}

TEST(AlertWindow, TheDesktopAlertIsModalAndEscapeCancels) {
  testing::qtApp();
  const QcSnapshot snapshot = Flagged();
  ScriptedOperator op;
  ui::QtAlertDialog alert(op);
  testing::whenShown("ERRFORM", [](QWidget* w) { w->findChild<QPushButton*>("Yes")->click(); });
  EXPECT_EQ(6, alert.ask(snapshot));
  testing::whenShown("ERRFORM", [](QWidget* w) { QTest::keyClick(w, Qt::Key_Escape); });
  EXPECT_EQ(2, alert.ask(snapshot));
}

}  // namespace
}  // namespace zorvel
