#pragma once

#include <string>

#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// False for an empty path; otherwise true exactly when the file can be opened for reading.
bool FileExists(const std::string& path);

// Appends one line to the program log: text TAB 03-07-2000 TAB 14:05:09 CR LF, creating the
// log when it is missing. Returns false when the log cannot be written.
bool WriteLogEntry(const AppState& state, Clock& clock, const std::string& text);

// The common file dialog as the program's callers use it: the filter "Selected Files (*.EXT)|
// *.EXT|All files (*.*)|*.*", the file name "*.EXT", the given initial directory and flags.
// Returns the chosen full path, or the empty text when cancelled.
std::string ShowFileDialog(Operator& op, const std::string& initialDirectory,
                           const std::string& extension, FileDialogAction action, int flags);

// The file dialog requests of the program's four callers.
namespace file_dialogs {
inline constexpr int kFileMustExist = 4096;
inline constexpr int kAskBeforeOverwrite = 2;
std::string OpenMethod(Operator& op, const AppState& state);
std::string AppendDataFile(Operator& op, const AppState& state);
std::string SaveDataSet(Operator& op, const AppState& state);
std::string ChoosePlateFile(Operator& op, const AppState& state);
}  // namespace file_dialogs

// Joins a directory and a name with exactly one "/" between them.
std::string JoinPath(const std::string& directory, const std::string& name);

}  // namespace zorvel
