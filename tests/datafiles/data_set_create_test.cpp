#include <filesystem>

#include <gtest/gtest.h>

#include "core/datafiles/data_set_commands.h"
#include "core/datafiles/data_set_headers.h"
#include "core/datafiles/data_set_naming.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "datafiles/data_set_examples.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::readFile;
using testing::readGolden;

class CountingDatabases final : public QualityDatabases {
 public:
  void resetCounts() override { ++resets; }
  void load(const std::string& ctl, const std::string& blk) override {
    loaded.push_back(ctl + "|" + blk);
  }
  int resets = 0;
  std::vector<std::string> loaded;
};

std::vector<std::string> filesIn(const std::string& directory) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(directory))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

TEST(DataSetNaming, OnlyTheFileNamesExtensionIsRemoved) {
  EXPECT_EQ(BasePathOf("/lab/DATA/run1.fix"), "/lab/DATA/run1");
  EXPECT_EQ(BasePathOf("/lab.v2/DATA/run1"), "/lab.v2/DATA/run1");
  EXPECT_EQ(BasePathOf("/lab.v2/DATA/run.1.fix"), "/lab.v2/DATA/run.1");
  EXPECT_EQ(BasePathOf("run1.SYN"), "run1");
  EXPECT_EQ(DataSetNameOf("/lab.v2/DATA/run1.fix"), "run1");
  EXPECT_EQ(DataSetNameOf("/lab.v2/DATA/run1"), "run1");

  MethodSettings m;
  m.Synch = true;
  m.DeliveryMethod = Delivery::Autosampler;
  EXPECT_EQ(DataFileLabel(m, "/d/run1"), "/d/run1.SYN");
  EXPECT_TRUE(DataSetPathsFor(m, "/d/run1") ==
              (DataSetPaths{"", "/d/run1.SYN", "", "", "/d/run1.STL", "/d/run1.SLK", "/d/run1.LOG",
                            "", ""}));
}

TEST(CreateDataFileSet, Run1WithBothKindsMakesSixFilesInADottedDirectory) {
  AppState state = testing::LiverSetState();
  state.DataDirectory = testing::makeTempDir("create") + "lab.v2/DATA/";
  std::filesystem::create_directories(state.DataDirectory);
  ScriptedOperator op;
  op.chooseNext(state.DataDirectory + "run1.fix");
  VirtualClock clock(CalendarTime{2026, 3, 7, 14, 5, 9});
  CountingDatabases databases;

  const CreateDataSetResult r = CreateDataFileSet(state, op, clock, databases);
  ASSERT_TRUE(r.created);
  EXPECT_TRUE(r.written);
  const FileDialogRequest& dialog = op.shown.at(0).dialog;
  EXPECT_EQ(dialog.defaultExtension, "FIX");
  EXPECT_EQ(dialog.initialDirectory, state.DataDirectory);
  EXPECT_EQ(dialog.action, FileDialogAction::SaveAs);
  EXPECT_EQ(dialog.flags, 2);

  EXPECT_EQ(r.window.dataFileLabel, state.DataDirectory + "run1 (.FIX; .SYN)");
  EXPECT_EQ(r.window.newDataSet, true);
  EXPECT_EQ(state.DataSet.DataSetName, "run1");
  EXPECT_EQ(state.DataSet.MethodFilePath, "/lab/METHODS/LIVER.MTH");
  EXPECT_EQ(databases.resets, 1);
  const std::vector<std::string> expected = {"run1.BLK", "run1.CTL", "run1.FIX",
                                             "run1.SLK", "run1.STL", "run1.SYN"};
  EXPECT_EQ(filesIn(state.DataDirectory), expected);
  for (const std::string& name : expected) {
    SCOPED_TRACE(name);
    EXPECT_SAME_BYTES(
        testing::WithDirectory(readGolden("datafiles/run1_dos/" + name), state.DataDirectory),
        readFile(state.DataDirectory + name));
  }
}

TEST(CreateDataFileSet, MacintoshAutosamplerSetEndsEveryLineInCrAlone) {
  AppState state = testing::RackSetState();
  const std::string directory = testing::makeTempDir("mac");
  CountingDatabases databases;
  const HeadersResult r = WriteDataSetHeaders(state, directory + "Tray5.fix",
                                              CalendarTime{2026, 12, 31, 23, 59, 58}, databases);
  EXPECT_TRUE(r.written);
  EXPECT_EQ(r.dataFileLabel, directory + "Tray5 (.FIX; .SYN)");
  const std::vector<std::string> expected = {"Tray5.BLK", "Tray5.CTL", "Tray5.FIX", "Tray5.LOG",
                                             "Tray5.SLK", "Tray5.STL", "Tray5.SYN"};
  EXPECT_EQ(filesIn(directory), expected);
  for (const std::string& name : expected) {
    SCOPED_TRACE(name);
    const std::string bytes = readFile(directory + name);
    EXPECT_SAME_BYTES(testing::WithDirectory(readGolden("datafiles/tray5_mac/" + name), directory),
                      bytes);
    EXPECT_EQ(bytes.find('\n'), std::string::npos);
  }
}

TEST(CreateDataFileSet, CancelledDialogWritesNothingAndScansAloneAskForSyn) {
  AppState state = testing::LiverSetState();
  state.Method.Fixed = false;
  state.DataDirectory = testing::makeTempDir("cancel");
  const DataSetPaths before = state.DataSet;
  ScriptedOperator op;
  VirtualClock clock;
  CountingDatabases databases;
  const CreateDataSetResult r = CreateDataFileSet(state, op, clock, databases);
  EXPECT_FALSE(r.created);
  EXPECT_FALSE(r.window.dataFileLabel.has_value());
  EXPECT_EQ(op.shown.at(0).dialog.defaultExtension, "SYN");
  EXPECT_TRUE(filesIn(state.DataDirectory).empty());
  EXPECT_TRUE(state.DataSet == before);
  EXPECT_EQ(databases.resets, 0);
}

}  // namespace
}  // namespace zorvel
