#include "core/app/main_presenter.h"

#include <filesystem>
#include <memory>
#include <system_error>

#include "core/app/startup.h"
#include "core/datafiles/data_set_commands.h"
#include "core/files/log_line.h"
#include "core/method/method_commands.h"
#include "core/run/method_run_check.h"
#include "core/run/run_launch.h"
#include "core/state/file_dialogs.h"

namespace zorvel {

MainPresenter::MainPresenter(AppState& state, Operator& op, Clock& clock, Printer& printer,
                             MainView& view)
    : state_(state), op_(op), clock_(clock), printer_(printer), view_(view) {
  for (MainMenu item : {MainMenu::NewMethodFile, MainMenu::EditMethodFile, MainMenu::AppendDataFile,
                        MainMenu::Exit, MainMenu::SetupFluorimeter, MainMenu::About})
    available_.insert(item);
  // "&Save As" refuses what the run would refuse, by the same check.
  methodEditor_.setRunCheck([this](const MethodSettings& method) {
    return MethodRunProblems(method, FluorimeterModelFor(state_.Prefs.Fluorimeter),
                             methodEditor_.state().FirstSampleNumber, state_.Tray.TubeCount);
  });
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
  controlsVisible(false);
  return true;
}

void MainPresenter::activated() {
  if (state_.FirstActivation) {
    state_.AppVersion = {ZORVEL_VERSION_MAJOR, ZORVEL_VERSION_MINOR, ZORVEL_VERSION_PATCH};
    view_.showDisclaimer();
    state_.FirstActivation = false;
  }
}

void MainPresenter::controlsVisible(bool enabled) {
  view_.setMethodControlsEnabled(enabled);
  methodEditor_.ControlsVisible(enabled);
}

void MainPresenter::showNoMethodState() {
  controlsVisible(false);
  view_.setLaunchButtons(false, false);
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
  forgetReopenedSet();
}

// A reopened set's numbers and its control medians belong to it alone: once the method is
// cancelled or another is loaded, a new set starts again at 1 and no medians are shown.
void MainPresenter::forgetReopenedSet() {
  methodEditor_.setFirstSampleNumber(1);
  editor_.lastSampleNumber = 0;
  editor_.samplesPresent = false;
  editor_.resume.reset();
  view_.showMedians({});
}

void MainPresenter::endWork() {
  if (state_.Method.PrintResults) printer_.endDocument();
  if (closePorts_) closePorts_();
  view_.closeAllWindows();
}

void MainPresenter::stopProgram() {
  WriteLogEntry(state_.LogPath, clock_, "Stop Program");
  endWork();
  std::error_code ec;
  std::filesystem::current_path(state_.BaseDirectoryPath, ec);
  op_.endProgram(0);
}

void MainPresenter::closeBox() {
  endWork();
  op_.endProgram(0);
}

void MainPresenter::apply(const MainWindowUpdate& update) {
  if (update.methodFileLabel) view_.setMethodFileLabel(*update.methodFileLabel);
  if (update.dataFileLabel) view_.setDataFileLabel(*update.dataFileLabel);
  if (update.fileAndInstrumentMenusEnabled) {
    for (MainMenu item :
         {MainMenu::NewMethodFile, MainMenu::EditMethodFile, MainMenu::AppendDataFile,
          MainMenu::RunWatercell, MainMenu::IntensityCheck, MainMenu::SetupFluorimeter})
      enable(item, *update.fileAndInstrumentMenusEnabled);
  }
  MethodEditorState& editor = methodEditor_.state();
  if (update.newDataSet) editor.NewDataSet = *update.newDataSet;
  if (update.coloursDeclared) editor.ColoursDeclared = *update.coloursDeclared;
  if (update.colourBackupPending) methodEditor_.colours().window().BackupPending = true;
  if (update.firstSampleNumber) methodEditor_.setFirstSampleNumber(*update.firstSampleNumber);
  if (update.showMethod) {
    controlsVisible(true);
    view_.setLaunchButtons(true, false);
    view_.setTrayFile(state_.Prefs.TrayGeometryFile,
                      state_.Method.DeliveryMethod == Delivery::Autosampler);
    methodEditor_.showMethod();
  }
}

void MainPresenter::newMethodFile() {
  const MethodCommandResult result = NewMethodFile(state_, op_);
  if (result.methodLoaded) {
    forgetReopenedSet();
    methodEditor_.methodLoaded(MethodLoad::New);
  }
  apply(result.window);
}

void MainPresenter::editMethodFile() {
  const MethodCommandResult result = EditMethodFile(state_, op_);
  if (result.methodLoaded) {
    forgetReopenedSet();
    methodEditor_.methodLoaded(MethodLoad::Edit);
  }
  apply(result.window);
}

void MainPresenter::appendDataFile() {
  const std::string path = ChooseDataFileToAppend(state_, op_);
  if (path.empty()) return;
  // A long set takes a while to reopen: the window stays live and shows it is busy meanwhile.
  auto result = std::make_shared<ReopenResult>();
  view_.runBusy([this, path, result] { *result = ReopenForAppend(state_, op_, path, *databases_); },
                [this, result] { reopened(*result); });
}

void MainPresenter::reopened(const ReopenResult& result) {
  for (const std::string& entry : result.logEntries) WriteLogEntry(state_.LogPath, clock_, entry);
  if (!result.ok) return;
  editor_.lastSampleNumber = result.lastSampleNumber;
  editor_.samplesPresent = result.samplesPresent;
  methodEditor_.methodLoaded(MethodLoad::Append);
  // A tray run of the set that did not complete is offered for carrying on, once.
  editor_.resume = OfferTrayResume(state_, op_);
  apply(result.window);
  view_.setLaunchButtons(true, true);
  showMedians();
  enable(MainMenu::ShowExistingControls, checks_ != nullptr && checks_->ControlCount() > 0);
}

void MainPresenter::startRun(const RunLaunch& launch) {
  apply(launch.window);
  if (launch.backToNoMethod) {
    showNoMethodState();
    view_.setMethodFileLabel("Not Loaded");
    view_.setDataFileLabel("Not Loaded");
    return;
  }
  if (launch.startRun) view_.openRunWindow(launch.setup);
}

void MainPresenter::save() {
  if (checks_ == nullptr) return;
  if (!methodEditor_.saveMethodStep()) return;
  const int number = methodEditor_.state().FirstSampleNumber;
  const int first = number < 0 ? 1 : number;
  startRun(LaunchNewDataSet(
      LaunchServices{state_, op_, clock_, printer_, *databases_, *checks_, openAutosampler_,
                     [this](const MainWindowUpdate& set) { apply(set); }},
      first));
}

// The control medians of the current set, once the databases know them.
void MainPresenter::showMedians() {
  if (checks_ == nullptr) return;
  view_.showMedians(checks_->medianRow(state_.Method.NoColors));
}

bool MainPresenter::runClosed() {
  showMedians();
  view_.setDataFileLabel("Not Loaded");
  for (MainMenu item :
       {MainMenu::NewMethodFile, MainMenu::EditMethodFile, MainMenu::AppendDataFile,
        MainMenu::RunWatercell, MainMenu::IntensityCheck, MainMenu::SetupFluorimeter})
    enable(item, true);
  const bool controls = checks_ != nullptr && checks_->ControlCount() > 0;
  enable(MainMenu::ShowExistingControls, controls);
  return controls;
}

void MainPresenter::okButton() {
  if (checks_ == nullptr) return;
  controlsVisible(true);
  const MethodEditorState& editor = methodEditor_.state();
  const int first = editor.FirstSampleNumber < 0 ? 1 : editor.FirstSampleNumber;
  startRun(LaunchAppend(
      LaunchServices{state_, op_, clock_, printer_, *databases_, *checks_, openAutosampler_, {}},
      editor.NewDataSet, first, editor_.lastSampleNumber, editor_.resume));
  editor_.resume.reset();
}

}  // namespace zorvel
