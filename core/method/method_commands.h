#pragma once

#include <string>

#include "core/method/main_window_update.h"
#include "core/platform/operator.h"
#include "core/state/app_state.h"

// The main window's method menu commands. The window calls them and applies the returned
// update; they change AppState (Method, LineEnding, DataSet.MethodFilePath) themselves.
namespace zorvel {

inline constexpr const char* kTemplateMethodName = "default.mth";

struct MethodCommandResult {
  bool methodLoaded = false;  // a method is now current and shown
  std::string methodPath;     // the file read; empty for the built-in defaults
  MainWindowUpdate window;
};

// "&New Method File": reads the template default.mth from MethodsDirectory when it exists,
// otherwise sets the built-in defaults (SetMethodDefaults). The new method has no file yet:
// MethodFilePath becomes empty and the method-file label reads "None open.". NewDataSet is set,
// the colours are "Not Set", the colour window takes a fresh backup, the starting number is 1.
// A template that fails to read shows the method reader's box and leaves no method loaded.
MethodCommandResult NewMethodFile(AppState& state, Operator& op);

// "&Edit Method File": the Open dialog on MethodsDirectory ("MTH", file must exist). Cancelling
// does nothing. A path that does not exist shows "File does not exist."; otherwise the method
// is read (its failure box on error). On success MethodFilePath is the path as chosen, the
// method-file label shows it lower-cased, NewDataSet is cleared and LineEnding follows FileType.
MethodCommandResult EditMethodFile(AppState& state, Operator& op);

// Lower-cases a path for display (ASCII letters only; files are opened by the path as chosen).
std::string LowerCasedForDisplay(std::string path);
std::string UpperCasedForDisplay(std::string path);

}  // namespace zorvel
