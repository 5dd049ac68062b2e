#pragma once

#include <functional>
#include <optional>

#include "core/datafiles/quality_databases.h"
#include "core/method/main_window_update.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/printer.h"
#include "core/quality/quality_check.h"
#include "core/run/run_controller.h"
#include "core/state/app_state.h"

// The way from the main window into a run: after "&Save As" has checked and saved the method
// (a new data set), or from the OK button (a reopened set). Both return what the main window
// must do; neither opens a window itself.
namespace zorvel {

struct LaunchServices {
  AppState& state;
  Operator& op;
  Clock& clock;
  Printer& printer;
  QualityDatabases& databases;  // told when the new set is created
  const QualityCheck& checks;   // ControlCount decides whether to offer building databases
  // Autosampler delivery: checks the autosampler settings and opens the arm and pump link;
  // false when the settings are refused. Unset, autosampler delivery cannot start a run.
  std::function<bool()> openAutosamplerLink;
  // Shows the new set in the main window as soon as its files exist, before the questions that
  // follow are asked about it.
  std::function<void(const MainWindowUpdate&)> showCreatedSet;
};

struct RunLaunch {
  // Open the run window with `setup`.
  bool startRun = false;
  // Why no run starts, when none does (for the unattended run's "No run started.").
  std::string notStartedReason;
  RunSetup setup;
  // Autosampler delivery with pures: the tray run reads the pure tubes first.
  bool autosamplerPures = false;
  // "No" at the pure-blank notice: the main window goes back to its no-method state, its
  // method and data-file labels reading "Not Loaded".
  bool backToNoMethod = false;
  // The data-file label and the NewDataSet flag after creating the set, and the method
  // controls enabled again after OK.
  MainWindowUpdate window;
};

// "&Save As" once the method is saved: creates the data set (its file dialog), prints the
// summary, opens the autosampler link, forces Spillover with Synch, settles PuresPending,
// offers to build the databases and tells the operator about the pures.
RunLaunch LaunchNewDataSet(LaunchServices services, int firstSampleNumber);

// OK on a reopened set: the summary, the autosampler link, no database building; numbering
// continues after the last sample on file, read again from the set's files as they are now.
// With `resume` (a tray run of the set left unfinished, its resume answered Yes), the run
// carries that tray run on: its range, references and numbering, from the first tube not done.
RunLaunch LaunchAppend(LaunchServices services, bool newDataSet, int firstSampleNumber,
                       int lastSampleNumber, std::optional<TrayResume> resume = std::nullopt);

// A reopened set whose last tray run did not complete: the operator is asked "The tray run
// started ... Resume at tube 18?" (Yes/No) unless `ask` is false (resuming was asked for
// already). Nothing when there is nothing to resume or the answer is No.
std::optional<TrayResume> OfferTrayResume(const AppState& state, Operator& op, bool ask = true);

// The text of the pure-blank notice for the method's delivery.
std::string PureBlankNotice(const MethodSettings& method);

}  // namespace zorvel
