#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <iostream>

#include "apps/zorvel-run/commands.h"
#include "core/app/preferences_file.h"
#include "core/autosampler/tray_geometry_file.h"
#include "core/files/paths.h"
#include "core/method/method_defaults.h"
#include "core/method/method_file.h"
#include "core/platform/scripted_operator.h"
#include "core/run/method_run_check.h"

namespace zorvel::headless {

namespace {

// A box's lines are separated by CR; on the console each is a line of its own.
std::string consoleText(std::string text) {
  std::replace(text.begin(), text.end(), '\r', '\n');
  return text;
}

// The method as named, or else the one of that name in the start-up directory's METHODS.
std::string methodPath(const Options& options) {
  const QFileInfo named(QString::fromStdString(options.checkMethodPath));
  if (named.exists() || named.isAbsolute() || options.startDirectory.empty())
    return named.absoluteFilePath().toStdString();
  return QDir(QString::fromStdString(options.startDirectory))
      .filePath("METHODS/" + named.filePath())
      .toStdString();
}

// What a run takes from the preferences of the start-up directory: the fluorimeter's model
// and the tray they name (no tubes when they name none or it cannot be read).
struct RunPreferences {
  int fluorimeter = Preferences{}.Fluorimeter;
  std::int16_t tubeCount = 0;
};

RunPreferences runPreferences(const Options& options) {
  const std::string start =
      options.startDirectory.empty() ? QDir::currentPath().toStdString() : options.startDirectory;
  Preferences prefs;
  RunPreferences found;
  if (ReadPreferencesFile(QDir(QString::fromStdString(start)).filePath("ZORVEL.PRF").toStdString(),
                          prefs) != PreferencesReadResult::Ok)
    return found;
  found.fluorimeter = prefs.Fluorimeter;
  TrayGeometry tray;
  if (prefs.AutoSampler && LoadTrayGeometry(prefs.TrayGeometryFile, tray))
    found.tubeCount = tray.TubeCount;
  return found;
}

}  // namespace

int RunCheckMethodCommand(const Options& options, std::ostream& out) {
  const std::string path = methodPath(options);
  if (!FileExists(path)) {
    out << "File does not exist.\n";
    return 2;
  }
  AppState state;
  // As at start-up: the autosampler settings a method file may leave out are the defaults
  // for the tray of the preferences.
  const RunPreferences prefs = runPreferences(options);
  SetAutosamplerDefaults(state.Method.Autosampler, prefs.tubeCount);
  // The boxes the method reader would show are kept and printed instead.
  ScriptedOperator boxes;
  if (!ReadMethodFile(state, boxes, path)) {
    for (const MessageBoxRequest& box : boxes.messages()) out << consoleText(box.text) << "\n";
    return 2;
  }
  const std::vector<std::string> problems = MethodRunProblems(
      state.Method, FluorimeterModelFor(prefs.fluorimeter), options.firstNumber, prefs.tubeCount);
  for (const std::string& problem : problems) out << consoleText(problem) << "\n";
  if (!problems.empty()) return 1;
  out << "Method is valid.\n";
  return 0;
}

}  // namespace zorvel::headless
