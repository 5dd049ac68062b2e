#include "core/app/preferences_file.h"

#include "core/app/directory_structure.h"
#include "core/autosampler/tray_geometry_file.h"
#include "core/files/file_output.h"
#include "core/files/key_value_reader.h"
#include "core/files/paths.h"

namespace zorvel {

PreferencesReadResult ReadPreferencesFile(const std::string& path, Preferences& prefs) {
  KeyValueReader in;
  if (!FileExists(path) || !in.open(path)) return PreferencesReadResult::Missing;
  prefs.Fluorimeter = in.ReadTextValue() == "LS-50" ? 1 : 2;
  std::int16_t printer = 0;
  std::int16_t autosampler = 0;
  const bool complete = in.ReadIntValue(prefs.FlComPort) && in.ReadIntValue(prefs.DilComPort) &&
                        in.ReadIntValue(prefs.AutoSampComPort) && in.ReadIntValue(printer) &&
                        in.ReadIntValue(autosampler);
  if (!complete) return PreferencesReadResult::Truncated;
  prefs.Printer = printer != 0 ? -1 : 0;
  prefs.AutoSampler = autosampler != 0;
  prefs.BaseDirectoryPath = in.ReadTextValue();
  if (prefs.AutoSampler) prefs.TrayGeometryFile = in.ReadTextValue();
  in.close();
  return PreferencesReadResult::Ok;
}

std::string PreferencesFileText(const Preferences& prefs) {
  const auto line = [](const std::string& key, const std::string& value) {
    return key + "?=" + value + "\r\n";
  };
  std::string text;
  text += line("Fluorimeter", prefs.Fluorimeter == 1 ? "LS-50" : "LS-50B");
  text += line("FlComPort", std::to_string(prefs.FlComPort));
  text += line("DilComPort", std::to_string(prefs.DilComPort));
  text += line("AutoSampComPort", std::to_string(prefs.AutoSampComPort));
  text += line("Printer", std::to_string(prefs.Printer));
  text += line("AutoSampler", prefs.AutoSampler ? "-1" : "0");
  text += line("BaseDirectoryPath", prefs.BaseDirectoryPath);
  if (prefs.AutoSampler) text += line("TrayGeometryFile", prefs.TrayGeometryFile);
  return text;
}

void SetDirectoriesFromBase(AppState& state) {
  state.BaseDirectoryPath = state.Prefs.BaseDirectoryPath;
  SetSubdirectoryPaths(state, FindSubdirectories(state.BaseDirectoryPath));
}

bool LoadPlateFile(AppState& state, Operator& op, const std::string& path) {
  const TrayLoadResult loaded = LoadTrayGeometry(path, state.Tray);
  if (loaded) return true;
  op.message(loaded.message, "ZORVEL ERROR", BoxIcon::Exclamation);
  return false;
}

bool ReadPreferences(AppState& state, Operator& op) {
  const auto result = ReadPreferencesFile(state.PreferencesPath, state.Prefs);
  if (result == PreferencesReadResult::Missing) return true;
  if (result == PreferencesReadResult::Truncated) {
    op.message("Error reading preferences file.");
    op.endProgram(1);
    return false;
  }
  SetDirectoriesFromBase(state);
  if (state.Prefs.AutoSampler) LoadPlateFile(state, op, state.Prefs.TrayGeometryFile);
  return true;
}

bool WritePreferencesFile(const std::string& path, const Preferences& prefs) {
  return WriteWholeFile(path, PreferencesFileText(prefs));
}

}  // namespace zorvel
