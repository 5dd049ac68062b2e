// Set-up shared by the end-to-end runs of zorvel-run: the Qt application object, a start-up
// folder, and the lines of a data file.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "core/app/preferences_file.h"
#include "core/method/demo_methods.h"
#include "core/method/method_file.h"
#include "support/bytes.h"
#include "support/method_builder.h"

namespace zorvel::e2e {

// Three colours read from tubes 5 to lastTube of the tray file with small, quick strokes and
// no air dry, as the simulated arm and dilutor take them.
inline MethodSettings QuickTrayMethod(const std::string& trayFile, int lastTube,
                                      const std::string& studyId) {
  MethodSettings m = testing::FixedMethod(3);
  m.NoPures = 3;
  m.AmtSolvent = 1;
  m.Operator = "JS";
  m.StudyId = studyId;
  testing::FromTray(m, 5, lastTube);
  m.Autosampler.PumpDirection = 1;
  m.Autosampler.TrayDescriptorFile = trayFile;
  return m;
}

inline void ensureApplication() {
  if (QCoreApplication::instance() != nullptr) return;
  static int argc = 1;
  static char name[] = "test_e2e";
  static char* argv[] = {name, nullptr};
  new QCoreApplication(argc, argv);  // lives as long as the test program
}

// A start-up folder with DATA, METHODS and preferences that put the fluorimeter on COM1.
inline std::string makeWorkspace(const std::string& prefix) {
  const std::string dir = testing::makeTempDir(prefix);
  std::filesystem::create_directories(dir + "DATA");
  std::filesystem::create_directories(dir + "METHODS");
  Preferences prefs;
  prefs.FlComPort = 1;
  prefs.BaseDirectoryPath = dir;
  EXPECT_TRUE(WritePreferencesFile(dir + "ZORVEL.PRF", prefs));
  return dir;
}

// The lines of a file that match `pattern`, without their CR.
inline std::vector<std::string> matchingLines(const std::string& path, const std::regex& pattern) {
  std::vector<std::string> lines;
  std::istringstream in(testing::readFile(path));
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (std::regex_match(line, pattern)) lines.push_back(line);
  }
  return lines;
}

// The demo tray file as METHODS/TRAY.TGF and preferences naming it with the autosampler on;
// the tray file's path.
inline std::string WriteTrayPreferences(const std::string& dir) {
  const std::string tray = dir + "METHODS/TRAY.TGF";
  testing::writeFile(tray, DemoTrayGeometryText());
  Preferences prefs;
  prefs.BaseDirectoryPath = dir;
  prefs.AutoSampler = true;
  prefs.TrayGeometryFile = tray;
  EXPECT_TRUE(WritePreferencesFile(dir + "ZORVEL.PRF", prefs));
  return tray;
}

// A workspace for a tray run: the tray preferences above and METHODS/TRAY.MTH as `method` makes
// it for that tray file.
template <typename MakeMethod>
void WriteTrayWorkspace(const std::string& dir, MakeMethod method) {
  const std::string tray = WriteTrayPreferences(dir);
  EXPECT_TRUE(WriteMethodFile(method(tray), dir + "METHODS/TRAY.MTH"));
}

}  // namespace zorvel::e2e
