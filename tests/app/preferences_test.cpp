#include "core/app/preferences_file.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::readGolden;

TEST(PreferencesFile, WrittenByteForByteWithLineEightOnlyWithAnAutosampler) {
  Preferences withAutosampler{2, 1, 2, 3, 1, true, "/lab", "/lab/METHODS/tray96.tgf"};
  EXPECT_SAME_BYTES(readGolden("app/autosampler.prf"), PreferencesFileText(withAutosampler));
  Preferences without{1, 4, 4, 4, 0, false, "/", "/ignored.tgf"};
  EXPECT_SAME_BYTES(readGolden("app/no_autosampler.prf"), PreferencesFileText(without));
}

TEST(PreferencesFile, ReadsModelPrinterAndAutosamplerRules) {
  const std::string dir = testing::makeTempDir("prefs");
  const auto read = [&](const std::string& text) {
    testing::writeFile(dir + "ZORVEL.PRF", text);
    Preferences prefs;
    EXPECT_EQ(ReadPreferencesFile(dir + "ZORVEL.PRF", prefs), PreferencesReadResult::Ok);
    return prefs;
  };
  const std::string tail = "\r\nAutoSampComPort?=3\r\n";
  Preferences p = read("Fluorimeter?=LS-50\r\nFlComPort?=2\r\nDilComPort?=1" + tail +
                       "Printer?=5\r\nAutoSampler?=0\r\nBaseDirectoryPath?=/lab\r\n"
                       "TrayGeometryFile?=/never/read.tgf\r\n");
  EXPECT_EQ(p.Fluorimeter, 1);
  EXPECT_EQ(p.FlComPort, 2);
  EXPECT_EQ(p.Printer, -1);  // any non-zero value is a printer, written back as -1
  EXPECT_FALSE(p.AutoSampler);
  EXPECT_EQ(p.BaseDirectoryPath, "/lab");
  EXPECT_EQ(p.TrayGeometryFile, "");  // line 8 ignored without an autosampler

  p = read(
      "Fluorimeter?=ls-50\r\nFlComPort?=1\r\nDilComPort?=2" + tail +
      "Printer?=0\r\nAutoSampler?=1\r\nBaseDirectoryPath?=/a b,c\r\nTrayGeometryFile?=/t.tgf\r\n");
  EXPECT_EQ(p.Fluorimeter, 2);  // only exactly "LS-50" selects the LS-50
  EXPECT_EQ(p.Printer, 0);
  EXPECT_TRUE(p.AutoSampler);
  EXPECT_EQ(p.BaseDirectoryPath, "/a b,c");
  EXPECT_EQ(p.TrayGeometryFile, "/t.tgf");

  // A missing plate line is not fatal: the end-of-file marker becomes the value.
  p = read("Fluorimeter?=LS-50B\r\nFlComPort?=1\r\nDilComPort?=2" + tail +
           "Printer?=0\r\nAutoSampler?=-1\r\nBaseDirectoryPath?=/lab\r\n");
  EXPECT_EQ(p.TrayGeometryFile, "&^EOF^&");

  Preferences missing;
  EXPECT_EQ(ReadPreferencesFile(dir + "NONE.PRF", missing), PreferencesReadResult::Missing);
}

TEST(PreferencesFile, DirectoriesFollowTheBase) {
  AppState state;
  state.Prefs.BaseDirectoryPath = "/";
  SetDirectoriesFromBase(state);
  EXPECT_EQ(state.DataDirectory, "/DATA");
  state.Prefs.BaseDirectoryPath = "/nonexistent/lab";
  SetDirectoriesFromBase(state);
  EXPECT_EQ(state.DataDirectory, "/nonexistent/lab/DATA");
  EXPECT_EQ(state.MethodsDirectory, "/nonexistent/lab/METHODS");
  // Folders made by hand are used as they are spelt.
  const std::string lab = testing::makeTempDir("prefs-base");
  std::filesystem::create_directories(lab + "data");
  std::filesystem::create_directories(lab + "Methods");
  state.Prefs.BaseDirectoryPath = lab;
  SetDirectoriesFromBase(state);
  EXPECT_EQ(state.DataDirectory, lab + "data");
  EXPECT_EQ(state.MethodsDirectory, lab + "Methods");
}

