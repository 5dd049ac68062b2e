#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "core/app/main_view.h"
#include "core/datafiles/data_set_commands.h"
#include "core/datafiles/quality_databases.h"
#include "core/method/main_window_update.h"
#include "core/method/method_editor.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/printer.h"
#include "core/quality/quality_check.h"
#include "core/run/tray_resume.h"
#include "core/state/app_state.h"

namespace zorvel {

struct RunLaunch;

// The rules of the main window: start-up, first activation, the menu states of its no-method
// state, the setup window, cancelling a method, and the ways the program ends.
class MainPresenter {
 public:
  MainPresenter(AppState& state, Operator& op, Clock& clock, Printer& printer, MainView& view);

  // Menu items whose windows exist in this build; the others stay disabled, never faked.
  void setAvailable(MainMenu item, bool available);
  bool available(MainMenu item) const { return available_.count(item) != 0; }
  // Closes the arm and pump ports when the program ends (the autosampler window owns them).
  void setInstrumentPortCloser(std::function<void()> closer) { closePorts_ = std::move(closer); }

  // Runs the start-up; false when the program is to end.
  bool startUp(const std::string& currentDirectory);
  // Every activation of the main window; the first one shows the disclaimer.
  void activated();

  void setupFluorimeter();
  void cancelMethod();
  // "E&xit": logs "Stop Program", ends the print job, closes the ports and the windows.
  void stopProgram();
  // The main window's close box: the same without the log entry.
  void closeBox();

  // The state with no method loaded: labels "None open.", menus enabled, controls reset.
  void showNoMethodState();

  // "&New Method File", "&Edit Method File", "&Append Data File".
  void newMethodFile();
  void editMethodFile();
  void appendDataFile();
  // The control and blank checks: their databases are loaded when a set is reopened and
  // started afresh when one is created, and the run files its controls and blanks through them.
  void setQualityChecks(QualityCheck& checks, QualityDatabases& databases) {
    checks_ = &checks;
    databases_ = &databases;
  }
  QualityCheck* qualityChecks() const { return checks_; }

  // "&Save As": saves a new method under a name of the operator's choosing, creates the data
  // set and launches the run. "OK": launches the run on the reopened set.
  void save();
  void okButton();
  // The run window has closed: the data-file label reads "Not Loaded" and the menus are
  // enabled again. True when the control database holds an entry, so the trend is shown.
  bool runClosed();
  // Opens the autosampler link when a run by autosampler starts; unset, such a run cannot start.
  void setAutosamplerLinkOpener(std::function<bool()> opener) {
    openAutosampler_ = std::move(opener);
  }

  // The method editor (METHODFORM's fields, checks and colour window).
  MethodEditor& methodEditor() { return methodEditor_; }

  // The reopened set beside the method editor's state.
  struct EditorState {
    // The last sample number of a reopened set and whether it holds samples.
    int lastSampleNumber = 0;
    bool samplesPresent = false;
    // Its last tray run did not complete and the operator chose to carry it on.
    std::optional<TrayResume> resume;
  };
  const EditorState& editor() const { return editor_; }
  // The autosampler window's starting tube is also the first sample number of the next run.
  void setFirstSampleNumber(int number) { methodEditor_.setFirstSampleNumber(number); }

 private:
  void reopened(const ReopenResult& result);
  void enable(MainMenu item, bool enabled);
  void forgetReopenedSet();
  void endWork();
  void apply(const MainWindowUpdate& update);
  void startRun(const RunLaunch& launch);
  void controlsVisible(bool enabled);
  void showMedians();

  AppState& state_;
  Operator& op_;
  Clock& clock_;
  Printer& printer_;
  MainView& view_;
  std::set<MainMenu> available_;
  std::function<void()> closePorts_;
  NoQualityDatabases noDatabases_;
  QualityDatabases* databases_ = &noDatabases_;
  QualityCheck* checks_ = nullptr;
  std::function<bool()> openAutosampler_;
  EditorState editor_;
  MethodEditor methodEditor_{state_, op_};
};

}  // namespace zorvel
