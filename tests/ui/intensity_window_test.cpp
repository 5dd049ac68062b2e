#include "ui/windows/intensity_window.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/fluorimeter_sim.h"
#include "sim/simulated_line.h"
#include "ui/qt_app.h"

namespace zorvel {
namespace {

template <typename T>
T* child(QWidget& parent, const char* name) {
  T* widget = parent.findChild<T*>(name);
  EXPECT_NE(widget, nullptr) << name;
  return widget;
}

TEST(IntensityWindow, ReadsOnTheSimulatorAndRefusesAnUnusableBox) {
  testing::qtApp();
  AppState state;
  ScriptedOperator op;
  VirtualClock clock;
  sim::Bench bench;
  sim::FluorimeterSim fluorimeter{bench, 2, 5};
  ui::IntensityWindow window(state, op, clock,
                             std::make_unique<sim::SimulatedLine>(clock, fluorimeter));
  window.show();
  EXPECT_EQ("Intensity Check", window.windowTitle());
  EXPECT_EQ("397.5", child<QLineEdit>(window, "EmWl_Box")->text());
  EXPECT_EQ("480", child<QLineEdit>(window, "ScnSpd_Box")->text());
  EXPECT_TRUE(child<QRadioButton>(window, "Filter2")->isChecked());
  EXPECT_TRUE(child<QRadioButton>(window, "Voltage2")->isChecked());
  EXPECT_TRUE(child<QLineEdit>(window, "PMTVoltage")->isVisible());
  EXPECT_EQ("&Read Sample", child<QPushButton>(window, "Start")->text());

  child<QPushButton>(window, "Start")->click();
  ZORVEL_TRY_VERIFY(!window.working(), 10000);
  const QString shown = child<QLabel>(window, "Status")->text();
  EXPECT_TRUE(QRegularExpression("^[0-9]+\\.[0-9]{3}$").match(shown).hasMatch())
      << shown.toStdString();
  EXPECT_GT(shown.toDouble(), 1.0);  // water's Raman band at 350 / 398 nm
  EXPECT_EQ((std::vector<std::string>{"$RE 0", "$PH 0", "$ES 0", "$FW 2", "$PV 820", "$SS 480",
                                      "$SX 5.0", "$SM 5.0", "$GM 350.0,398.0", "$RD 1.0"}),
            fluorimeter.commands());

  child<QRadioButton>(window, "Voltage1")->click();
  EXPECT_FALSE(child<QLineEdit>(window, "PMTVoltage")->isVisible());
  child<QRadioButton>(window, "Filter8")->click();
  EXPECT_EQ(8, window.presenter().settings().filter);

  // "abc" typed is refused when Read Sample commits it: nothing is read, and the box shows
  // the wavelength in force again, selected.
  QLineEdit* ex = child<QLineEdit>(window, "ExWl_Box");
  ex->setFocus();
  ex->selectAll();
  QTest::keyClicks(ex, "abc");
  EXPECT_TRUE(op.messages().empty());
  child<QPushButton>(window, "Start")->click();
  ZORVEL_TRY_VERIFY(!window.working(), 10000);
  ASSERT_EQ(1u, op.messages().size());
  EXPECT_EQ("Excitation Wavelength (nm): Non-numeric entry.  Please try again.",
            op.messages()[0].text);
  EXPECT_EQ("350", ex->selectedText());
  EXPECT_EQ(10u, fluorimeter.commands().size());  // nothing sent

  child<QPushButton>(window, "Cancel")->click();
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace zorvel
