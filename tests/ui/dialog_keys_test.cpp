// Return and Escape in every dialog the program raises: Return presses the default button from
// wherever the focus is when the dialog opens, Escape cancels (and closes) it.
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <memory>
#include <string_view>

#include <gtest/gtest.h>

#include "core/method/colour_presenter.h"
#include "core/method/method_defaults.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "core/quality/quality_database.h"
#include "sim/arm_sim.h"
#include "sim/fluorimeter_sim.h"
#include "sim/pump_sim.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"
#include "support/six_tube_tray.h"
#include "ui/platform/qt_operator.h"
#include "ui/qt_app.h"
#include "ui/windows/alert_window.h"
#include "ui/windows/autosampler_window.h"
#include "ui/windows/colour_window.h"
#include "ui/windows/disclaimer_dialog.h"
#include "ui/windows/intensity_window.h"
#include "ui/windows/setup_window.h"
#include "ui/windows/trend_window.h"
#include "ui/windows/watercell_window.h"

namespace zorvel {
namespace {

// Presses the key in whichever modal dialog opens next, where its focus is.
void pressInNextModal(Qt::Key key) {
  auto* poll = new QTimer;
  QObject::connect(poll, &QTimer::timeout, poll, [poll, key] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr || !modal->isVisible()) return;
    poll->stop();
    poll->deleteLater();
    QWidget* focus = modal->focusWidget();
    QTest::keyClick(focus != nullptr ? focus : modal, key);
  });
  poll->start(5);
}

// The operator's boxes, answered by key: what Return and what Escape give.
TEST(DialogKeys, TheOperatorsBoxesTakeReturnAndEscape) {
  testing::qtApp();
  ui::QtOperator op;
  struct Box {
    BoxButtons buttons;
    int onReturn;
    int onEscape;
  };
  for (const Box& box : {Box{BoxButtons::Ok, answer::kOk, answer::kOk},
                         Box{BoxButtons::OkCancel, answer::kOk, answer::kCancel},
                         Box{BoxButtons::YesNo, answer::kYes, answer::kNo},
                         Box{BoxButtons::YesNoCancel, answer::kYes, answer::kCancel},
                         Box{BoxButtons::RetryCancel, answer::kRetry, answer::kCancel}}) {
    pressInNextModal(Qt::Key_Return);
    EXPECT_EQ(box.onReturn,
              op.message("Go on?", "ZORVEL QUESTION", BoxIcon::Question, box.buttons));
    pressInNextModal(Qt::Key_Escape);
    EXPECT_EQ(box.onEscape,
              op.message("Go on?", "ZORVEL QUESTION", BoxIcon::Question, box.buttons));
  }
  pressInNextModal(Qt::Key_Return);
  EXPECT_EQ("12", op.inputBox("Enter starting tube number ", "Tube Range", "12"));
  pressInNextModal(Qt::Key_Escape);
  EXPECT_EQ("", op.inputBox("Enter starting tube number ", "Tube Range", "12"));

  const std::string dir = testing::makeTempDir("dialogkeys");
  FileDialogRequest save;
  save.action = FileDialogAction::SaveAs;
  save.title = "Save Method As";
  save.initialDirectory = dir;
  save.filter = "Method Files (*.mth)|*.mth";
  save.defaultExtension = "mth";
  pressInNextModal(Qt::Key_Escape);
  EXPECT_EQ("", op.fileDialog(save));
  auto* poll = new QTimer;
  QObject::connect(poll, &QTimer::timeout, poll, [poll] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr || modal->focusWidget() == nullptr) return;
    poll->deleteLater();
    QTest::keyClicks(modal->focusWidget(), "new");
    QTest::keyClick(modal->focusWidget(), Qt::Key_Return);
  });
  poll->start(5);
  EXPECT_EQ(dir + "new.mth", op.fileDialog(save));
}