TEST(PreferencesFile, WriteReplacesTheWholeFile) {
  const std::string dir = testing::makeTempDir("prefs-write");
  testing::writeFile(dir + "ZORVEL.PRF", std::string(4000, 'x'));
  Preferences prefs{2, 1, 2, 3, 1, false, "/lab", ""};
  ASSERT_TRUE(WritePreferencesFile(dir + "ZORVEL.PRF", prefs));
  EXPECT_SAME_BYTES(PreferencesFileText(prefs), testing::readFile(dir + "ZORVEL.PRF"));
  EXPECT_FALSE(WritePreferencesFile(dir + "no/such/dir/ZORVEL.PRF", prefs));
}

}  // namespace
}  // namespace zorvel

namespace zorvel {
namespace {

// A file this program did not write is refused with the line and what it expected, not read
// with silent defaults; an unknown model selects the LS-50B, and says so.
TEST(PreferencesFile, LinesThatCannotBeUsedRefuseTheFile) {
  const std::string dir = testing::makeTempDir("prefs-bad");
  const std::string path = dir + "ZORVEL.PRF";
  const std::string ports = "FlComPort?=1\r\nDilComPort?=2\r\nAutoSampComPort?=3\r\n";
  const std::string flags = "Printer?=0\r\nAutoSampler?=0\r\nBaseDirectoryPath?=/lab\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {"Fluorimeter?=LS-50B\r\nFlComPort?=abc\r\nDilComPort?=2\r\nAutoSampComPort?=3\r\n" + flags,
       "line 2: FlComPort?=abc cannot be used; a COM port number from 1 to 4 is expected."},
      {"Fluorimeter?=LS-50B\r\n" + ports + "Printer?=0\r\nAutoSampler?=yes\r\nBase?=/\r\n",
       "line 6: AutoSampler?=yes cannot be used; a whole number, 0 for no autosampler is "
       "expected."},
      {"Fluorimeter?=LS-50B\r\nFlComPort?=1\r\nDilComPort?=9\r\nAutoSampComPort?=3\r\n" + flags,
       "line 3: DilComPort?=9 cannot be used; a COM port number from 1 to 4 is expected."},
      {std::string("\x7f\x45LF\x02\x01\x01\r\n") + ports + flags,
       "line 1: Fluorimeter?=bytes that are not text cannot be used; the model, LS-50 or LS-50B "
       "is expected."},
      {"garbage\r\nmore garbage\r\nand more\r\nstill more\r\n1\r\n2\r\n3\r\n",
       "line 2: FlComPort?=more garbage cannot be used; a COM port number from 1 to 4 is "
       "expected."},
  };
  for (const auto& [text, why] : cases) {
    testing::writeFile(path, text);
    Preferences prefs;
    PreferencesReport report;
    EXPECT_EQ(ReadPreferencesFile(path, prefs, &report), PreferencesReadResult::Refused) << text;
    EXPECT_EQ(report.refusal, "The preferences file " + path + ", " + why);
  }
  testing::writeFile(path, "Fluorimeter?=XYZ-9000\r\n" + ports + flags);
  Preferences prefs;
  PreferencesReport report;
  EXPECT_EQ(ReadPreferencesFile(path, prefs, &report), PreferencesReadResult::Ok);
  EXPECT_EQ(prefs.Fluorimeter, 2);
  EXPECT_EQ(report.note, "The preferences file " + path +
                             ", line 1: Fluorimeter?=XYZ-9000 names no model this program "
                             "knows; the LS-50B is used.");
}

}  // namespace
}  // namespace zorvel
