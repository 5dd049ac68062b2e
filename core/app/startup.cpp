#include "core/app/startup.h"

#include "core/app/directory_structure.h"
#include "core/app/preferences_file.h"
#include "core/autosampler/tray_geometry_file.h"
#include "core/files/log_line.h"
#include "core/files/paths.h"
#include "core/method/method_defaults.h"

namespace zorvel {

std::string WithTrailingSlash(const std::string& directory) {
  if (!directory.empty() && directory.back() == '/') return directory;
  return directory + "/";
}

bool EnsureProgramLog(const AppState& state) {
  return EnsureLogFile(state.LogPath, "ZORVEL Log File");
}

namespace {

// The preferences: read them, or when missing say so and let the operator fill the setup
// window. False when the program is to end.
bool LoadOrAskPreferences(AppState& state, Operator& op, MainView& view,
                          PreferencesReport& report) {
  state.PreferencesPath = state.StartDirectory + "ZORVEL.PRF";
  if (!FileExists(state.PreferencesPath)) {
    op.message("An LS50(B) preferences file was not found.  Please complete form.",
               "ZORVEL NOTIFICATION", BoxIcon::Exclamation);
    return view.runSetupWindow();
  }
  if (ReadPreferences(state, op, report)) return true;
  if (!state.PreferencesRefused) return false;
  // A refused file is set up again as on a first run; without a setup window the program ends.
  if (view.runSetupWindow()) return true;
  op.endProgram(kPreferencesRefusedExit);
  return false;
}

}  // namespace

bool StartUp(AppState& state, const std::string& currentDirectory, Operator& op, Clock& clock,
             MainView& view) {
  state.FirstActivation = true;
  state.StartDirectory = WithTrailingSlash(currentDirectory);
  state.PreferencesPath = state.StartDirectory;
  state.LogPath = state.StartDirectory;
  if (!CheckDirectoryStructure(state, op)) {
    op.endProgram(0);
    return false;
  }
  PreferencesReport report;
  if (!LoadOrAskPreferences(state, op, view, report)) return false;

  state.LogPath = state.StartDirectory + "ZORVEL.LOG";
  if (!EnsureProgramLog(state)) {
    op.message("The program log " + state.LogPath + " cannot be written.", "ZORVEL ERROR",
               BoxIcon::Exclamation);
  }
  // The log exists only now; the tray was read with the preferences.
  if (!report.note.empty()) WriteLogEntry(state.LogPath, clock, report.note);
  if (state.Prefs.AutoSampler) {
    const std::string note = TrayReachNote(state.Tray, state.Prefs.TrayGeometryFile);
    if (!note.empty()) WriteLogEntry(state.LogPath, clock, note);
  }
  view.setMethodFileLabel("None open.");
  view.setDataFileLabel("None open");
  view.setTrayFile(state.Prefs.TrayGeometryFile, state.Prefs.AutoSampler);
  SetAutosamplerDefaults(state);

  state.Flags = RunFlags{};
  state.DatabaseHeaderLines = 3;
  FillColourTables(state);
  WriteLogEntry(state.LogPath, clock, "Boot up");
  return true;
}

}  // namespace zorvel
