#pragma once

#include <functional>
#include <string>

#include "core/app/setup_view.h"
#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// The rules of the setup window: its controls change the preferences in memory at once, "OK"
// checks them and writes ZORVEL.PRF, "Exit" on first run ends the program.
class SetupPresenter {
 public:
  // trayFileShown tells the main window which plate description file to show.
  SetupPresenter(AppState& state, Operator& op, SetupView& view,
                 std::function<void(const std::string&)> trayFileShown = {});

  void opened();
  void modelChosen(int index);
  void fluorimeterPortChosen(int index);
  void dilutorPortChosen(int index);
  void autosamplerPortChosen(int index);
  void printerToggled(bool checked);
  void autosamplerToggled(bool checked);
  void driveChosen(const std::string& path);
  void directoryChosen(const std::string& path);
  void setFolder();
  void createFolder();
  void chooseFile();
  void ok();
  void cancel();

  bool firstRun() const { return firstRun_; }
  // True once "Exit" was pressed on first run: the program is to end.
  bool endRequested() const { return endRequested_; }

  static constexpr int kHeightWithAutosamplerTwips = 5100;
  static constexpr int kHeightWithoutAutosamplerTwips = 3800;
  static constexpr const char* kNoPlateFile = "None Selected";

 private:
  bool portsClash();
  void baseDirectoryChanged(const std::string& path);

  AppState& state_;
  Operator& op_;
  SetupView& view_;
  std::function<void(const std::string&)> trayFileShown_;
  bool firstRun_ = false;
  bool endRequested_ = false;
  std::string plateLabel_ = kNoPlateFile;
};

}  // namespace zorvel
