#include "ui/windows/watercell_window.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "core/files/paths.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/fluorimeter_sim.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"
#include "ui/qt_app.h"

namespace zorvel {
namespace {

template <typename T>
T* child(QWidget& parent, const char* name) {
  T* widget = parent.findChild<T*>(name);
  EXPECT_NE(widget, nullptr) << name;
  return widget;
}

class WaterCellWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::qtApp();
    state.StartDirectory = dir;
    state.LogPath = dir + "ZORVEL.LOG";
  }
  // Opens the window on the simulator, presses Start and waits for the drive's result.
  std::unique_ptr<ui::WaterCellWindow> runCheck() {
    auto window = std::make_unique<ui::WaterCellWindow>(
        state, op, clock, std::make_unique<sim::SimulatedLine>(clock, fluorimeter), last);
    window->show();
    child<QPushButton>(*window, "Start")->click();
    EXPECT_FALSE(child<QPushButton>(*window, "Start")->isVisible());
    for (int waitedMs = 0; window->working() && waitedMs < 10000; waitedMs += 5) QTest::qWait(5);
    EXPECT_FALSE(window->working());
    return window;
  }

  std::string dir = testing::makeTempDir("waterwin");
  AppState state;
  ScriptedOperator op;
  VirtualClock clock;
  sim::Bench bench;  // a water cell in the holder
  sim::FluorimeterSim fluorimeter{bench, 2, 11};
  WaterCellResult last;
};

TEST_F(WaterCellWindowTest, FreshSimulatorPassesAndLostLampPowerFails) {
  auto first = runCheck();
  EXPECT_EQ("WATERFORM", first->objectName());
  EXPECT_EQ("Watercell", first->windowTitle());
  EXPECT_TRUE(child<QPushButton>(*first, "OK")->isVisible());
  EXPECT_TRUE(child<QPushButton>(*first, "OK")->isDefault());
  EXPECT_FALSE(child<QPushButton>(*first, "Rerun")->isVisible());
  EXPECT_FALSE(child<QProgressBar>(*first, "Perc_Panel")->isVisible());
  EXPECT_EQ(100, child<QProgressBar>(*first, "Perc_Panel")->value());
  EXPECT_TRUE(child<QLabel>(*first, "Status")->text().contains("WITHIN the expected range"));
  EXPECT_EQ("Running 2 Minute Time Drive", child<QLabel>(*first, "Messages")->text());
  QTest::keyClick(first.get(), Qt::Key_Escape);  // OK is not the cancel button here
  EXPECT_TRUE(first->isVisible());
  child<QPushButton>(*first, "OK")->click();
  EXPECT_FALSE(first->isVisible());
  const std::string stored = testing::readFile(dir + "ZORVEL.MSF");

  fluorimeter.setLampPower(0.4);
  auto second = runCheck();
  EXPECT_TRUE(child<QLabel>(*second, "Status")->text().contains("OUTSIDE expected range"));
  EXPECT_TRUE(child<QPushButton>(*second, "Rerun")->isVisible());
  EXPECT_TRUE(second->property("okIsCancel").toBool());
  QTest::keyClick(second.get(), Qt::Key_Escape);
  EXPECT_FALSE(second->isVisible());
  EXPECT_SAME_BYTES(stored, testing::readFile(dir + "ZORVEL.MSF"));
  EXPECT_TRUE(op.shown.empty());
}

// Stop is offered from the moment Start is pressed; the check then ends at once, says so on its
// line and in the status area, stores nothing, and offers Rerun, with Escape as OK-as-cancel.
TEST_F(WaterCellWindowTest, StopEndsTheCheckStoringNothing) {
  ui::WaterCellWindow window(state, op, clock,
                             std::make_unique<sim::SimulatedLine>(clock, fluorimeter), last);
  window.show();
  auto* stop = child<QPushButton>(window, "SequenceStop");
  EXPECT_FALSE(stop->isEnabled());
  child<QPushButton>(window, "Start")->click();
  ASSERT_TRUE(stop->isEnabled());
  stop->click();
  for (int waitedMs = 0; window.working() && waitedMs < 10000; waitedMs += 5) QTest::qWait(5);
  ASSERT_FALSE(window.working());
  EXPECT_FALSE(stop->isEnabled());
  EXPECT_EQ(child<QLabel>(window, "SequenceStatus")->text(),
            "Stopped: nothing stored; the fluorimeter is idle, its port closed");
  EXPECT_EQ(child<QLabel>(window, "Status")->text(),
            "Stopped before its first setting.\nNothing was stored. Rerun to check again.");
  // The window holds its lines and buttons without overlap.
  EXPECT_GE(window.height(), window.minimumSizeHint().height());
  EXPECT_TRUE(fluorimeter.commands().empty());
  EXPECT_TRUE(child<QPushButton>(window, "Rerun")->isVisible());
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
  EXPECT_FALSE(FileExists(dir + "ZORVEL.MSF"));
}

}  // namespace
}  // namespace zorvel
