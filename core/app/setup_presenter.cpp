#include "core/app/setup_presenter.h"

#include <filesystem>
#include <system_error>

#include "core/app/directory_structure.h"
#include "core/app/preferences_file.h"
#include "core/files/paths.h"
#include "core/state/file_dialogs.h"

namespace zorvel {

namespace fs = std::filesystem;

SetupPresenter::SetupPresenter(AppState& state, Operator& op, SetupView& view,
                               std::function<void(const std::string&)> trayFileShown)
    : state_(state), op_(op), view_(view), trayFileShown_(std::move(trayFileShown)) {}

void SetupPresenter::opened() {
  firstRun_ = !FileExists(state_.PreferencesPath) || state_.PreferencesRefused;
  Preferences& prefs = state_.Prefs;
  if (firstRun_) {
    view_.setCancelCaption("Exit");
    const std::string base = prefs.BaseDirectoryPath;
    prefs = Preferences{};
    prefs.BaseDirectoryPath = base;
  } else {
    view_.setCancelCaption("Cancel");
  }
  view_.showModel(prefs.Fluorimeter);
  view_.showPorts(prefs.FlComPort, prefs.DilComPort, prefs.AutoSampComPort);
  view_.showPrinter(prefs.Printer != 0);
  view_.showAutosampler(prefs.AutoSampler);
  autosamplerToggled(prefs.AutoSampler);
  if (prefs.AutoSampler && !prefs.TrayGeometryFile.empty()) {
    plateLabel_ = prefs.TrayGeometryFile;
  }
  view_.setPlateFileLabel(plateLabel_);
  // On first run the base directory is whatever the directory list shows (it opens on the
  // start-up directory); afterwards the list opens on the base directory of the preferences.
  if (firstRun_) {
    baseDirectoryChanged(view_.directoryListPath());
  } else {
    view_.setBaseDirectoryLabel(view_.directoryListPath());
  }
}

void SetupPresenter::modelChosen(int index) {
  state_.Prefs.Fluorimeter = static_cast<std::int16_t>(index);
}
void SetupPresenter::fluorimeterPortChosen(int index) {
  state_.Prefs.FlComPort = static_cast<std::int16_t>(index);
}
void SetupPresenter::dilutorPortChosen(int index) {
  state_.Prefs.DilComPort = static_cast<std::int16_t>(index);
}
void SetupPresenter::autosamplerPortChosen(int index) {
  state_.Prefs.AutoSampComPort = static_cast<std::int16_t>(index);
}
void SetupPresenter::printerToggled(bool checked) {
  state_.Prefs.Printer = checked ? 1 : 0;
}

void SetupPresenter::autosamplerToggled(bool checked) {
  state_.Prefs.AutoSampler = checked;
  view_.setAutosamplerFramesVisible(
      checked, checked ? kHeightWithAutosamplerTwips : kHeightWithoutAutosamplerTwips);
}

void SetupPresenter::driveChosen(const std::string& path) {
  std::error_code ec;
  if (!fs::is_directory(path, ec)) return;  // a volume that is not ready changes nothing
  view_.setDirectoryListPath(path);
  baseDirectoryChanged(path);
}

void SetupPresenter::directoryChosen(const std::string& path) {
  baseDirectoryChanged(path);
  state_.DataDirectory = path;
}

// Every change of the base directory goes through here, so the label always shows the folder
// "OK" will write.
void SetupPresenter::baseDirectoryChanged(const std::string& path) {
  state_.Prefs.BaseDirectoryPath = path;
  state_.BaseDirectoryPath = path;
  view_.setBaseDirectoryLabel(path);
}

void SetupPresenter::setFolder() {
  state_.BaseDirectoryPath = state_.Prefs.BaseDirectoryPath;
  EnsureDataAndMethods(state_, op_);
  view_.refreshDirectoryList();
}

void SetupPresenter::createFolder() {
  const std::string name = op_.inputBox("Name of the new folder:", "New Folder", "");
  if (name.empty()) return;
  if (name.find('/') != std::string::npos || name == "." || name == "..") {
    op_.message("\"" + name + "\" is not a folder name.", "ZORVEL ERROR", BoxIcon::Exclamation);
    return;
  }
  const std::string path = JoinPath(view_.directoryListPath(), name);
  std::error_code ec;
  fs::create_directory(path, ec);
  if (ec) {
    op_.message("The folder " + path + " could not be created: " + ec.message() + ".",
                "ZORVEL ERROR", BoxIcon::Exclamation);
    return;
  }
  view_.setDirectoryListPath(path);
  directoryChosen(path);
}

void SetupPresenter::chooseFile() {
  const std::string chosen = file_dialogs::ChoosePlateFile(op_, state_);
  if (chosen.empty()) return;
  if (!FileExists(chosen)) {
    op_.message("File does not exist", "ZORVEL ERROR", BoxIcon::Exclamation);
    return;
  }
  if (!LoadPlateFile(state_, op_, chosen)) return;
  plateLabel_ = chosen;
  view_.setPlateFileLabel(chosen);  // as it is spelt on disk
  state_.Prefs.TrayGeometryFile = chosen;
  if (trayFileShown_) trayFileShown_(chosen);
}

bool SetupPresenter::portsClash() {
  const Preferences& p = state_.Prefs;
  std::string clash;
  if (p.FlComPort == p.DilComPort) {
    clash =
        "The flourimeter and dilutor station have been assigned to the same COM port!  "
        "Please change.";
  } else if (p.FlComPort == p.AutoSampComPort) {
    clash =
        "The flourimeter and autosampler have been assigned to the same COM port!  "
        "Please change.";
  } else if (p.DilComPort == p.AutoSampComPort) {
    clash =
        "The dilutor station and autosampler have been assigned to the same COM port!  "
        "Please change.";
  }
  if (clash.empty()) return false;
  op_.message(clash);
  return true;
}

void SetupPresenter::ok() {
  if (state_.Prefs.AutoSampler) {
    if (plateLabel_ == kNoPlateFile) {
      op_.message("You must select a Plate Description File.", "ZORVEL HELP", BoxIcon::Exclamation);
      return;
    }
    if (portsClash()) return;
  }
  if (!WritePreferencesFile(state_.PreferencesPath, state_.Prefs)) {
    op_.message("The preferences file " + state_.PreferencesPath + " could not be written.",
                "ZORVEL ERROR", BoxIcon::Exclamation);
    return;
  }
  state_.PreferencesRefused = false;
  view_.close();
}

void SetupPresenter::cancel() {
  endRequested_ = firstRun_;
  view_.close();
  if (endRequested_) op_.endProgram(0);
}

}  // namespace zorvel