// The program's own windows. Each opens as the program opens it; Return must press the named
// default button, Escape must close the window.
class WindowKeys : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::qtApp();
    state.StartDirectory = dir;
    state.BaseDirectoryPath = dir;
    state.LogPath = dir + "ZORVEL.LOG";
    state.PreferencesPath = dir + "ZORVEL.PRF";
    state.MethodsDirectory = dir + "METHODS";
    testing::UseSixTubeTray(state);
    armModel.setTray(&state.Tray);
    snapshot.colours = 1;
    snapshot.pairs.resize(2);
    snapshot.pairs[1] = {493, 515, 5, 5, 4};
    snapshot.values = {0, 106};
    snapshot.flags = {false, true};
    for (float k : {1.0f, 2.0f, 3.0f})
      AddEntry(snapshot.controls, std::vector<float>{99 + k}, 1, 1);
  }

  // Shows the window, waits for the work it starts on opening (the autosampler's first move),
  // presses the key where its focus is, and lets what follows run.
  static void press(QDialog& window, const char* defaultButton, Qt::Key key) {
    window.show();
    window.activateWindow();
    auto* button = window.findChild<QPushButton*>(defaultButton);
    for (int waitedMs = 0; !button->isEnabled() && waitedMs < 5000; waitedMs += 5) QTest::qWait(5);
    QCoreApplication::processEvents();
    QWidget* focus = QApplication::focusWidget();
    if (focus == nullptr || focus->window() != &window) focus = &window;
    QTest::keyClick(focus, key);
    QCoreApplication::processEvents();
  }

  struct Window {
    const char* name;
    const char* defaultButton;
    std::function<std::unique_ptr<QDialog>()> open;
  };
  std::unique_ptr<SerialLine> line() {
    return std::make_unique<sim::SimulatedLine>(clock, fluorimeter);
  }
  std::vector<Window> windows() {
    return {
        {"disclaimer", "OK", [] { return std::make_unique<ui::DisclaimerDialog>(); }},
        {"setup", "OK",
         [this] {
           return std::make_unique<ui::SetupWindow>(state, op, [](const std::string&) {});
         }},
        {"colours", "OK",
         [this] {
           auto window = std::make_unique<ui::ColourWindow>(colours);
           colours.open(*window, false);
           return window;
         }},
        {"water cell", "Start",
         [this] { return std::make_unique<ui::WaterCellWindow>(state, op, clock, line(), last); }},
        {"intensity", "Start",
         [this] { return std::make_unique<ui::IntensityWindow>(state, op, clock, line()); }},
        {"alert", "No", [this] { return std::make_unique<ui::AlertWindow>(snapshot, op); }},
        {"trend", "OK", [this] { return std::make_unique<ui::TrendWindow>(snapshot, op, false); }},
        {"autosampler", "OKButton",
         [this] {
           return std::make_unique<ui::AutosamplerWindow>(
               state, op, clock, std::make_unique<sim::SimulatedLine>(clock, armModel, "COM3"),
               std::make_unique<sim::SimulatedLine>(clock, pumpModel, "COM2"), AutosamplerHooks{});
         }},
    };
  }

  std::string dir = testing::makeTempDir("windowkeys");
  AppState state;
  ScriptedOperator op;
  VirtualClock clock;
  sim::Bench bench;
  sim::FluorimeterSim fluorimeter{bench, 2, 7};
  sim::ArmSim armModel{bench};
  sim::PumpSim pumpModel{bench};
  ColourPresenter colours{state, op};
  QcSnapshot snapshot;
  WaterCellResult last;
};

TEST_F(WindowKeys, ReturnPressesTheDefaultButtonAndEscapeCloses) {
  for (const Window& w : windows()) {
    SCOPED_TRACE(w.name);
    {
      std::unique_ptr<QDialog> window = w.open();
      auto* button = window->findChild<QPushButton*>(w.defaultButton);
      ASSERT_NE(button, nullptr);
      QSignalSpy pressed(button, &QPushButton::clicked);
      if (std::string_view(w.name) == "autosampler") {
        // The focus is in a box after the opening move; Return there takes the entry and leaves
        // the window open. From a button, Return is Done.
        press(*window, w.defaultButton, Qt::Key_Return);
        EXPECT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
        EXPECT_EQ(pressed.count(), 0);
        EXPECT_TRUE(window->isVisible());
        window->findChild<QPushButton*>("LowerProbe")->setFocus();
      }
      press(*window, w.defaultButton, Qt::Key_Return);
      EXPECT_EQ(pressed.count(), 1);
      QTest::qWait(20);
    }
    std::unique_ptr<QDialog> window = w.open();
    press(*window, w.defaultButton, Qt::Key_Escape);
    for (int waitedMs = 0; window->isVisible() && waitedMs < 5000; waitedMs += 5) QTest::qWait(5);
    EXPECT_FALSE(window->isVisible());
  }
}

// Tab goes through each window once round; wherever it lands in an option group, it lands on the
// group's checked button, as the arrow keys then move the choice within the group.
TEST_F(WindowKeys, TabIntoAnOptionGroupLandsOnItsCheckedButton) {
  int landings = 0;
  for (const Window& w : windows()) {
    SCOPED_TRACE(w.name);
    std::unique_ptr<QDialog> window = w.open();
    window->show();
    window->activateWindow();
    auto* button = window->findChild<QPushButton*>(w.defaultButton);
    for (int waitedMs = 0; !button->isEnabled() && waitedMs < 5000; waitedMs += 5) QTest::qWait(5);
    QCoreApplication::processEvents();
    for (int tab = 0; tab < 80; ++tab) {
      QWidget* focus = QApplication::focusWidget();
      QTest::keyClick(focus != nullptr ? focus : window.get(), Qt::Key_Tab);
      auto* radio = qobject_cast<QRadioButton*>(QApplication::focusWidget());
      if (radio == nullptr) continue;
      ++landings;
      const auto siblings = radio->parentWidget()->findChildren<QRadioButton*>();
      const bool anyChecked = std::any_of(siblings.begin(), siblings.end(),
                                          [](QRadioButton* r) { return r->isChecked(); });
      EXPECT_TRUE(radio->isChecked() || !anyChecked) << radio->objectName().toStdString();
    }
    window->hide();
  }
  EXPECT_GT(landings, 20);  // setup, intensity, alert, trend and autosampler have groups
}

// The arrows still move the choice to a button that Tab passes over.
TEST_F(WindowKeys, ArrowsMoveTheChoiceWithinAGroup) {
  ui::SetupWindow window(state, op, [](const std::string&) {});
  window.show();
  window.activateWindow();
  QCoreApplication::processEvents();
  auto* first = window.findChild<QRadioButton*>("Model1");
  auto* second = window.findChild<QRadioButton*>("Model2");
  first->click();
  first->setFocus();
  EXPECT_FALSE(second->focusPolicy() & Qt::TabFocus);
  QTest::keyClick(first, Qt::Key_Down);
  EXPECT_TRUE(second->isChecked());
  EXPECT_TRUE(second->hasFocus());
  EXPECT_TRUE(second->focusPolicy() & Qt::TabFocus);
  EXPECT_FALSE(first->focusPolicy() & Qt::TabFocus);
}

}  // namespace
}  // namespace zorvel
