#include "ui/windows/setup_window.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "core/app/preferences_file.h"
#include "core/platform/scripted_operator.h"
#include "support/bytes.h"
#include "ui/qt_app.h"

namespace zorvel {
namespace {

template <typename T>
T* child(QWidget* parent, const char* name) {
  T* widget = parent->findChild<T*>(name);
  EXPECT_NE(widget, nullptr) << name;
  return widget;
}

class SetupWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::qtApp();
    state.StartDirectory = dir;
    state.BaseDirectoryPath = dir;
    state.PreferencesPath = dir + "ZORVEL.PRF";
    state.MethodsDirectory = dir + "METHODS";
    window = std::make_unique<ui::SetupWindow>(state, op,
                                               [this](const std::string& p) { trayShown = p; });
  }
  void click(const char* name) { child<QAbstractButton>(&*window, name)->click(); }

  std::string dir = testing::makeTempDir("setupwin");
  AppState state;
  ScriptedOperator op;
  std::string trayShown;
  std::unique_ptr<ui::SetupWindow> window;
};

TEST_F(SetupWindowTest, AutosamplerChecksThenOkWritesTheFile) {
  window->show();
  EXPECT_EQ(window->windowTitle(), "ZORVEL Setup");
  child<QWidget>(&*window, "Devices_Frame");  // the serial devices present, beside the ports
  click("AutoSampler_Box");
  EXPECT_TRUE(child<QWidget>(&*window, "Plate_Frame")->isVisible());
  EXPECT_TRUE(child<QWidget>(&*window, "ASCom_Frame")->isVisible());
  EXPECT_EQ(window->property("heightTwips").toInt(), 5100);
  click("OK");
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text, "You must select a Plate Description File.");

  testing::writeFile(dir + "Tray.TGF", "0 0 0\n10 10 1\n");
  op.chooseNext(dir + "Tray.TGF");
  click("ChooseFile");
  // Shown and opened as spelt on disk.
  EXPECT_EQ(child<QLabel>(&*window, "PlateFile_Label")->text().toStdString(), dir + "Tray.TGF");
  EXPECT_EQ(trayShown, dir + "Tray.TGF");

  click("DilCom1");  // the fluorimeter is on COM1 too
  click("OK");
  EXPECT_EQ(op.messages().back().text,
            "The flourimeter and dilutor station have been assigned to the same COM port!  "
            "Please change.");
  EXPECT_TRUE(window->isVisible());
  click("DilCom4");
  click("Model1");
  click("Printer_Box");
  click("OK");
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(window->result(), QDialog::Accepted);
  Preferences expected{1, 1, 4, 3, 0, true, dir, dir + "Tray.TGF"};
  EXPECT_SAME_BYTES(PreferencesFileText(expected), testing::readFile(state.PreferencesPath));
}

TEST_F(SetupWindowTest, TheBaseDirectoryLabelFollowsTheChosenDrive) {
  window->show();
  auto* drives = child<QComboBox>(&*window, "Drive1");
  const int home = drives->findData(QDir::homePath());
  ASSERT_GE(home, 0);
  drives->activated(home);
  EXPECT_EQ(child<QLabel>(&*window, "BaseDir_Label")->text(), QDir::homePath());
  EXPECT_EQ(state.Prefs.BaseDirectoryPath, QDir::homePath().toStdString());
}

}  // namespace
}  // namespace zorvel
