#include "ui/windows/autosampler_window.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include "core/method/method_defaults.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/arm_sim.h"
#include "sim/pump_sim.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"
#include "support/six_tube_tray.h"
#include "ui/qt_app.h"
#include "ui/windows/tray_picture.h"

namespace zorvel {
namespace {

template <typename T>
T* child(QWidget& parent, const char* name) {
  T* widget = parent.findChild<T*>(name);
  EXPECT_NE(widget, nullptr) << name;
  return widget;
}

class AutosamplerWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::qtApp();
    testing::UseSixTubeTray(state);
    state.Method.Autosampler.AirDryTime = 1;
    armModel.setTray(&state.Tray);
    window = std::make_unique<ui::AutosamplerWindow>(
        state, op, clock, std::make_unique<sim::SimulatedLine>(clock, armModel, "COM3 (sim)"),
        std::make_unique<sim::SimulatedLine>(clock, pumpModel, "COM2 (sim)"), AutosamplerHooks{});
  }

  void settle() {
    for (int waitedMs = 0; window->working() && waitedMs < 10000; waitedMs += 5) QTest::qWait(5);
    ASSERT_FALSE(window->working());
    QCoreApplication::processEvents();
  }
  void click(const char* name) { child<QAbstractButton>(*window, name)->click(); }
  QString text(const char* name) { return child<QLineEdit>(*window, name)->text(); }

  AppState state;
  ScriptedOperator op;
  VirtualClock clock;
  sim::Bench bench;
  sim::ArmSim armModel{bench};
  sim::PumpSim pumpModel{bench};
  std::unique_ptr<ui::AutosamplerWindow> window;
};

TEST_F(AutosamplerWindowTest, ClickingThroughTheWindowDrivesTheArmAndThePump) {
  window->show();
  EXPECT_EQ(window->objectName(), "ASDILUTOR");
  // The whole window fits a 1024 x 768 screen.
  EXPECT_LE(window->frameGeometry().width(), 1024);
  EXPECT_LE(window->frameGeometry().height(), 700);
  settle();
  // Opened over the starting tube, the boxes filled from the method.
  EXPECT_EQ(armModel.xMm(), 56.0f);
  EXPECT_EQ(text("XPos"), "56");
  EXPECT_EQ(window->trayPicture()->armPositionMm(), QPointF(56, 20));
  EXPECT_EQ(text("SampleVolume"), "750");
  EXPECT_TRUE(child<QRadioButton>(*window, "Syringe_volume_grp_10")->isChecked());
  EXPECT_TRUE(child<QRadioButton>(*window, "Incr_grp_10")->isChecked());
  const ui::TrayPicture* picture = window->trayPicture();
  EXPECT_EQ(picture->colourOf(0), ui::TrayPicture::rinseColour());
  EXPECT_EQ(picture->colourOf(1), ui::TrayPicture::standardColour());
  EXPECT_EQ(picture->colourOf(2), ui::TrayPicture::blankColour());
  EXPECT_EQ(picture->colourOf(4), ui::TrayPicture::sampleColour());
  EXPECT_EQ(picture->colourOf(6), ui::TrayPicture::otherColour());

  click("StandardBox");
  EXPECT_TRUE(child<QLineEdit>(*window, "StandardTube")->isHidden());
  EXPECT_FALSE(child<QWidget>(*window, "Freq_Label")->isHidden());
  click("StandardBox");

  // A 5 mL syringe: 5001 is taken whole and refused on Return; the box shows the volume in
  // force again, selected, and the message names the box.
  click("Syringe_volume_grp_5");
  QLineEdit* volume = child<QLineEdit>(*window, "SampleVolume");
  volume->setFocus();
  volume->selectAll();
  QTest::keyClicks(volume, "5001");
  EXPECT_TRUE(op.messages().empty());
  QTest::keyClick(volume, Qt::Key_Return);
  EXPECT_EQ(volume->text(), "750");
  EXPECT_EQ(volume->selectedText(), "750");
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text,
            "Sample Volume (ul): Answer must be in range of 1 - 5000. Please try again.");
  EXPECT_EQ(state.Method.Autosampler.SampleVolume, 750);

  // Locate runs on the worker; meanwhile nothing else can start.
  click("Locate");
  EXPECT_FALSE(child<QPushButton>(*window, "PrimePump")->isEnabled());
  settle();
  EXPECT_TRUE(child<QPushButton>(*window, "PrimePump")->isEnabled());
  EXPECT_EQ(armModel.xMm(), 92.0f);
  EXPECT_EQ(window->trayPicture()->armPositionMm(), QPointF(92, 20));
  EXPECT_EQ(text("THeight"), "70");

  click("Height_grp_1");
  settle();
  click("LowerProbe");
  settle();
  EXPECT_EQ(armModel.xMm(), 245.0f);
  EXPECT_EQ(armModel.probeHeight(), 70.0f);

  click("Incr_grp_1");
  click("UpArrow");
  settle();
  EXPECT_EQ(armModel.yMm(), 19.0f);
  EXPECT_TRUE(child<QPushButton>(*window, "SavePos")->isEnabled());

  click("PrimePump");
  settle();
  EXPECT_EQ(pumpModel.valvePort(), 1);
  EXPECT_GT(pumpModel.framesAccepted(), 8);

  // Done checks the whole: the 8000 uL flush no longer fits the 5 mL syringe and is cleared.
  click("OKButton");
  EXPECT_TRUE(window->isVisible());
  ASSERT_EQ(op.messages().size(), 2u);
  EXPECT_EQ(op.messages()[1].text, "Flush volume must be between 0 and 5000.");
  EXPECT_EQ(text("FlushTime"), "0");
  click("OKButton");
  settle();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(armModel.xMm(), 245.0f);  // back over the rinse station
  EXPECT_TRUE(state.Flags.AutosamplerWindowOpened);
}

