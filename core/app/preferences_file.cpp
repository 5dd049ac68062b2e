#include "core/app/preferences_file.h"

#include "core/app/directory_structure.h"
#include "core/autosampler/tray_geometry_file.h"
#include "core/files/file_output.h"
#include "core/files/key_value_reader.h"
#include "core/files/paths.h"
#include "core/instruments/fluorimeter_model.h"
#include "core/text/number_format.h"

#include <vector>

namespace zorvel {

namespace {

bool holdsControlBytes(const std::string& text) {
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte < 0x20 && c != '\t') || byte == 0x7f) return true;
  }
  return false;
}

// The lines of the file as read, each with the value text it held.
struct ReadValue {
  int line = 0;
  std::string text;
};

// What the reader expects of each line, in file order.
struct LineRule {
  const char* key;
  const char* expected;
};
constexpr LineRule kRules[] = {
    {"Fluorimeter", "the model, LS-50 or LS-50B"},
    {"FlComPort", "a COM port number from 1 to 4"},
    {"DilComPort", "a COM port number from 1 to 4"},
    {"AutoSampComPort", "a COM port number from 1 to 4"},
    {"Printer", "a whole number, 0 for no printer"},
    {"AutoSampler", "a whole number, 0 for no autosampler"},
    {"BaseDirectoryPath", "a folder's path"},
    {"TrayGeometryFile", "a tray geometry file's path"},
};

bool fits(int index, const std::string& text) {
  if (index == 0 || index >= 6) return !holdsControlBytes(text);
  const auto number = text::parseNumber(text);
  if (!number || !text::toInt16(*number)) return false;
  return index > 3 || (*number >= 1 && *number <= 4);
}

std::string refusal(const std::string& path, int index, const ReadValue& v) {
  const std::string shown = holdsControlBytes(v.text) ? "bytes that are not text" : v.text;
  return "The preferences file " + path + ", line " + std::to_string(v.line) + ": " +
         kRules[index].key + "?=" + shown + " cannot be used; " + kRules[index].expected +
         " is expected.";
}

}  // namespace

PreferencesReadResult ReadPreferencesFile(const std::string& path, Preferences& prefs,
                                          PreferencesReport* report) {
  KeyValueReader in;
  if (!FileExists(path) || !in.open(path)) return PreferencesReadResult::Missing;
  std::vector<ReadValue> read;
  const auto kept = [&] { read.push_back({in.lastLine(), in.lastValueText()}); };
  const std::string model = in.ReadTextValue();
  kept();
  prefs.Fluorimeter = static_cast<std::int16_t>(FluorimeterModelSelectedBy(model).preference);
  std::int16_t printer = 0;
  std::int16_t autosampler = 0;
  for (std::int16_t* value :
       {&prefs.FlComPort, &prefs.DilComPort, &prefs.AutoSampComPort, &printer, &autosampler}) {
    if (!in.ReadIntValue(*value)) return PreferencesReadResult::Truncated;
    kept();
  }
  prefs.Printer = printer != 0 ? -1 : 0;
  prefs.AutoSampler = autosampler != 0;
  prefs.BaseDirectoryPath = in.ReadTextValue();
  kept();
  if (prefs.AutoSampler) {
    prefs.TrayGeometryFile = in.ReadTextValue();
    kept();
  }
  in.close();
  for (std::size_t k = 0; k < read.size(); ++k) {
    if (fits(static_cast<int>(k), read[k].text)) continue;
    if (report != nullptr) report->refusal = refusal(path, static_cast<int>(k), read[k]);
    return PreferencesReadResult::Refused;
  }
  // Any other model text selects the LS-50B; the log says so, since it is seldom meant.
  if (report != nullptr && FluorimeterModelNamed(model) == nullptr) {
    report->note = "The preferences file " + path + ", line 1: Fluorimeter?=" + model +
                   " names no model this program knows; the " +
                   std::string(FluorimeterModelSelectedBy(model).name) + " is used.";
  }
  return PreferencesReadResult::Ok;
}

std::string PreferencesFileText(const Preferences& prefs) {
  const auto line = [](const std::string& key, const std::string& value) {
    return key + "?=" + value + "\r\n";
  };
  std::string text;
  text += line("Fluorimeter", std::string(FluorimeterModelFor(prefs.Fluorimeter).name));
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

bool ReadPreferences(AppState& state, Operator& op, PreferencesReport& report) {
  const auto result = ReadPreferencesFile(state.PreferencesPath, state.Prefs, &report);
  if (result == PreferencesReadResult::Missing) return true;
  if (result == PreferencesReadResult::Truncated) {
    op.message("Error reading preferences file.");
    op.endProgram(1);
    return false;
  }
  if (result == PreferencesReadResult::Refused) {
    // Nothing of a refused file is used: the setup window starts from the defaults.
    op.message(report.refusal, "ZORVEL ERROR", BoxIcon::Exclamation);
    state.Prefs = Preferences{};
    state.PreferencesRefused = true;
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
