#include "core/app/main_presenter.h"

#include <filesystem>
#include <system_error>

#include "core/app/file_helpers.h"
#include "core/app/startup.h"

namespace zorvel {

MainPresenter::MainPresenter(AppState& state, Operator& op, Clock& clock, Printer& printer,
                             MainView& view)
    : state_(state), op_(op), clock_(clock), printer_(printer), view_(view) {
  for (MainMenu item : {MainMenu::Exit, MainMenu::SetupFluorimeter, MainMenu::About})
    available_.insert(item);
}

void MainPresenter::setAvailable(MainMenu item, bool isAvailable) {
  if (isAvailable) {
    available_.insert(item);
  } else {
    available_.erase(item);
  }
}

void MainPresenter::enable(MainMenu item, bool enabled) {
  view_.setMenuEnabled(item, enabled && available(item));
}

bool MainPresenter::startUp(const std::string& currentDirectory) {
  for (MainMenu item :
       {MainMenu::NewMethodFile, MainMenu::EditMethodFile, MainMenu::AppendDataFile, MainMenu::Exit,
        MainMenu::RunWatercell, MainMenu::IntensityCheck, MainMenu::SetupFluorimeter,
        MainMenu::ShowExistingControls, MainMenu::QXMods, MainMenu::About})
    enable(item, item != MainMenu::ShowExistingControls);
  if (!StartUp(state_, currentDirectory, op_, clock_, view_)) return false;
  view_.setMethodControlsEnabled(false);
  return true;
}

void MainPresenter::activated() {
  if (state_.FirstActivation) {
    state_.AppVersion = {ZORVEL_VERSION_MAJOR, ZORVEL_VERSION_MINOR, ZORVEL_VERSION_PATCH};
    view_.showDisclaimer();
    state_.FirstActivation = false;
  }
}

void MainPresenter::showNoMethodState() {
  view_.setMethodControlsEnabled(false);
  view_.setMethodFileLabel("None open.");
  view_.setDataFileLabel("None open.");
  for (MainMenu item :
       {MainMenu::NewMethodFile, MainMenu::EditMethodFile, MainMenu::AppendDataFile,
        MainMenu::RunWatercell, MainMenu::SetupFluorimeter, MainMenu::IntensityCheck})
    enable(item, true);
  view_.setTrayFile(state_.Prefs.TrayGeometryFile, false);
  enable(MainMenu::ShowExistingControls, false);
}

void MainPresenter::setupFluorimeter() {
  view_.setCurrentFilesVisible(false);
  showNoMethodState();
  if (!view_.runSetupWindow()) return;
  view_.setCurrentFilesVisible(true);
}

void MainPresenter::cancelMethod() {
  showNoMethodState();
}

void MainPresenter::endWork() {
  if (state_.Method.PrintResults) printer_.endDocument();
  if (closePorts_) closePorts_();
  view_.closeAllWindows();
}

void MainPresenter::stopProgram() {
  WriteLogEntry(state_, clock_, "Stop Program");
  endWork();
  std::error_code ec;
  std::filesystem::current_path(state_.BaseDirectoryPath, ec);
  op_.endProgram(0);
}

void MainPresenter::closeBox() {
  endWork();
  op_.endProgram(0);
}

}  // namespace zorvel
