#pragma once

#include <string>

#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

enum class PreferencesReadResult {
  Ok,
  Missing,    // no file at the path
  Truncated,  // the file ended before a port or flag line
};

// Reads ZORVEL.PRF into prefs without asking anything: the model line ("LS-50" exactly selects
// the LS-50, anything else the LS-50B), three ports, the printer and autosampler flags, the
// base directory and, with an autosampler only, the plate description file.
PreferencesReadResult ReadPreferencesFile(const std::string& path, Preferences& prefs);

// The preferences file's bytes for the given preferences, each line ended by CR LF.
std::string PreferencesFileText(const Preferences& prefs);

// Sets DataDirectory and MethodsDirectory under BaseDirectoryPath.
void SetDirectoriesFromBase(AppState& state);

// Start-up's reading of the preferences: fills AppState.Prefs and the directories, loads the
// plate description file when an autosampler is attached. A file that ends early shows "Error
// reading preferences file." and ends the program; the result then is false.
bool ReadPreferences(AppState& state, Operator& op);

// Loads the tray geometry named by the preferences; a file that cannot be read is reported and
// leaves the tray empty.
bool LoadPlateFile(AppState& state, Operator& op, const std::string& path);

// Writes the preferences file whole: to a temporary file first, renamed over the old one, so a
// crash never leaves half a file. False when it cannot be written.
bool WritePreferencesFile(const std::string& path, const Preferences& prefs);

}  // namespace zorvel
