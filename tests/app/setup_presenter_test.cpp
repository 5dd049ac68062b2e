#include "core/app/setup_presenter.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "app/fake_views.h"
#include "core/app/preferences_file.h"
#include "core/platform/scripted_operator.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

namespace fs = std::filesystem;

class SetupPresenterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    state.StartDirectory = dir;
    state.PreferencesPath = dir + "ZORVEL.PRF";
    state.BaseDirectoryPath = dir;
    state.MethodsDirectory = dir + "METHODS";
    view.listPath = dir;
  }
  std::string dir = testing::makeTempDir("setup");
  AppState state;
  ScriptedOperator op;
  testing::FakeSetupView view;
  std::string trayShown;
  SetupPresenter presenter{state, op, view, [this](const std::string& p) { trayShown = p; }};
};

TEST_F(SetupPresenterTest, FirstRunShowsDefaultsAndExitEndsTheProgram) {
  state.Prefs.FlComPort = 4;
  presenter.opened();
  EXPECT_TRUE(presenter.firstRun());
  EXPECT_EQ(view.cancelCaption, "Exit");
  EXPECT_EQ(view.ports, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(view.model, 2);
  EXPECT_TRUE(view.printer);
  EXPECT_FALSE(view.framesVisible);
  EXPECT_EQ(view.heightTwips, 3800);
  EXPECT_EQ(view.baseLabel, dir);
  EXPECT_EQ(state.Prefs.BaseDirectoryPath, dir);
  presenter.cancel();
  EXPECT_TRUE(view.closed);
  EXPECT_TRUE(op.ended);
  EXPECT_FALSE(fs::exists(state.PreferencesPath));
}

TEST_F(SetupPresenterTest, OkWritesThePreferencesAndPortsMayBeEqualWithoutAutosampler) {
  presenter.opened();
  presenter.fluorimeterPortChosen(2);
  presenter.dilutorPortChosen(2);
  presenter.autosamplerPortChosen(2);
  presenter.printerToggled(false);
  presenter.ok();
  EXPECT_TRUE(view.closed);
  EXPECT_TRUE(op.messages().empty());
  Preferences expected{2, 2, 2, 2, 0, false, dir, ""};
  EXPECT_SAME_BYTES(PreferencesFileText(expected), testing::readFile(state.PreferencesPath));
}

TEST_F(SetupPresenterTest, AutosamplerNeedsAPlateFileAndDistinctPorts) {
  presenter.opened();
  presenter.autosamplerToggled(true);
  EXPECT_TRUE(view.framesVisible);
  EXPECT_EQ(view.heightTwips, 5100);
  presenter.ok();
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text, "You must select a Plate Description File.");
  EXPECT_EQ(op.messages()[0].title, "ZORVEL HELP");
  EXPECT_FALSE(view.closed);

  // A plate file that does not exist changes nothing.
  op.chooseNext(dir + "none.tgf");
  presenter.chooseFile();
  EXPECT_EQ(op.messages().back().text, "File does not exist");
  EXPECT_EQ(view.plateLabel, "None Selected");

  fs::create_directory(dir + "METHODS");
  testing::writeFile(dir + "METHODS/Tray96.TGF", "0,0,0\r\n10,20,1\r\n30,40,2\r\n");
  op.chooseNext(dir + "METHODS/Tray96.TGF");
  presenter.chooseFile();
  EXPECT_EQ(state.Tray.TubeCount, 2);
  EXPECT_EQ(state.Prefs.TrayGeometryFile, dir + "METHODS/Tray96.TGF");  // opened as chosen
  EXPECT_EQ(trayShown, dir + "METHODS/Tray96.TGF");
  const auto& dialog = op.shown.back().dialog;
  EXPECT_EQ(dialog.initialDirectory, dir + "METHODS");

  presenter.fluorimeterPortChosen(1);
  presenter.dilutorPortChosen(2);
  presenter.autosamplerPortChosen(1);
  presenter.ok();
  EXPECT_EQ(op.messages().back().text,
            "The flourimeter and autosampler have been assigned to the same COM port!  Please "
            "change.");
  presenter.dilutorPortChosen(1);
  presenter.ok();
  EXPECT_EQ(op.messages().back().text,
            "The flourimeter and dilutor station have been assigned to the same COM port!  Please "
            "change.");
  presenter.fluorimeterPortChosen(3);
  presenter.ok();
  EXPECT_EQ(op.messages().back().text,
            "The dilutor station and autosampler have been assigned to the same COM port!  Please "
            "change.");
  EXPECT_FALSE(fs::exists(state.PreferencesPath));
  presenter.autosamplerPortChosen(2);
  presenter.ok();
  EXPECT_TRUE(view.closed);
  EXPECT_NE(testing::readFile(state.PreferencesPath).find("TrayGeometryFile?=" + dir),
            std::string::npos);
}

TEST_F(SetupPresenterTest, FoldersAreMadeOnRequest) {
  presenter.opened();
  op.typeNext("lab2");
  presenter.createFolder();
  EXPECT_TRUE(fs::is_directory(dir + "lab2"));
  EXPECT_EQ(view.listPath, dir + "lab2");
  EXPECT_EQ(state.Prefs.BaseDirectoryPath, dir + "lab2");
  presenter.setFolder();
  EXPECT_TRUE(fs::is_directory(dir + "lab2/DATA"));
  EXPECT_TRUE(fs::is_directory(dir + "lab2/METHODS"));
  EXPECT_EQ(state.DataDirectory, dir + "lab2/DATA");

  presenter.createFolder();  // cancelled: the scripted operator types nothing
  op.typeNext("../x");
  presenter.createFolder();
  EXPECT_EQ(op.messages().back().title, "ZORVEL ERROR");
  presenter.driveChosen(dir + "not-mounted");
  EXPECT_EQ(view.listPath, dir + "lab2");
  // A drive that is ready moves the label with the base directory: OK writes what is shown.
  presenter.driveChosen(dir);
  EXPECT_EQ(view.baseLabel, dir);
  EXPECT_EQ(state.Prefs.BaseDirectoryPath, dir);
}

}  // namespace
}  // namespace zorvel
