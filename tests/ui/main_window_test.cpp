#include "ui/windows/main_window.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <functional>

#include <gtest/gtest.h>

#include "core/app/demo_workspace.h"
#include "core/datafiles/data_set_naming.h"
#include "core/method/demo_methods.h"
#include "core/platform/page_printer.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "core/quality/quality_checks.h"
#include "support/bytes.h"
#include "ui/platform/instrument_lines.h"
#include "ui/qt_app.h"
#include "ui/windows/alert_window.h"

namespace zorvel {
namespace {

namespace fs = std::filesystem;

TEST(MainWindow, FirstStartMakesFoldersAsksForSetupAndExitLogs) {
  testing::qtApp();
  const std::string dir = testing::makeTempDir("mainwin");
  AppState state;
  ScriptedOperator op;
  VirtualClock clock;
  PagePrinter printer;
  ui::InstrumentLines lines(state, clock);
  ui::MainWindow window(state, op, clock, printer);
  window.setDisclaimerShown(false);

  bool setupShown = false;
  testing::whenShown("SETUPFORM", [&](QWidget* setup) {
    setupShown = true;
    QTest::mouseClick(setup->findChild<QPushButton*>("OK"), Qt::LeftButton);
  });
  ASSERT_TRUE(window.presenter().startUp(dir));
  EXPECT_TRUE(setupShown);
  EXPECT_TRUE(fs::is_directory(dir + "DATA"));
  EXPECT_TRUE(fs::exists(dir + "ZORVEL.PRF"));
  ASSERT_EQ(op.messages().size(), 2u);

  // The instruments on the simulator are named in the title.
  EXPECT_EQ(window.windowTitle(), "ZORVEL");
  lines.ports().devices[1] = "sim";
  window.setInstruments(&lines);
  EXPECT_EQ(window.windowTitle(), "ZORVEL - SIMULATED fluorimeter");
  window.show();
  // The whole window, its buttons at the foot included, fits a 1024 x 768 screen.
  ZORVEL_TRY_VERIFY(window.isVisible(), 5000);
  EXPECT_LE(window.frameGeometry().width(), 1024);
  EXPECT_LE(window.frameGeometry().height(), 700);
  window.showMedians(std::vector<std::string>(30, "12345.6"));
  QCoreApplication::processEvents();
  EXPECT_LE(window.frameGeometry().width(), 1024);
  window.showMedians({});

  // Reopening runs away from the window thread: the menus wait until it is done.
  testing::writeFile(dir + "DATA/BAD.FIX", "not a data file\r\n");
  op.chooseNext(dir + "DATA/BAD.FIX");
  window.action(MainMenu::AppendDataFile)->trigger();
  EXPECT_FALSE(window.menuBar()->isEnabled());
  ZORVEL_TRY_VERIFY(window.menuBar()->isEnabled(), 5000);
  EXPECT_EQ(op.messages().back().text, "Invalid data file format. Line 1.");
  EXPECT_EQ(window.findChild<QLabel*>("MethodFile_Label")->text(), "None open.");
  EXPECT_EQ(window.findChild<QLabel*>("DataFile_Label")->text(), "None open");
  EXPECT_FALSE(window.findChild<QLabel*>("TrayFile_Label")->isVisible());
  EXPECT_TRUE(window.action(MainMenu::SetupFluorimeter)->isEnabled());
  EXPECT_FALSE(window.action(MainMenu::ShowExistingControls)->isEnabled());
  EXPECT_EQ(window.action(MainMenu::Exit)->text(), "E&xit");

  // A tray chosen in the setup window whose first column lies past the arm's reach is taken,
  // shown as spelt on disk, and the log says once how it will be sent.
  testing::writeFile(dir + "Far.TGF", "0 -4.25 9.5\n308.4 10 1\n");
  testing::whenShown("SETUPFORM", [&](QWidget* setup) {
    op.chooseNext(dir + "Far.TGF");
    QTest::mouseClick(setup->findChild<QPushButton*>("ChooseFile"), Qt::LeftButton);
    EXPECT_EQ(setup->findChild<QLabel*>("PlateFile_Label")->text().toStdString(), dir + "Far.TGF");
    QTest::mouseClick(setup->findChild<QPushButton*>("Cancel"), Qt::LeftButton);
  });
  window.action(MainMenu::SetupFluorimeter)->trigger();
  const std::string log = testing::readFile(dir + "ZORVEL.LOG");
  EXPECT_NE(log.find("Far.TGF: 2 position(s) outside the arm's reach"), std::string::npos) << log;

  window.action(MainMenu::Exit)->trigger();
  EXPECT_TRUE(op.ended);
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(testing::readFile(dir + "ZORVEL.LOG").substr(log.size()),
            "Stop Program\t03-07-2000\t14:05:09\r\n");
}

// The autosampler window's starting tube is the number the tray run gives its first sample, and
// the main window's "Starting Number:" shows that very number once the tube is taken.
TEST(MainWindow, StartingNumberFollowsTheStartingTube) {
  testing::qtApp();
  const std::string dir = testing::makeTempDir("mainwin-tube");
  ScriptedOperator op;
  ASSERT_TRUE(PrepareDemoWorkspace(dir, op));
  AppState state;
  VirtualClock clock;
  PagePrinter printer;
  ui::MainWindow window(state, op, clock, printer);
  window.setDisclaimerShown(false);
  ASSERT_TRUE(window.presenter().startUp(dir));
  ui::InstrumentLines lines(state, clock);
  for (int com = 1; com <= 4; ++com) lines.ports().devices[com] = "sim";
  window.setInstruments(&lines);
  window.show();
  op.chooseNext(state.MethodsDirectory + "/" + kDemoTrayMethod);
  window.action(MainMenu::EditMethodFile)->trigger();
  auto* number = window.findChild<QLineEdit*>("swell_box");
  ASSERT_NE(number, nullptr);
  EXPECT_EQ(number->text(), "1");

  testing::whenShown("ASDILUTOR", [&](QWidget* autosampler) {
    auto* tube = autosampler->findChild<QLineEdit*>("StartingTube");
    // The tray boxes open once the arm's opening move is over.
    ZORVEL_TRY_VERIFY(tube->isEnabled() && tube->isVisible(), 10000);
    tube->setFocus();
    tube->selectAll();
    QTest::keyClicks(tube, "7");
    // Return takes the entry where it is typed; Tab would wait on the window being active,
    // which a loaded machine gives late.
    QTest::keyClick(tube, Qt::Key_Return);
    QCoreApplication::processEvents();
    autosampler->close();
  });
  QTest::mouseClick(window.findChild<QPushButton*>("ASSetup"), Qt::LeftButton);
  EXPECT_EQ(state.Method.Autosampler.StartingTube, 7);
  EXPECT_EQ(number->text(), "7");
  EXPECT_EQ(window.presenter().methodEditor().state().FirstSampleNumber, 7);
}

// The questions asked about a new data set come with the set already named in the main window.
TEST(MainWindow, ANewSetIsShownBeforeTheQuestionsAboutIt) {
  testing::qtApp();
  const std::string dir = testing::makeTempDir("mainwin-set");
  // Answers as scripted, looking at the window each time a box comes up.
  struct PeekingOperator final : Operator {
    ScriptedOperator script;
    std::function<void()> peek;
    int messageBox(const MessageBoxRequest& box) override {
      if (peek) peek();
      return script.messageBox(box);
    }
    std::string inputBox(const std::string& p, const std::string& t,
                         const std::string& d) override {
      return script.inputBox(p, t, d);
    }
    std::string fileDialog(const FileDialogRequest& r) override { return script.fileDialog(r); }
    void beep() override {}
    void setBusy(bool) override {}
    void endProgram(int) override {}
  } op;
  ASSERT_TRUE(PrepareDemoWorkspace(dir, op.script));
  AppState state;
  VirtualClock clock;
  PagePrinter printer;
  ui::MainWindow window(state, op, clock, printer);
  window.setDisclaimerShown(false);
  ui::QtAlertDialog alert(op, &window);
  QualityChecks checks(state, clock, op, alert);
  window.setQualityChecks(checks);
  ASSERT_TRUE(window.presenter().startUp(dir));
  ui::InstrumentLines lines(state, clock);
  for (int com = 1; com <= 4; ++com) lines.ports().devices[com] = "sim";
  window.setInstruments(&lines);
  window.show();
  op.script.chooseNext(state.MethodsDirectory + "/" + kDemoFixedMethod);
  window.action(MainMenu::EditMethodFile)->trigger();
  std::vector<std::string> labels;
  op.peek = [&] {
    labels.push_back(window.findChild<QLabel*>("DataFile_Label")->text().toStdString());
  };
  op.script.chooseNext(dir + "DATA/run1.fix");
  op.script.answerNext(answer::kNo);  // no database build
  op.script.answerNext(answer::kNo);  // the pures notice: stop
  QTest::mouseClick(window.findChild<QPushButton*>("Save"), Qt::LeftButton);
  ZORVEL_TRY_VERIFY(labels.size() == 2u, 2000);
  ASSERT_EQ(labels.size(), 2u);
  for (const std::string& label : labels)
    EXPECT_EQ(label, DataFileLabel(state.Method, dir + "DATA/run1"));
}

}  // namespace
}  // namespace zorvel
