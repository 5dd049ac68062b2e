#include "core/app/main_presenter.h"

#include <filesystem>
#include <system_error>

#include "core/app/startup.h"
#include "core/datafiles/data_set_commands.h"
#include "core/datafiles/method_summary.h"
#include "core/files/log_line.h"
#include "core/method/method_commands.h"
#include "core/method/method_file.h"
#include "core/platform/page_printer.h"
#include "core/run/run_launch.h"
#include "core/state/file_dialogs.h"

namespace zorvel {

MainPresenter::MainPresenter(AppState& state, Operator& op, Clock& clock, Printer& printer,
                             MainView& view)
    : state_(state), op_(op), clock_(clock), printer_(printer), view_(view) {
  for (MainMenu item : {MainMenu::NewMethodFile, MainMenu::EditMethodFile, MainMenu::AppendDataFile,
                        MainMenu::Exit, MainMenu::SetupFluorimeter, MainMenu::About})
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

// A reopened set's numbers belong to it alone: once the method is cancelled or another is
// loaded, a new set starts again at 1.
void MainPresenter::forgetReopenedSet() {
  editor_.FirstSampleNumber = 1;
  editor_.lastSampleNumber = 0;
  editor_.samplesPresent = false;
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

// The loaded method, laid out as its printed summary.
std::string MainPresenter::methodSummaryText() const {
  PagePrinter page;
  PrintMethodSummary(state_, page, editor_.NewDataSet, clock_.now());
  return page.currentText();
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
  if (update.newDataSet) editor_.NewDataSet = *update.newDataSet;
  if (update.coloursDeclared) editor_.ColoursDeclared = *update.coloursDeclared;
  if (update.colourBackupPending) editor_.colourBackupPending = true;
  if (update.firstSampleNumber) editor_.FirstSampleNumber = *update.firstSampleNumber;
  if (update.showMethod) {
    view_.setMethodControlsEnabled(true);
    view_.setLaunchButtons(true, false);
    view_.setTrayFile(state_.Prefs.TrayGeometryFile, state_.Method.DeliveryMethod == 2);
    view_.showMethodSettings(methodSummaryText());
  }
}

void MainPresenter::newMethodFile() {
  apply(NewMethodFile(state_, op_).window);
}

void MainPresenter::editMethodFile() {
  const MethodCommandResult result = EditMethodFile(state_, op_);
  if (result.methodLoaded) forgetReopenedSet();
  apply(result.window);
}

void MainPresenter::appendDataFile() {
  const ReopenResult result = AppendDataFile(state_, op_, *databases_);
  for (const std::string& entry : result.logEntries) WriteLogEntry(state_.LogPath, clock_, entry);
  if (!result.ok) return;
  editor_.lastSampleNumber = result.lastSampleNumber;
  editor_.samplesPresent = result.samplesPresent;
  editor_.FirstSampleNumber = result.nextSampleNumber;
  apply(result.window);
  view_.setLaunchButtons(true, true);
  showMedians();
  enable(MainMenu::ShowExistingControls, checks_ != nullptr && checks_->ControlCount() > 0);
}

// Saving a new method: the Save As dialog on the methods folder; the method is written under
// the chosen name and becomes the current method file. (The whole-method checks that come
// before it belong to the method editor.)
bool MainPresenter::saveNewMethod() {
  const std::string path =
      ShowFileDialog(op_, state_.MethodsDirectory, "MTH", FileDialogAction::SaveAs,
                     file_dialogs::kAskBeforeOverwrite);
  if (path.empty()) return false;
  if (!WriteMethodFile(state_, path)) {
    op_.message("The method file " + path + " could not be written.", "ZORVEL ERROR",
                BoxIcon::Exclamation);
    return false;
  }
  state_.DataSet.MethodFilePath = path;
  view_.setMethodFileLabel(UpperCasedForDisplay(path));
  return true;
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
  if (editor_.NewDataSet && !saveNewMethod()) return;
  const int first = editor_.FirstSampleNumber < 0 ? 1 : editor_.FirstSampleNumber;
  startRun(LaunchNewDataSet(
      LaunchServices{state_, op_, clock_, printer_, *databases_, *checks_, openAutosampler_},
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
  view_.setMethodControlsEnabled(true);
  const int first = editor_.FirstSampleNumber < 0 ? 1 : editor_.FirstSampleNumber;
  startRun(LaunchAppend(
      LaunchServices{state_, op_, clock_, printer_, *databases_, *checks_, openAutosampler_},
      editor_.NewDataSet, first, editor_.lastSampleNumber));
}

}  // namespace zorvel