// Typing is taken when committed: a tube past the tray is refused when Go To is pressed, and
// then nothing moves; a good tube moves the arm and the focus comes back to the box.
TEST_F(AutosamplerWindowTest, GoToNeverMovesToARefusedTubeAndTheFocusComesBack) {
  window->show();
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  settle();
  const int commandsBefore = armModel.commandsReceived();
  QLineEdit* tube = child<QLineEdit>(*window, "TubeToGoTo");
  QTest::mouseClick(tube, Qt::LeftButton);
  QCoreApplication::processEvents();
  EXPECT_EQ(tube->selectedText(), tube->text());  // a click selects, as Tab does
  QTest::keyClicks(tube, "97");
  QTest::keyClick(tube, Qt::Key_G, Qt::AltModifier);  // "&Go To", clicked a moment later
  EXPECT_TRUE(QTest::qWaitFor([this] { return !op.messages().empty(); }));
  settle();
  EXPECT_EQ(armModel.commandsReceived(), commandsBefore);
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text, "Tube: Answer must be between 0 and 6.");
  EXPECT_EQ(tube->text(), "0");
  EXPECT_TRUE(tube->hasFocus());
  EXPECT_EQ(tube->selectedText(), "0");

  QTest::keyClicks(tube, "5");
  child<QPushButton>(*window, "One")->setFocus();  // as a mouse click on "Go To" leaves it
  QTest::keyClick(child<QPushButton>(*window, "One"), Qt::Key_Space);
  settle();
  EXPECT_EQ(armModel.xMm(), 92.0f);
  EXPECT_TRUE(tube->hasFocus());

  // An incomplete entry is no error while typing; "-" alone is refused only when left.
  QLineEdit* ending = child<QLineEdit>(*window, "EndingTube");
  ending->setFocus();
  ending->selectAll();
  QTest::keyClicks(ending, "-");
  EXPECT_EQ(op.messages().size(), 1u);
  QTest::keyClicks(ending, "2");
  QTest::keyClick(ending, Qt::Key_Tab);
  QCoreApplication::processEvents();
  ASSERT_EQ(op.messages().size(), 2u);
  EXPECT_EQ(op.messages()[1].text, "Ending Tube: Answer must be in range of 3-6.");
  EXPECT_EQ(ending->text(), "5");
  EXPECT_TRUE(ending->hasFocus());
}

// Presses Stop while the volume check waits for its look at the flow cell, as an operator who
// has seen enough would.
class StoppingOperator final : public Operator {
 public:
  int messageBox(const MessageBoxRequest& box) override {
    if (box.text == "Check Flow Cell" && stop) {
      QMetaObject::invokeMethod(stop, "click", Qt::BlockingQueuedConnection);
    }
    return answer::kOk;
  }
  std::string inputBox(const std::string&, const std::string&, const std::string&) override {
    return "";
  }
  std::string fileDialog(const FileDialogRequest&) override { return ""; }
  void beep() override {}
  void setBusy(bool) override {}
  void endProgram(int) override {}
  QPointer<QPushButton> stop;
};

TEST_F(AutosamplerWindowTest, AVolumeCheckShowsItsStepsAndStopsSafelyWithTheTrayLocked) {
  StoppingOperator person;
  window = std::make_unique<ui::AutosamplerWindow>(
      state, person, clock, std::make_unique<sim::SimulatedLine>(clock, armModel, "COM3 (sim)"),
      std::make_unique<sim::SimulatedLine>(clock, pumpModel, "COM2 (sim)"), AutosamplerHooks{});
  window->show();
  settle();
  person.stop = child<QPushButton>(*window, "SequenceStop");
  EXPECT_FALSE(person.stop->isEnabled());
  click("CheckVol");
  // While it runs: the tray settings are locked with the rest, Stop is offered.
  EXPECT_FALSE(child<QWidget>(*window, "Tray_Frame")->isEnabled());
  settle();
  const QString said = child<QLabel>(*window, "SequenceStatus")->text();
  EXPECT_TRUE(
      said.startsWith("Check Volumes: Stopped after step 7 of 16 (Check Flow Cell). The "
                      "valve is at port 1, the arm is home"))
      << said.toStdString();
  EXPECT_EQ(child<QProgressBar>(*window, "SequenceProgress")->value(), 7);
  EXPECT_TRUE(child<QWidget>(*window, "Tray_Frame")->isEnabled());
  EXPECT_FALSE(person.stop->isEnabled());
}

}  // namespace
}  // namespace zorvel
