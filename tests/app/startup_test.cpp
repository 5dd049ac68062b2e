#include "core/app/startup.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "app/fake_views.h"
#include "core/app/main_presenter.h"
#include "core/app/preferences_file.h"
#include "core/platform/page_printer.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

namespace fs = std::filesystem;
using testing::FakeMainView;
using testing::readFile;
using testing::writeFile;

class StartUpTest : public ::testing::Test {
 protected:
  std::string dir = testing::makeTempDir("startup");
  AppState state;
  ScriptedOperator op;
  VirtualClock clock{CalendarTime{2000, 3, 7, 14, 5, 9}};
  FakeMainView view;

  void writePreferences(const std::string& text) { writeFile(dir + "ZORVEL.PRF", text); }
};

TEST_F(StartUpTest, EmptyFolderAsksBothThenNoticeThenSetupThenBootUp) {
  std::vector<std::string> order;
  view.onSetup = [&] {
    order.push_back("setup");
    return true;
  };
  ASSERT_TRUE(StartUp(state, dir.substr(0, dir.size() - 1), op, clock, view));
  const auto boxes = op.messages();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0].title, "Directory Structure Construction");
  EXPECT_EQ(boxes[0].text, "Base address: " + dir +
                               "\rThe DATA and METHODS subdirectories are missing.  Create them?");
  EXPECT_EQ(boxes[0].buttons, BoxButtons::YesNo);
  EXPECT_EQ(boxes[0].icon, BoxIcon::Exclamation);
  EXPECT_EQ(boxes[1].text, "An LS50(B) preferences file was not found.  Please complete form.");
  EXPECT_EQ(boxes[1].title, "ZORVEL NOTIFICATION");
  EXPECT_EQ(view.setupRuns, 1);
  EXPECT_TRUE(fs::is_directory(dir + "DATA"));
  EXPECT_TRUE(fs::is_directory(dir + "METHODS"));
  EXPECT_EQ(state.StartDirectory, dir);
  EXPECT_EQ(state.LogPath, dir + "ZORVEL.LOG");
  EXPECT_SAME_BYTES("ZORVEL Log File\r\nBoot up\t03-07-2000\t14:05:09\r\n",
                    readFile(state.LogPath));
  EXPECT_EQ(view.methodLabel, "None open.");
  EXPECT_EQ(view.dataLabel, "None open");
  EXPECT_EQ(state.ColourNames[13], "Violet");
  EXPECT_EQ(state.ColourExcitation[1], 340);
  EXPECT_EQ(state.ColourExcitation[0], 0);
  EXPECT_EQ(state.ColourExcitation[15], 0);
}

TEST_F(StartUpTest, EachMissingFolderHasItsOwnQuestionAndOnlyItIsMade) {
  fs::create_directory(dir + "METHODS");
  writePreferences(
      "Fluorimeter?=LS-50B\r\nFlComPort?=1\r\nDilComPort?=2\r\nAutoSampComPort?=3\r\n"
      "Printer?=1\r\nAutoSampler?=0\r\nBaseDirectoryPath?=" +
      dir + "\r\n");
  ASSERT_TRUE(StartUp(state, dir, op, clock, view));
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text,
            "Base address: " + dir + "\rThe DATA subdirectory is missing.  Create it?");
  EXPECT_TRUE(fs::is_directory(dir + "DATA"));
  EXPECT_EQ(view.setupRuns, 0);

  AppState again;
  ScriptedOperator op2;
  fs::remove(dir + "METHODS");
  ASSERT_TRUE(StartUp(again, dir, op2, clock, view));
  EXPECT_EQ(op2.messages()[0].text,
            "Base address: " + dir + "\rThe METHODS subdirectory is missing.  Create it?");
  // Each start appends its own "Boot up"; the log is never emptied.
  EXPECT_SAME_BYTES(
      "ZORVEL Log File\r\nBoot up\t03-07-2000\t14:05:09\r\nBoot up\t03-07-2000\t14:05:09\r\n",
      readFile(dir + "ZORVEL.LOG"));
}

