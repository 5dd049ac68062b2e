#include "core/app/demo_workspace.h"

#include <filesystem>
#include <system_error>

#include "core/app/port_map.h"
#include "core/app/preferences_file.h"
#include "core/files/paths.h"
#include "core/method/demo_methods.h"

namespace zorvel {

namespace fs = std::filesystem;

bool PrepareDemoWorkspace(const std::string& directory, Operator& op) {
  std::error_code ec;
  fs::create_directories(JoinPath(directory, "DATA"), ec);
  if (!ec) fs::create_directories(JoinPath(directory, "METHODS"), ec);
  if (ec) {
    op.message("The demo workspace " + directory + " could not be made: " + ec.message() + ".",
               "ZORVEL ERROR", BoxIcon::Exclamation);
    return false;
  }
  const std::string prefsPath = JoinPath(directory, "ZORVEL.PRF");
  const std::string portsPath = PortsFilePathBeside(prefsPath);
  if (!FileExists(portsPath)) {
    WritePortsFile(portsPath, {{1, "sim"}, {2, "sim"}, {3, "sim"}, {4, "sim"}});
  }
  if (FileExists(prefsPath)) return true;

  Preferences prefs;
  prefs.Printer = 0;
  prefs.BaseDirectoryPath = fs::absolute(directory).lexically_normal().string();
  if (prefs.BaseDirectoryPath.size() > 1 && prefs.BaseDirectoryPath.back() == '/')
    prefs.BaseDirectoryPath.pop_back();
  // The methods are written by the program itself, so they are what a user would have saved.
  AppState demo;
  FillColourTables(demo);
  const std::string methods = JoinPath(prefs.BaseDirectoryPath, "METHODS");
  if (WriteDemoMethods(demo, op, methods)) {
    prefs.AutoSampler = true;
    prefs.TrayGeometryFile = JoinPath(methods, kDemoTrayGeometry);
  }
  return WritePreferencesFile(prefsPath, prefs);
}

}  // namespace zorvel
