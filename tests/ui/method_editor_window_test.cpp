#include <QAction>
#include <QComboBox>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <filesystem>

#include <gtest/gtest.h>

#include "core/app/preferences_file.h"
#include "core/method/method_commands.h"
#include "core/platform/page_printer.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "core/quality/quality_checks.h"
#include "support/bytes.h"
#include "ui/platform/instrument_lines.h"
#include "ui/qt_app.h"
#include "ui/windows/main_window.h"
#include "ui/windows/run_grid.h"
#include "ui/windows/run_window.h"

namespace zorvel {
namespace {

struct NeverAsked final : AlertDialog {
  int ask(const QcSnapshot&) override { return answer::kYes; }
};

template <typename T>
T* child(QWidget* parent, const QString& name) {
  T* found = parent->findChild<T*>(name);
  EXPECT_NE(found, nullptr) << name.toStdString();
  return found;
}

// Types into a box as a person does: the focus selects its text, the keys replace it, and
// leaving the box commits the entry.
void type(QWidget* parent, const QString& name, const QString& text) {
  auto* box = child<QLineEdit>(parent, name);
  box->setFocus();
  box->selectAll();
  QTest::keyClicks(box, text);
  QFocusEvent left(QEvent::FocusOut, Qt::TabFocusReason);
  QCoreApplication::sendEvent(box, &left);
  QCoreApplication::processEvents();
}

void click(QWidget* parent, const QString& name) {
  child<QAbstractButton>(parent, name)->click();
}

// Twenty pairs: the fourteen nominal colours, then six more between them.
void typeColours(QWidget* colours) {
  const int excitation[] = {340, 380, 440, 470, 493, 510, 537, 554, 578, 591,
                            617, 640, 656, 682, 345, 385, 445, 475, 498, 515};
  for (int row = 1; row <= 20; ++row) {
    if (row == 16) click(colours, "Next15");
    const int slot = row > 15 ? row - 15 : row;
    const int ex = excitation[row - 1];
    type(colours, QString("ExWl_grp_%1").arg(slot), QString::number(ex));
    type(colours, QString("EmWl_grp_%1").arg(slot), QString::number(ex + 25));
    type(colours, QString("ExSl_grp_%1").arg(slot), "5");
    type(colours, QString("EmSl_grp_%1").arg(slot), row % 2 == 0 ? "2.5" : "5");
  }
  EXPECT_EQ(child<QLabel>(colours, "CLabel_grp_5")->text(), "20");
  EXPECT_FALSE(child<QLineEdit>(colours, "ExWl_grp_6")->isVisible());
  child<QComboBox>(colours, "CList_grp_5")->setCurrentIndex(13);  // row 20 made "Violet"
  click(colours, "OK");
}

TEST(MethodEditorWindow, NewMethodTypedWithTwentyColoursSavedAndReadOnTheBench) {
  testing::qtApp();
  const std::string dir = testing::makeTempDir("editorwin");
  std::filesystem::create_directories(dir + "DATA");
  std::filesystem::create_directories(dir + "METHODS");
  Preferences prefs;
  prefs.BaseDirectoryPath = dir;
  ASSERT_TRUE(WritePreferencesFile(dir + "ZORVEL.PRF", prefs));

  AppState state;
  ScriptedOperator op;
  VirtualClock clock;
  PagePrinter printer;
  NeverAsked alert;
  QualityChecks checks(state, clock, op, alert);
  ui::MainWindow window(state, op, clock, printer);
  window.setDisclaimerShown(false);
  window.setQualityChecks(checks);
  ASSERT_TRUE(window.presenter().startUp(dir));
  ui::InstrumentLines lines(state, clock);
  lines.ports().devices[1] = "sim";
  lines.rig().fluorimeter().setTiming(sim::FluorimeterSim::InstantTiming());
  window.setInstruments(&lines);
  window.show();
  // With no method open a field's caption looks as disabled as the field.
  QLabel* analyst = nullptr;
  for (QLabel* label : window.findChildren<QLabel*>()) {
    if (label->text() == "Analyst:") analyst = label;
  }
  ASSERT_NE(analyst, nullptr);
  EXPECT_FALSE(analyst->isEnabled());

  window.action(MainMenu::NewMethodFile)->trigger();
  EXPECT_TRUE(analyst->isEnabled());
  QWidget* form = window.findChild<QWidget*>("METHODFORM");
  EXPECT_EQ(child<QLineEdit>(form, "nColors_Box")->text(), "1");
  EXPECT_FALSE(child<QPushButton>(form, "ASSetup")->isVisible());
  EXPECT_FALSE(child<QWidget>(form, "QXOnly1")->isVisible());
  window.action(MainMenu::QXMods)->trigger();
  EXPECT_TRUE(child<QWidget>(form, "QXOnly1")->isVisible());
  QTest::keyClick(child<QLineEdit>(form, "Op_Box"), Qt::Key_F4,
                  Qt::ControlModifier | Qt::AltModifier);
  EXPECT_FALSE(child<QWidget>(form, "QXOnly1")->isVisible());
  QTest::keyClick(child<QPushButton>(form, "Save"), Qt::Key_F12,
                  Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(child<QWidget>(form, "QXOnly1")->isVisible());

  type(form, "Op_Box", "A. Analyst");
  type(form, "sampid_box", "Trout liver, plate 4");
  type(form, "AmtSolv_Box", "2.5");
  type(form, "swell_box", "1");
  type(form, "nColors_Box", "20");
  type(form, "NumReps_Box", "1");
  type(form, "RdTime_Box", "0.1");
  type(form, "RdTimePures_Box", "0.5");
  type(form, "ScnSpd_Box", "-240");
  click(form, "ScanType_3");
  EXPECT_TRUE(child<QWidget>(form, "Synch_Box")->isVisible());
  for (const auto& [box, value] : {std::pair{"ExSlSync_Box", "5"},
                                   {"EmSlSync_Box", "5"},
                                   {"ScanLL_Box", "330"},
                                   {"ScanUL_Box", "720"},
                                   {"ScanOff_Box", "20"},
                                   {"ScanDInt_Box", "1"}})
    type(form, box, value);
  click(form, "ScanType_1");  // fixed wavelengths only, after all
  EXPECT_FALSE(child<QWidget>(form, "Synch_Box")->isVisible());
  click(form, "Voltage_grp_2");
  type(form, "PMTVoltage", "775");
  click(form, "Filter_grp_3");
  click(form, "FileType_1");
  click(form, "Delivery_2");  // the autosampler's button comes with its delivery
  EXPECT_TRUE(child<QPushButton>(form, "ASSetup")->isVisible());
  EXPECT_TRUE(child<QPushButton>(form, "ASSetup")->isEnabled());
  click(form, "Delivery_1");
  click(form, "Spillover_Box");  // no pures this time
  EXPECT_TRUE(op.shown.empty());

  bool coloursShown = false;
  testing::whenShown("COLORS", [&](QWidget* colours) {
    coloursShown = true;
    typeColours(colours);
  });
  QTest::mouseClick(child<QPushButton>(form, "Colors_Button"), Qt::LeftButton);
  ASSERT_TRUE(coloursShown);
  EXPECT_TRUE(child<QPushButton>(form, "Save")->isDefault());
  const auto asked = op.messages();
  ASSERT_FALSE(asked.empty());  // 20 rows of 14 colours: equal pairs, each confirmed with Yes
  EXPECT_EQ(asked[0].title, "Color Declaration Problem");

  const std::string methodPath = dir + "METHODS/TROUT.MTH";
  op.chooseNext(methodPath);
  op.chooseNext(dir + "DATA/trout.fix");  // named in lower case: kept so on disk and shown so
  op.answerNext(answer::kNo);             // no database build
  const std::size_t before = op.shown.size();
  QTest::mouseClick(child<QPushButton>(form, "Save"), Qt::LeftButton);
  EXPECT_EQ(op.shown.size(), before + 3);  // two dialogs and the database question
  EXPECT_SAME_BYTES(testing::readGolden("method/editor_twenty_colours.mth"),
                    testing::readFile(methodPath));
  EXPECT_EQ(child<QLabel>(form, "MethodFile_Label")->text().toStdString(), methodPath);

  ui::RunWindow* run = nullptr;
  for (QWidget* w : QApplication::topLevelWidgets()) {
    if (w->objectName() == "SAMPLING" && w->isVisible()) run = qobject_cast<ui::RunWindow*>(w);
  }
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(run->findChild<QAction*>("MenuFilename")->text(), "trout.FIX");
  const auto clickAndWait = [run](const char* button, const char* until) {
    QTest::mouseClick(run->findChild<QPushButton*>(button), Qt::LeftButton);
    ZORVEL_TRY_VERIFY(!run->working() && run->findChild<QWidget*>(until)->isVisible(), 10000);
  };
  clickAndWait("OK_1", "OK_Frame");
  clickAndWait("OK_1", "AR_Frame");
  EXPECT_EQ(run->grid()->textAt(0, 20), "515/540");
  for (int colour = 1; colour <= 20; ++colour) {
    bool number = false;
    run->grid()->textAt(2, colour).toDouble(&number);
    EXPECT_TRUE(number) << colour;
  }
  clickAndWait("AcceptReject_1", "OK_Frame");
  EXPECT_FALSE(testing::readFile(dir + "DATA/trout.FIX").empty());
  QTest::mouseClick(run->findChild<QPushButton*>("OK_2"), Qt::LeftButton);
}

}  // namespace
}  // namespace zorvel
