#pragma once

#include <string>

#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// The common file dialog as the program's callers use it: the filter "Selected Files (*.EXT)|
// *.EXT|All files (*.*)|*.*", the file name "*.EXT", the given initial directory and flags.
// Returns the chosen full path, or the empty text when cancelled. `title` says what is opened
// or saved.
std::string ShowFileDialog(Operator& op, const std::string& initialDirectory,
                           const std::string& extension, FileDialogAction action, int flags,
                           const std::string& title = {});

// The file dialog requests of the program's callers; the two of a Save As are titled by what
// they save ("Save Method As", "New Data Set").
namespace file_dialogs {
inline constexpr int kFileMustExist = 4096;
inline constexpr int kAskBeforeOverwrite = 2;
std::string OpenMethod(Operator& op, const AppState& state);
std::string AppendDataFile(Operator& op, const AppState& state);
std::string SaveDataSet(Operator& op, const AppState& state);
std::string SaveMethod(Operator& op, const AppState& state);
std::string ChoosePlateFile(Operator& op, const AppState& state);
}  // namespace file_dialogs

}  // namespace zorvel