TEST_F(StartUpTest, NoEndsTheProgramBeforePreferencesOrLog) {
  writePreferences("Fluorimeter?=LS-50\r\n");  // truncated: would be fatal if it were read
  op.answerNext(answer::kNo);
  EXPECT_FALSE(StartUp(state, dir, op, clock, view));
  EXPECT_TRUE(op.ended);
  EXPECT_EQ(op.messages().size(), 1u);
  EXPECT_FALSE(fs::exists(dir + "DATA"));
  EXPECT_FALSE(fs::exists(dir + "ZORVEL.LOG"));
  EXPECT_EQ(state.Prefs.Fluorimeter, 2);
}

TEST_F(StartUpTest, TruncatedOrGarbledPreferencesEndInTheMessage) {
  fs::create_directory(dir + "DATA");
  fs::create_directory(dir + "METHODS");
  const std::vector<std::string> damaged = {"Fluorimeter?=LS-50\r\nFlComPort?=1\r\n", "",
                                            std::string("\x01\xff\x00garbage", 10)};
  for (const std::string& text : damaged) {
    writePreferences(text);
    AppState fresh;
    ScriptedOperator ops;
    EXPECT_FALSE(StartUp(fresh, dir, ops, clock, view));
    ASSERT_EQ(ops.messages().size(), 1u);
    EXPECT_EQ(ops.messages()[0].text, "Error reading preferences file.");
    EXPECT_EQ(ops.messages()[0].title, "ZORVEL");
    EXPECT_TRUE(ops.ended);
  }
}

// A refused preferences file is said with its line; the setup window is offered as on a first
// run, and without it (zorvel-run) the program ends with status 2.
TEST_F(StartUpTest, RefusedPreferencesOfferTheSetupWindowOrEndTheProgram) {
  fs::create_directory(dir + "DATA");
  fs::create_directory(dir + "METHODS");
  writePreferences(
      "Fluorimeter?=LS-50B\r\nFlComPort?=abc\r\nDilComPort?=2\r\nAutoSampComPort?=3\r\n"
      "Printer?=0\r\nAutoSampler?=0\r\nBaseDirectoryPath?=/lab\r\n");
  view.onSetup = [] { return false; };
  EXPECT_FALSE(StartUp(state, dir, op, clock, view));
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text,
            "The preferences file " + dir +
                "ZORVEL.PRF, line 2: FlComPort?=abc cannot be used; a COM port number from 1 to "
                "4 is expected.");
  EXPECT_EQ(view.setupRuns, 1);
  EXPECT_TRUE(state.PreferencesRefused);
  EXPECT_EQ(state.Prefs, Preferences{});
  EXPECT_TRUE(op.ended);
  EXPECT_EQ(op.exitCode, 2);

  AppState fixed;
  ScriptedOperator ops;
  view.onSetup = [] { return true; };
  EXPECT_TRUE(StartUp(fixed, dir, ops, clock, view));
  EXPECT_EQ(view.setupRuns, 2);
}

TEST_F(StartUpTest, PresenterStopsWithLogEntryAndCloseBoxWithout) {
  fs::create_directory(dir + "DATA");
  fs::create_directory(dir + "METHODS");
  writePreferences(PreferencesFileText(Preferences{2, 1, 2, 3, 1, false, dir, ""}));
  PagePrinter printer;
  MainPresenter presenter(state, op, clock, printer, view);
  bool portsClosed = false;
  presenter.setInstrumentPortCloser([&] { portsClosed = true; });
  ASSERT_TRUE(presenter.startUp(dir));
  EXPECT_FALSE(view.menus[MainMenu::ShowExistingControls]);
  EXPECT_TRUE(view.menus[MainMenu::SetupFluorimeter]);
  EXPECT_FALSE(view.menus[MainMenu::RunWatercell]);  // its window is not in this build
  presenter.activated();
  presenter.activated();
  EXPECT_EQ(view.disclaimers, 1);
  EXPECT_FALSE(state.FirstActivation);

  state.Method.PrintResults = true;
  presenter.stopProgram();
  EXPECT_TRUE(op.ended);
  EXPECT_TRUE(portsClosed);
  EXPECT_TRUE(view.closed);
  EXPECT_EQ(printer.documents.size(), 1u);
  const std::string log = readFile(dir + "ZORVEL.LOG");
  EXPECT_NE(log.find("Stop Program\t03-07-2000\t14:05:09\r\n"), std::string::npos);

  presenter.closeBox();
  EXPECT_EQ(readFile(dir + "ZORVEL.LOG"), log);  // no second entry
}

}  // namespace
}  // namespace zorvel
