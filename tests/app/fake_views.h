#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/app/main_view.h"
#include "core/app/setup_view.h"

namespace zorvel::testing {

// Records what the presenters show on the main window.
class FakeMainView : public MainView {
 public:
  void setMethodFileLabel(const std::string& text) override { methodLabel = text; }
  void setDataFileLabel(const std::string& text) override { dataLabel = text; }
  void setTrayFile(const std::string& path, bool visible) override {
    trayFile = path;
    trayVisible = visible;
  }
  void setMenuEnabled(MainMenu item, bool enabled) override { menus[item] = enabled; }
  void setCurrentFilesVisible(bool visible) override { currentFilesVisible = visible; }
  void setMethodControlsEnabled(bool enabled) override { controlsEnabled = enabled; }
  void showDisclaimer() override { ++disclaimers; }
  bool runSetupWindow() override {
    ++setupRuns;
    return onSetup ? onSetup() : true;
  }
  void closeAllWindows() override { closed = true; }
  void setLaunchButtons(bool save, bool ok) override {
    saveEnabled = save;
    okEnabled = ok;
  }
  void openRunWindow(const RunSetup& setup) override { runs.push_back(setup); }
  void showMedians(const std::vector<std::string>& m) override { medians = m; }
  std::vector<std::string> medians;
  bool saveEnabled = false, okEnabled = false;
  std::vector<RunSetup> runs;

  std::string methodLabel, dataLabel, trayFile;
  bool trayVisible = false;
  std::map<MainMenu, bool> menus;
  bool currentFilesVisible = true;
  bool controlsEnabled = true;
  int disclaimers = 0, setupRuns = 0;
  bool closed = false;
  std::function<bool()> onSetup;
};

// Records what the setup presenter shows.
class FakeSetupView : public SetupView {
 public:
  void setCancelCaption(const std::string& caption) override { cancelCaption = caption; }
  void showModel(int m) override { model = m; }
  void showPorts(int fl, int dil, int as) override { ports = {fl, dil, as}; }
  void showPrinter(bool on) override { printer = on; }
  void showAutosampler(bool on) override { autosampler = on; }
  void setAutosamplerFramesVisible(bool visible, int twips) override {
    framesVisible = visible;
    heightTwips = twips;
  }
  void setBaseDirectoryLabel(const std::string& path) override { baseLabel = path; }
  void setPlateFileLabel(const std::string& path) override { plateLabel = path; }
  std::string directoryListPath() const override { return listPath; }
  void setDirectoryListPath(const std::string& path) override { listPath = path; }
  void refreshDirectoryList() override { ++refreshes; }
  void close() override { closed = true; }

  std::string cancelCaption, baseLabel, plateLabel, listPath;
  int model = 0;
  std::vector<int> ports;
  bool printer = false, autosampler = false, framesVisible = false, closed = false;
  int heightTwips = 0, refreshes = 0;
};

}  // namespace zorvel::testing
