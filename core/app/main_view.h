#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/run/run_controller.h"

namespace zorvel {

// Menu commands of the main window.
enum class MainMenu {
  NewMethodFile,
  EditMethodFile,
  AppendDataFile,
  Exit,
  RunWatercell,
  IntensityCheck,
  SetupFluorimeter,
  ShowExistingControls,
  QXMods,
  About,
};

// What the main window shows; the Qt window implements it, tests record it.
class MainView {
 public:
  virtual ~MainView() = default;

  virtual void setMethodFileLabel(const std::string& text) = 0;
  virtual void setDataFileLabel(const std::string& text) = 0;
  // The tray-file label and its caption "Autosampler Geometry File:".
  virtual void setTrayFile(const std::string& path, bool visible) = 0;
  virtual void setMenuEnabled(MainMenu item, bool enabled) = 0;
  virtual void setCurrentFilesVisible(bool visible) = 0;
  // Enables or disables every method control (the method editor's frames, boxes and buttons).
  virtual void setMethodControlsEnabled(bool enabled) = 0;
  // The disclaimer, modal and centred on the screen.
  virtual void showDisclaimer() = 0;
  // Opens the setup window modally; false when it ended the program (its "Exit" on first run).
  virtual bool runSetupWindow() = 0;
  // Unloads every window of the program.
  virtual void closeAllWindows() = 0;
  // The two ways into a run: "&Save As" (a new data set) and "OK" (the set reopened).
  virtual void setLaunchButtons(bool saveEnabled, bool okEnabled) = 0;
  // Opens the run window for a launched run; it keeps the program waiting until it closes.
  virtual void openRunWindow(const RunSetup& setup) = 0;
  // Each colour's control median ("0.0"; empty when not known), under the method's pairs.
  virtual void showMedians(const std::vector<std::string>& medians) = 0;
  // Slow file work (reopening a long set): `work` runs away from the window thread while the
  // window shows it is busy and takes no commands, then `done` runs on the window thread. A
  // view without a window thread runs both at once.
  virtual void runBusy(std::function<void()> work, std::function<void()> done) {
    work();
    done();
  }
};

}  // namespace zorvel
