#include "core/method/method_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "core/method/instrument_ranges.h"
#include "core/method/method_checks.h"
#include "core/platform/scripted_operator.h"
#include "method/method_examples.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::readFile;
using testing::readGolden;
using testing::writeFile;

struct Example {
  const char* golden;
  MethodSettings method;
};

std::vector<Example> examples() {
  return {{"method/fixed_cuvette.mth", testing::FixedCuvetteMethod()},
          {"method/fixed_synch_cuvette.mth", testing::FixedSynchCuvetteMethod()},
          {"method/synch_autosampler.mth", testing::SynchAutosamplerMethod()}};
}

// Reads method text through a file, as the program does.
bool readText(AppState& state, ScriptedOperator& op, const std::string& text) {
  static const std::string path = testing::makeTempDir("method") + "m.mth";
  writeFile(path, text);
  return ReadMethodFile(state, op, path);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  if (at != std::string::npos) text.replace(at, from.size(), to);
  return text;
}

// The first `count` lines of a text, each with its line end.
std::string firstLines(const std::string& text, int count) {
  std::size_t end = 0;
  for (int i = 0; i < count; ++i) end = text.find("\r\n", end) + 2;
  return text.substr(0, end);
}

int lineCount(const std::string& text) {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

TEST(MethodFile, EachKindIsWrittenReadBackAndWrittenAgainIdentically) {
  for (const Example& e : examples()) {
    SCOPED_TRACE(e.golden);
    const std::string golden = readGolden(e.golden);
    EXPECT_SAME_BYTES(golden, MethodFileText(e.method));

    const std::string path = testing::makeTempDir("write") + "written.mth";
    ASSERT_TRUE(WriteMethodFile(e.method, path));
    EXPECT_SAME_BYTES(golden, readFile(path));

    AppState state;
    ScriptedOperator op;
    ASSERT_TRUE(ReadMethodFile(state, op, path));
    EXPECT_TRUE(op.shown.empty());
    EXPECT_TRUE(state.Method == e.method);
    EXPECT_SAME_BYTES(golden, MethodFileText(state.Method));
  }
}

TEST(MethodFile, CodedLinesTakeOnlyTheirExactText) {
  std::string text = readGolden("method/fixed_cuvette.mth");
  text = replaced(text, "Fixed?=True", "Fixed?=false");
  text = replaced(text, "Spillover?=True", "Spillover?=False");
  text = replaced(text, "PrintResults?=False", "PrintResults?=TRUE");
  text = replaced(text, "FilterSetting?=350 nm", "FilterSetting?=350nm");
  text = replaced(text, "DeliveryMethod?=Cuvette", "DeliveryMethod?=autosampler");
  text = replaced(text, "FileType?=DOS/Windows", "FileType?=macintosh");
  // Keys are never compared: only the order of the lines counts.
  text = replaced(text, "No.Colors?=3", "Colours=3");
  AppState state;
  state.Method.FilterSetting = EmissionFilter::Cutoff530;
  state.Method.FileType = DataFileType::Macintosh;
  ScriptedOperator op;
  ASSERT_TRUE(readText(state, op, text));
  EXPECT_TRUE(state.Method.Fixed);  // only "False" clears a flag
  EXPECT_FALSE(state.Method.Spillover);
  EXPECT_FALSE(state.Method.PrintResults);  // only "True" sets it
  EXPECT_EQ(state.Method.FilterSetting,
            EmissionFilter::Cutoff530);  // unknown filter text: code unchanged
  EXPECT_EQ(state.Method.DeliveryMethod, Delivery::Cuvette);
  EXPECT_EQ(state.Method.FileType, DataFileType::DosWindows);
  EXPECT_EQ(state.Method.NoColors, 3);
  EXPECT_EQ(state.Method.FixedPairs.colour(3), (ColourDeclaration{617.5f, 640, 12.5f, 2.5f, 10}));
}

TEST(MethodFile, SectionsNotInTheFileLeaveTheirFieldsAsTheyWere) {
  AppState state;
  state.Method = testing::SynchAutosamplerMethod();
  state.Method.FixedPairs.colour(4) = {1, 2, 3, 4, 5};
  ScriptedOperator op;
  ASSERT_TRUE(readText(state, op, readGolden("method/fixed_cuvette.mth")));
  EXPECT_TRUE(state.Method.Autosampler == testing::SynchAutosamplerMethod().Autosampler);
  EXPECT_TRUE(state.Method.SynchScan == testing::SynchAutosamplerMethod().SynchScan);
  EXPECT_EQ(state.Method.FixedPairs.colour(4), (ColourDeclaration{1, 2, 3, 4, 5}));

  // No fixed section: the first marker found is the scan's, kept for the second test.
  state.Method.FixedPairs.colour(1) = {9, 9, 9, 9, 9};
  ASSERT_TRUE(readText(state, op, readGolden("method/synch_autosampler.mth")));
  EXPECT_EQ(state.Method.FixedPairs.colour(1), (ColourDeclaration{9, 9, 9, 9, 9}));
  EXPECT_TRUE(state.Method.Autosampler == testing::SynchAutosamplerMethod().Autosampler);
  EXPECT_TRUE(op.shown.empty());
}

TEST(MethodFile, FixedRowsAreFreeFormatNumbers) {
  const std::string header = firstLines(readGolden("method/fixed_cuvette.mth"), 18);
  AppState state;
  ScriptedOperator op;
  ASSERT_TRUE(readText(state, op,
                       header + "FIXED SCAN SECTION\r\nheadings\r\n380,440,5,5,1\r\n  493 515\r\n"
                                "5\t5 4\r\n-1 x 2.5 2.5 3.6\r\n"));
  EXPECT_EQ(state.Method.FixedPairs.colour(1), (ColourDeclaration{380, 440, 5, 5, 1}));
  EXPECT_EQ(state.Method.FixedPairs.colour(2), (ColourDeclaration{493, 515, 5, 5, 4}));
  EXPECT_EQ(state.Method.FixedPairs.colour(3), (ColourDeclaration{-1, 0, 2.5f, 2.5f, 4}));
}

void expectInvalidBox(const ScriptedOperator& op, const std::string& offending) {
  ASSERT_EQ(op.messages().size(), 1u);
  const MessageBoxRequest box = op.messages()[0];
  EXPECT_EQ(box.text, "Invalid Methods File.  RUN ABORTED.\rOffending string : " + offending +
                          "\rPlease rebuild or try a different methods file.");
  EXPECT_EQ(box.title, "ZORVEL ERROR");
  EXPECT_EQ(box.icon, BoxIcon::Exclamation);
  EXPECT_EQ(box.buttons, BoxButtons::Ok);
  EXPECT_EQ(op.beeps, 1);
}

TEST(MethodFile, WrongVersionNamesTheVersionFound) {
  AppState state;
  ScriptedOperator op;
  const std::string text = readGolden("method/fixed_cuvette.mth");
  EXPECT_FALSE(readText(state, op, replaced(text, "Version?=12", "Version?=11")));
  expectInvalidBox(op, "Method file version mismatch.  Expected 12 but found 11.");
  EXPECT_FALSE(state.Method.Fixed);  // nothing read past the version

  ScriptedOperator empty;
  EXPECT_FALSE(readText(state, empty, ""));
  expectInvalidBox(empty, "Method file version mismatch.  Expected 12 but found &^EOF^&.");
}

TEST(MethodFile, FileEndingEarlyFailsWithTheBoxAndLeavesTheProgramUsable) {
  // Each file may end after its header or after any whole section; anywhere else is an error.
  const std::vector<std::pair<const char*, std::vector<int>>> validEnds = {
      {"method/fixed_cuvette.mth", {18}},
      {"method/fixed_synch_cuvette.mth", {18, 22}},
      {"method/synch_autosampler.mth", {18, 25}}};
  for (const auto& [name, ends] : validEnds) {
    const std::string golden = readGolden(name);
    for (int k = 1; k < lineCount(golden); ++k) {
      SCOPED_TRACE(std::string(name) + " cut after line " + std::to_string(k));
      AppState state;
      ScriptedOperator op;
      const bool valid = std::find(ends.begin(), ends.end(), k) != ends.end();
      EXPECT_EQ(readText(state, op, firstLines(golden, k)), valid);
      EXPECT_EQ(op.messages().size(), valid ? 0u : 1u);
      // The same state reads a whole file afterwards.
      ScriptedOperator again;
      EXPECT_TRUE(readText(state, again, golden));
    }
    AppState state;
    ScriptedOperator op;
    EXPECT_TRUE(readText(state, op, golden.substr(0, golden.size() - 2)));  // no last line end
  }
}

TEST(MethodFile, OffendingStringIsTheLastTextValueRead) {
  const std::string golden = readGolden("method/fixed_cuvette.mth");
  AppState state;
  ScriptedOperator op;
  EXPECT_FALSE(readText(state, op, firstLines(golden, 5)));  // No.Pures missing
  expectInvalidBox(op, "True");
  EXPECT_EQ(state.Method.NoColors, 3);  // what was read keeps its new value

  ScriptedOperator rows;
  EXPECT_FALSE(readText(state, rows, firstLines(golden, 22)));  // three colours, two rows
  expectInvalidBox(rows, "&^EOF^&");
}

// The reader reads what the file declares; the whole-method check says what is wrong with it.
TEST(MethodFile, MoreColoursThanTheTableHoldsAreReadAndLeftToTheCheck) {
  std::string text =
      replaced(readGolden("method/fixed_cuvette.mth"), "No.Colors?=3", "No.Colors?=31");
  text = replaced(text, "No.Pures?=3", "No.Pures?=31");
  for (int i = 0; i < 28; ++i) text += " 450 520 5 5 1\r\n";
  AppState state;
  ScriptedOperator op;
  EXPECT_TRUE(readText(state, op, text));
  EXPECT_TRUE(op.messages().empty());
  EXPECT_EQ(state.Method.NoColors, 31);
  EXPECT_EQ(state.Method.FixedPairs.colour(30).ExWl, 450.0f);
  EXPECT_EQ(CheckMethodForRun(state.Method, 1), "Number of colors must be between 1 and 30.");
}

// Whole numbers that leave 16 bits are named with their key and text, not read as 0 or as the
// value before; No.Pures must follow No.Colors.
TEST(MethodFile, NumbersThatDoNotFitAndStrayPuresAreNamedByTheCheck) {
  const std::string fixed = readGolden("method/fixed_cuvette.mth");
  AppState state;
  ScriptedOperator op;
  ASSERT_TRUE(readText(state, op, replaced(fixed, "No.Pures?=3", "No.Pures?=40000")));
  EXPECT_EQ(state.Method.NoPures, -1);
  EXPECT_EQ(CheckMethodForRun(state.Method, 1),
            "No.Pures 40000 does not fit: the method file must give a whole number from -32768 "
            "to 32767.");
  state.Method.NoPures = 3;  // typed in the editor since: the file's text no longer counts
  EXPECT_EQ(CheckMethodForRun(state.Method, 1), std::nullopt);
  ASSERT_TRUE(readText(state, op, replaced(fixed, "No.Pures?=3", "No.Pures?=7")));
  EXPECT_TRUE(state.Method.UnfitNumbers.empty());
  EXPECT_EQ(CheckMethodForRun(state.Method, 1),
            "No.Pures 7 must equal No.Colors (3): one pure sample is read for each colour.");
}

// A line where a section marker belongs that opens no section stays pending and is never read
// as a section; what the file declared before it is read.
TEST(MethodFile, ALineThatOpensNoSectionEndsTheReadWithoutFault) {
  const std::string golden = readGolden("method/fixed_synch_cuvette.mth");
  const std::string fixed = readGolden("method/fixed_cuvette.mth");
  AppState state;
  ScriptedOperator op;
  ASSERT_TRUE(readText(state, op, fixed + "JUNK LINE\r\n"));
  EXPECT_EQ(state.Method, testing::FixedCuvetteMethod());
  // A marker glued to the value before it leaves the scan section unread.
  AppState glued;
  ASSERT_TRUE(
      readText(glued, op, replaced(golden, "\r\nSYNCH SCAN SECTION", "SYNCH SCAN SECTION")));
  EXPECT_EQ(glued.Method.SynchScan, SynchScanSettings{});
  EXPECT_EQ(glued.Method.FixedPairs, testing::FixedSynchCuvetteMethod().FixedPairs);
  EXPECT_TRUE(op.messages().empty());
}

TEST(MethodFile, ControlCharactersInAValueAreRefused) {
  const std::string fixed = readGolden("method/fixed_cuvette.mth");
  const std::string cases[] = {
      replaced(fixed, "Operator?=JS", std::string("Operator?=J\0S", 13)),
      replaced(fixed, "Operator?=JS", "Operator?=J\x01S"),
  };
  for (const std::string& text : cases) {
    SCOPED_TRACE(testing::visible(text));
    AppState state;
    ScriptedOperator op;
    EXPECT_FALSE(readText(state, op, text));
    EXPECT_EQ(op.messages().size(), 1u);
  }
}

TEST(InstrumentRanges, WhatTheFluorimeterWouldRefuseIsNamed) {
  auto valid = [] {
    MethodSettings m = testing::FixedCuvetteMethod();
    m.Synch = true;
    m.SynchScan = {4, 4, 360, 700, 15, 0.5f};
    return m;
  };
  MethodSettings m = valid();
  EXPECT_EQ(InstrumentRangeProblem(m, kLs50B), std::nullopt);
  m.PMTVoltage = -1;  // the instrument's default
  EXPECT_EQ(InstrumentRangeProblem(m, kLs50B), std::nullopt);
  const std::pair<std::function<void(MethodSettings&)>, std::string> cases[] = {
      {[](MethodSettings& x) { x.ReadTime = 0.05f; },
       "The read time 0.05 is outside 0.1 to 100 s, which the fluorimeter would refuse."},
      {[](MethodSettings& x) { x.PMTVoltage = 100; },
       "The PMT voltage 100 is outside 200 to 1000 V"},
      {[](MethodSettings& x) { x.FixedPairs.colour(2).EmWl = 950; },
       "Colour 2: the emission wavelength 950 is outside 200 to 900 nm"},
      {[](MethodSettings& x) { x.FixedPairs.colour(1).ExSl = 1; },
       "Colour 1: the excitation slit 1 is outside 2.5 to 15 nm"},
      {[](MethodSettings& x) { x.SynchScan.UpperLimit = 890; },
       "The scan's excitation limit 890 is outside 200 to 800 nm"},
  };
  for (const auto& [change, said] : cases) {
    MethodSettings bad = valid();
    change(bad);
    const auto problem = InstrumentRangeProblem(bad, kLs50B);
    ASSERT_TRUE(problem.has_value()) << said;
    EXPECT_EQ(0u, problem->find(said)) << *problem;
  }
}

}  // namespace
}  // namespace zorvel
