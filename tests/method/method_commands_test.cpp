#include "core/method/method_commands.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/autosampler/tray_geometry_file.h"
#include "core/method/demo_methods.h"
#include "core/method/method_checks.h"
#include "core/method/method_defaults.h"
#include "core/method/method_file.h"
#include "core/platform/scripted_operator.h"
#include "method/method_examples.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::readGolden;
using testing::writeFile;

AppState stateWithMethodsDirectory() {
  AppState state;
  state.MethodsDirectory = testing::makeTempDir("methods");
  state.Tray.TubeCount = 48;
  return state;
}

TEST(NewMethodFile, WithoutTemplateTakesTheDefaults) {
  AppState state = stateWithMethodsDirectory();
  state.Method = testing::FixedSynchCuvetteMethod();  // a Macintosh method was loaded before
  state.LineEnding = "\r";
  state.DataSet.MethodFilePath = "/old.mth";
  ScriptedOperator op;
  const MethodCommandResult r = NewMethodFile(state, op);
  EXPECT_TRUE(r.methodLoaded);
  EXPECT_TRUE(r.methodPath.empty());
  EXPECT_TRUE(op.shown.empty());
  const MethodSettings& m = state.Method;
  EXPECT_TRUE(m.Fixed && !m.Synch && m.Spillover);
  EXPECT_EQ(m.FileType, DataFileType::DosWindows);
  EXPECT_TRUE(m.Operator.empty() && m.StudyId.empty());
  EXPECT_EQ(m.FixedPairs.colour(30), (ColourDeclaration{0, 0, 0, 0, 0}));
  EXPECT_EQ(m.Autosampler.EndingTube, 48);  // the loaded tray's tube count
  EXPECT_EQ(state.LineEnding, "\r\n");
  EXPECT_EQ(state.DataSet.MethodFilePath, "");
  EXPECT_EQ(r.window.methodFileLabel, "None open.");
  EXPECT_EQ(r.window.newDataSet, true);
  EXPECT_EQ(r.window.coloursDeclared, false);
  EXPECT_TRUE(r.window.colourBackupPending);
  EXPECT_EQ(r.window.firstSampleNumber, 1);
}

TEST(NewMethodFile, TemplateInTheMethodsDirectoryIsReadWhenPresent) {
  AppState state = stateWithMethodsDirectory();
  writeFile(state.MethodsDirectory + "default.mth", readGolden("method/fixed_synch_cuvette.mth"));
  ScriptedOperator op;
  const MethodCommandResult r = NewMethodFile(state, op);
  EXPECT_TRUE(r.methodLoaded);
  EXPECT_EQ(r.methodPath, state.MethodsDirectory + "default.mth");
  EXPECT_EQ(state.Method.NoColors, 2);
  EXPECT_EQ(state.LineEnding, "\r");  // the template's Macintosh file type
  EXPECT_EQ(r.window.newDataSet, true);

  // The save dialog writes a method named "default" as default.MTH: it is the template too.
  std::filesystem::remove(state.MethodsDirectory + "default.mth");
  writeFile(state.MethodsDirectory + "default.MTH", readGolden("method/fixed_cuvette.mth"));
  ScriptedOperator upper;
  EXPECT_EQ(NewMethodFile(state, upper).methodPath, state.MethodsDirectory + "default.MTH");
  EXPECT_EQ(state.Method.NoColors, 3);

  writeFile(state.MethodsDirectory + "default.mth", "Version?=9\r\n");
  ScriptedOperator bad;
  EXPECT_FALSE(NewMethodFile(state, bad).methodLoaded);
  EXPECT_EQ(bad.messages().size(), 1u);
}

TEST(EditMethodFile, AsksForAnExistingMethodAndReadsIt) {
  AppState state = stateWithMethodsDirectory();
  ScriptedOperator cancelled;
  EXPECT_FALSE(EditMethodFile(state, cancelled).methodLoaded);
  ASSERT_EQ(cancelled.shown.size(), 1u);  // the dialog only
  const FileDialogRequest& dialog = cancelled.shown[0].dialog;
  EXPECT_EQ(dialog.defaultExtension, "MTH");
  EXPECT_EQ(dialog.initialDirectory, state.MethodsDirectory);
  EXPECT_EQ(dialog.flags, 4096);

  ScriptedOperator missing;
  missing.chooseNext(state.MethodsDirectory + "NONE.MTH");
  EXPECT_FALSE(EditMethodFile(state, missing).methodLoaded);
  ASSERT_EQ(missing.messages().size(), 1u);
  EXPECT_EQ(missing.messages()[0].text, "File does not exist.");
  EXPECT_EQ(missing.messages()[0].title, "ZORVEL ERROR");
  EXPECT_EQ(missing.messages()[0].icon, BoxIcon::Exclamation);

  const std::string path = state.MethodsDirectory + "Gill.MTH";
  writeFile(path, readGolden("method/fixed_synch_cuvette.mth"));
  ScriptedOperator chosen;
  chosen.chooseNext(path);
  const MethodCommandResult r = EditMethodFile(state, chosen);
  EXPECT_TRUE(r.methodLoaded);
  EXPECT_TRUE(state.Method == testing::FixedSynchCuvetteMethod());
  EXPECT_EQ(state.DataSet.MethodFilePath, path);  // opened and shown as chosen
  EXPECT_EQ(r.window.methodFileLabel, path);
  EXPECT_EQ(r.window.newDataSet, false);
  EXPECT_EQ(state.LineEnding, "\r");

  writeFile(path, "Version?=12\r\nFixed?=True\r\n");
  ScriptedOperator truncated;
  truncated.chooseNext(path);
  EXPECT_FALSE(EditMethodFile(state, truncated).methodLoaded);
  EXPECT_EQ(truncated.messages().size(), 1u);
}

TEST(DemoMethods, ThreeMethodsAndTheirTrayReadBack) {
  AppState state = stateWithMethodsDirectory();
  ScriptedOperator op;
  ASSERT_TRUE(WriteDemoMethods(state, op, state.MethodsDirectory));
  TrayGeometry tray;
  ASSERT_TRUE(LoadTrayGeometry(state.MethodsDirectory + kDemoTrayGeometry, tray));
  EXPECT_EQ(tray.positionCount, 97);  // the rinse station and 96 tubes
  EXPECT_EQ(tray.TubeCount, 96);
  EXPECT_FLOAT_EQ(tray.positions[13].Y - tray.positions[1].Y, 18);  // the next row
  for (const char* name : {kDemoFixedMethod, kDemoFixedSynchMethod, kDemoTrayMethod}) {
    AppState reader;
    ASSERT_TRUE(ReadMethodFile(reader, op, state.MethodsDirectory + name)) << name;
    EXPECT_EQ(CheckMethodForRun(reader.Method, 1), std::nullopt) << name;  // ready to run
  }
  AppState reader;
  ReadMethodFile(reader, op, state.MethodsDirectory + kDemoTrayMethod);
  EXPECT_EQ(reader.Method.DeliveryMethod, Delivery::Autosampler);
  EXPECT_EQ(reader.Method.Autosampler.TrayDescriptorFile,
            state.MethodsDirectory + kDemoTrayGeometry);
  EXPECT_TRUE(op.shown.empty());
}

}  // namespace
}  // namespace zorvel
