#include <gtest/gtest.h>

#include <functional>

#include "core/method/method_checks.h"
#include "core/method/method_commands.h"
#include "core/method/method_editor.h"
#include "core/platform/scripted_operator.h"
#include "method/fake_editor_views.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using C = MethodControl;

// A new method of type "Both" that passes every check.
struct Validation {
  Validation() {
    FillColourTables(state);
    state.MethodsDirectory = testing::makeTempDir("validate");
    MethodSettings& m = state.Method;
    m.Fixed = m.Synch = m.Spillover = true;
    m.NoColors = m.NoPures = 2;
    m.ReadTime = 1;
    m.ReadTimePures = 10;
    m.ScanSpeed = 480;
    m.FilterSetting = EmissionFilter::Cutoff350;
    m.PMTVoltage = 820;
    m.AmtSolvent = 2.5f;
    m.Repetitions = 1;
    m.Operator = "JS";
    m.StudyId = "Liver";
    m.FixedPairs.colour(1) = {380, 440, 5, 5, 1};
    m.FixedPairs.colour(2) = {493, 515, 5, 5, 4};
    m.SynchScan = {4, 4, 330, 720, 15, 0.5f};
    m.Autosampler.StartingTube = 1;
    m.Autosampler.EndingTube = 3;
    editor.setView(&view);
    editor.methodLoaded(MethodLoad::New);
    editor.state().ColoursDeclared = true;
    editor.state().FirstSampleNumber = 1;
    editor.colours().CheckWavelengths();  // the extremes, as the colour window's OK leaves them
  }
  AppState state;
  ScriptedOperator op;
  testing::FakeEditorView view;
  MethodEditor editor{state, op};
};

struct Case {
  const char* message;
  C focus;
  std::function<void(MethodSettings&, MethodEditorState&)> spoil;
};

TEST(ValidateAndSaveMethod, EachCheckFailsOnItsOwnWithItsMessageAndFocus) {
  const Case cases[] = {
      {"Number of colors must be between 1 and 30.", C::nColors_Box,
       [](MethodSettings& m, MethodEditorState&) { m.NoColors = 31; }},
      {"Scan speed must be between -1500 and -10 or 10 and 1500.", C::ScnSpd_Box,
       [](MethodSettings& m, MethodEditorState&) { m.ScanSpeed = -5; }},
      {"Read time for samples must be between 0.1 and 100.", C::RdTime_Box,
       [](MethodSettings& m, MethodEditorState&) { m.ReadTime = 0; }},
      {"Read time for pures must be between 0.1 and 100.", C::RdTimePures_Box,
       [](MethodSettings& m, MethodEditorState&) { m.ReadTimePures = 100.5f; }},
      {"Excitation slit must be between 2.5 and 15.  Please try again!", C::ExSlSync_Box,
       [](MethodSettings& m, MethodEditorState&) { m.SynchScan.ExSl = 2; }},
      {"Emission slit must be between 2.5 and 20.  Please try again!", C::EmSlSync_Box,
       [](MethodSettings& m, MethodEditorState&) { m.SynchScan.EmSl = 21; }},
      {"Scan excitation wavelength lower limit must be between 200 and 800.  Please try again!",
       C::ScanLL_Box, [](MethodSettings& m, MethodEditorState&) { m.SynchScan.LowerLimit = -1; }},
      {"Scan excitation wavelength upper limit must be between 330 and 800.  Please try again!",
       C::ScanUL_Box, [](MethodSettings& m, MethodEditorState&) { m.SynchScan.UpperLimit = 330; }},
      {"Scan excitation wavelength upper limit + the offset must be less than 900.  Please try "
       "again!",
       C::ScanUL_Box,
       [](MethodSettings& m, MethodEditorState&) { m.SynchScan.MonochromatorOffset = 181; }},
      {"Scan offset must be a positive number.  Please try again!", C::ScanOff_Box,
       [](MethodSettings& m, MethodEditorState&) { m.SynchScan.MonochromatorOffset = 0.5f; }},
      {"Scan data interval must be between 0.1 and 5 nm.  Please try again!", C::ScanDInt_Box,
       [](MethodSettings& m, MethodEditorState&) { m.SynchScan.ScanDataInterval = 6; }},
      {"Scan Upper Limit must be >= than the highest fixed wavelength emission wavelength "
       "(515.0).",
       C::ScanUL_Box, [](MethodSettings& m, MethodEditorState&) { m.SynchScan.UpperLimit = 500; }},
      {"Please enter an analyst name/code.", C::Op_Box,
       [](MethodSettings& m, MethodEditorState&) { m.Operator.clear(); }},
      {"Amount of solvent must be a positive number.", C::AmtSolv_Box,
       [](MethodSettings& m, MethodEditorState&) { m.AmtSolvent = 0; }},
      {"Please enter a sample description.", C::sampid_box,
       [](MethodSettings& m, MethodEditorState&) { m.StudyId.clear(); }},
      {"Number of repetitions must be a positive integer. Please reenter.", C::NumReps_Box,
       [](MethodSettings& m, MethodEditorState&) { m.Repetitions = 0; }},
      {"You have requested that there be 4 colors.  However you have indicated that 3 tubes are "
       "to be used.  The number of tube positions must be greater than or equal to the number "
       "of colors.  Please correct!",
       C::nColors_Box,
       [](MethodSettings& m, MethodEditorState&) {
         m.DeliveryMethod = Delivery::Autosampler;
         m.NoColors = 4;
         m.FixedPairs.colour(3) = m.FixedPairs.colour(4) = {400, 500, 5, 5, 0};
       }},
      {"The starting number is negative or undefined.  Please correct.", C::swell_box,
       [](MethodSettings&, MethodEditorState& s) { s.FirstSampleNumber = -1; }},
      {"You must set the wavelength information.", C::Colors_Button,
       [](MethodSettings&, MethodEditorState& s) { s.ColoursDeclared = false; }},
      {"Number of wavelengths has changed.  Please confirm that fixed wavelength information is "
       "correct.",
       C::Colors_Button,
       [](MethodSettings& m, MethodEditorState& s) {
         s.NewDataSet = false;
         m.NoColors = 1;
       }},
  };
  for (const Case& c : cases) {
    Validation v;
    c.spoil(v.state.Method, v.editor.state());
    EXPECT_FALSE(v.editor.ValidateAndSaveMethod()) << c.message;
    ASSERT_EQ(v.op.shown.size(), 1u) << c.message;  // the box only, no save dialog
    EXPECT_EQ(v.op.messages()[0].text, c.message);
    EXPECT_EQ(v.op.messages()[0].title, "ZORVEL ERROR");
    EXPECT_EQ(v.op.messages()[0].icon, BoxIcon::Exclamation);
    EXPECT_EQ(v.view.focused, c.focus) << c.message;
    EXPECT_EQ(v.view.colourWindows, c.focus == C::Colors_Button ? 1 : 0) << c.message;
  }
}

