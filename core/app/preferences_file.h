#pragma once

#include <string>

#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

enum class PreferencesReadResult {
  Ok,
  Missing,    // no file at the path
  Truncated,  // the file ended before a port or flag line
  Refused,    // a line holds what the program cannot use (a port that is no number 1..4, ...)
};

// What the reader has to say beyond its result: why a file was refused (the file, the line,
// what it held and what is expected) and a note for the program log on a file it reads.
struct PreferencesReport {
  std::string refusal;
  std::string note;
};

// Reads ZORVEL.PRF into prefs without asking anything: the model line ("LS-50" exactly selects
// the LS-50, anything else the LS-50B), three ports, the printer and autosampler flags, the
// base directory and, with an autosampler only, the plate description file.
// Ports must be 1 to 4, the flags whole numbers, no value may hold control bytes; any other
// model text selects the LS-50B, with a note.
PreferencesReadResult ReadPreferencesFile(const std::string& path, Preferences& prefs,
                                          PreferencesReport* report = nullptr);

// The preferences file's bytes for the given preferences, each line ended by CR LF.
std::string PreferencesFileText(const Preferences& prefs);

// Sets DataDirectory and MethodsDirectory under BaseDirectoryPath.
void SetDirectoriesFromBase(AppState& state);

// Start-up's reading of the preferences: fills AppState.Prefs and the directories, loads the
// plate description file when an autosampler is attached. A file that ends early shows "Error
// reading preferences file." and ends the program; the result then is false. A refused file
// shows why, leaves the default preferences and PreferencesRefused set, and is false too: the
// caller offers the setup window.
bool ReadPreferences(AppState& state, Operator& op, PreferencesReport& report);

// Loads the tray geometry named by the preferences; a file that cannot be read is reported and
// leaves the tray empty.
bool LoadPlateFile(AppState& state, Operator& op, const std::string& path);

// Writes the preferences file whole: to a temporary file first, renamed over the old one, so a
// crash never leaves half a file. False when it cannot be written.
bool WritePreferencesFile(const std::string& path, const Preferences& prefs);

}  // namespace zorvel