TEST(ValidateAndSaveMethod, FixedExtremesBadPairsAndTheSaveDialog) {
  Validation both;
  both.state.Method.FixedPairs.colour(1).ExWl = 290;
  both.editor.colours().CheckWavelengths();
  both.state.Method.SynchScan.LowerLimit = 300;
  EXPECT_FALSE(both.editor.ValidateAndSaveMethod());
  EXPECT_EQ(both.op.messages().at(0).text,
            "Scan Lower Limit must be <= than the lowest fixed wavelength excitation wavelength "
            "(290.0).");
  EXPECT_EQ(both.view.focused, C::ScanLL_Box);

  // A bad pair: the check's own box is silent; the colour window opens on the pair's page.
  Validation pairs;
  pairs.state.Method.FixedPairs.colour(2).EmSl = 25;
  testing::FakeColourView* shown = nullptr;
  testing::FakeColourView window;
  pairs.view.onColourWindow = [&] {
    shown = &window;
    pairs.editor.colourWindowOpened(window);
  };
  EXPECT_FALSE(pairs.editor.ValidateAndSaveMethod());
  ASSERT_EQ(pairs.op.messages().size(), 1u);
  EXPECT_EQ(pairs.op.messages()[0].text, "Error in wavelength declarations.  Please correct.");
  ASSERT_NE(shown, nullptr);
  EXPECT_EQ(window.focusedBox, std::make_pair(2, 4));

  Validation saved;
  EXPECT_FALSE(saved.editor.ValidateAndSaveMethod());  // the dialog cancelled
  const std::string path = saved.state.MethodsDirectory + "Liver.mth";
  saved.op.chooseNext(path);
  EXPECT_TRUE(saved.editor.ValidateAndSaveMethod());
  EXPECT_EQ(saved.op.shown.back().dialog.defaultExtension, "MTH");
  EXPECT_EQ(saved.view.methodFile, path);
  EXPECT_EQ(saved.state.DataSet.MethodFilePath, path);
  EXPECT_FALSE(testing::readFile(path).empty());
}

TEST(SaveMethodStep, AnUnchangedLoadedMethodIsNotSavedAgain) {
  Validation v;
  v.editor.methodLoaded(MethodLoad::Edit);
  v.editor.state().FirstSampleNumber = 1;
  v.state.Method.FixedPairs.colour(1).ColourIndex = 9;  // colours and line ends are not compared
  v.state.Method.FileType = DataFileType::Macintosh;
  EXPECT_TRUE(v.editor.saveMethodStep());
  EXPECT_TRUE(v.op.shown.empty());
  EXPECT_FALSE(v.editor.state().MethodChangedFlag);

  v.state.Method.FixedPairs.colour(2).EmWl = 516;
  EXPECT_FALSE(v.editor.saveMethodStep());  // changed: checked and the dialog shown (cancelled)
  EXPECT_TRUE(v.editor.state().MethodChangedFlag);
  ASSERT_EQ(v.op.shown.size(), 1u);
  EXPECT_EQ(v.op.shown[0].kind, ScriptedOperator::Shown::Kind::FileDialog);
}

TEST(CheckMethodForRun, NamesTheRowOfABadPairAfterTheCheckMessage) {
  Validation v;
  EXPECT_EQ(CheckMethodForRun(v.state.Method, 1), std::nullopt);
  v.state.Method.FixedPairs.colour(2).EmWl = 950;
  EXPECT_EQ(CheckMethodForRun(v.state.Method, 1),
            "Error in wavelength declarations.  Please correct.\nRow 2: Answer must be between "
            "200 and 900.");
  // The extremes come from the file's own table: a scan above the lowest excitation fails.
  v.state.Method.FixedPairs.colour(2).EmWl = 515;
  v.state.Method.SynchScan.LowerLimit = 381;
  EXPECT_EQ(CheckMethodForRun(v.state.Method, 1),
            "Scan Lower Limit must be <= than the lowest fixed wavelength excitation wavelength "
            "(380.0).");
}

}  // namespace
}  // namespace zorvel
