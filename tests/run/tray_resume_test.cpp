// Carrying on a tray run that stopped part-way: the set's files are cut after each record the
// uninterrupted run wrote, as a kill at that moment leaves them, and the resumed run must end
// with the uninterrupted run's files byte for byte.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>

#include "core/datafiles/data_set_headers.h"
#include "core/run/run_launch.h"
#include "run/tray_fixture.h"

namespace zorvel {
namespace {

using testing::readFile;
using testing::TrayFixture;
using testing::TrayMethod;
using testing::writeFile;

// Tubes 5 to 12 with a control and a blank every second tube.
MethodSettings EightTubes(int pures = 0, int repetitions = 1, bool synch = false) {
  MethodSettings m = TrayMethod(true, synch, repetitions);
  m.NoPures = static_cast<std::int16_t>(pures);
  m.Autosampler.EndingTube = 12;
  return m;
}

RunSetup Setup(bool pures) {
  RunSetup setup;
  setup.PuresPending = pures;
  setup.PureStartPending = pures;
  return setup;
}

std::string Extension(const std::string& path) {
  return path.substr(path.rfind('.'));
}

// The set's files of the fixture's method, each with its header and nothing else.
std::vector<std::string> SetFiles(const AppState& s) {
  std::vector<std::string> files{s.DataSet.FixPath, s.DataSet.CtlPath, s.DataSet.BlkPath};
  if (s.Method.Synch)
    files.insert(files.end(), {s.DataSet.SynPath, s.DataSet.StlPath, s.DataSet.SlkPath});
  return files;
}

// Writes the headers; returns each file's header length by extension.
std::map<std::string, std::size_t> WriteHeaders(TrayFixture& fx) {
  const CalendarTime created{2026, 11, 25, 9, 0, 0};
  const AppState& s = fx.state;
  writeFile(s.DataSet.FixPath, FixedHeaderText(s, created));
  writeFile(s.DataSet.CtlPath, DatabaseHeaderText(s, true));
  writeFile(s.DataSet.BlkPath, DatabaseHeaderText(s, false));
  if (s.Method.Synch) {
    writeFile(s.DataSet.SynPath, SynchHeaderText(s, created));
    writeFile(s.DataSet.StlPath, ScanDatabaseHeaderText(s, true, created));
    writeFile(s.DataSet.SlkPath, ScanDatabaseHeaderText(s, false, created));
  }
  std::map<std::string, std::size_t> sizes;
  for (const std::string& path : SetFiles(s)) sizes[Extension(path)] = readFile(path).size();
  return sizes;
}

// The uninterrupted run: its files' bytes, its journal, and which file each record went to,
// in the order they were written.
struct Uninterrupted {
  std::map<std::string, std::string> records;  // each file's records, by extension
  std::string journal;
  std::vector<std::string> recordFiles;  // extensions
  std::vector<std::string> tubes;        // "Tube 5: Sample 1" ...
  int steps = 0;                         // the run's yields to its host
};

Uninterrupted RunWhole(const MethodSettings& method, bool pures) {
  TrayFixture fx(method, Setup(pures));
  const auto headers = WriteHeaders(fx);
  Uninterrupted whole;
  fx.onYield = [&whole] { ++whole.steps; };
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  for (const std::string& path : SetFiles(fx.state))
    whole.records[Extension(path)] = readFile(path).substr(headers.at(Extension(path)));
  whole.journal = readFile(TrayJournalPath(fx.state.DataSet));
  for (const std::string& note : fx.notes) {
    if (note.rfind("Record ", 0) == 0) whole.recordFiles.push_back(Extension(note));
    if (note.rfind("Tube ", 0) == 0) whole.tubes.push_back(note);
  }
  return whole;
}

// The first `records` records of the uninterrupted run, as their files held them then; returns
// the header lengths.
std::map<std::string, std::size_t> CutAfter(TrayFixture& fx, const Uninterrupted& whole,
                                            std::size_t records) {
  std::map<std::string, std::size_t> kept;
  for (std::size_t k = 0; k < records; ++k) ++kept[whole.recordFiles[k]];
  const auto headers = WriteHeaders(fx);
  for (const std::string& path : SetFiles(fx.state)) {
    const std::string& all = whole.records.at(Extension(path));
    std::size_t at = 0;
    for (std::size_t n = 0; n < kept[Extension(path)]; ++n) at = all.find("\r\n", at) + 2;
    writeFile(path, readFile(path) + all.substr(0, at));
  }
  // The journal as the run left it when it started, before it completed.
  std::string journal = whole.journal;
  journal.replace(journal.find("Completed?=1"), 12, "Completed?=0");
  writeFile(TrayJournalPath(fx.state.DataSet), journal);
  return headers;
}

// Reopens the cut set, resumes it and reads the tray: the tubes it visited.
std::vector<std::string> Resume(TrayFixture& fx) {
  const std::optional<TrayResume> resume = OfferTrayResume(fx.state, fx.op, false);
  EXPECT_TRUE(resume.has_value());
  fx.state.Flags.AutosamplerPortOpen = true;
  const RunLaunch launch = LaunchAppend(
      LaunchServices{fx.state, fx.op, fx.clock, fx.printer, fx.filing, fx.filing, {}, {}}, false, 1,
      0, resume);
  fx.notes.clear();
  fx.reopen(launch.setup);
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  std::vector<std::string> tubes;
  for (const std::string& note : fx.notes) {
    if (note.rfind("Tube ", 0) == 0) tubes.push_back(note);
  }
  return tubes;
}

// Each record's label and, in ".FIX", its tube: "S3 7".
std::vector<std::string> Labels(const std::string& records) {
  std::vector<std::string> labels;
  for (std::size_t at = 0; at < records.size(); at = records.find("\r\n", at) + 2) {
    const std::size_t tab = records.find('\t', at);
    const std::size_t space = records.find(' ', at);
    const std::size_t end = std::min(std::min(tab, space), records.find("\r\n", at));
    std::string label = records.substr(at, end - at);
    if (records[at] == 'S' || records[at] == 'P') {
      label += " " + records.substr(end + 1, records.find_first_of("\t\r", end + 1) - end - 1);
    }
    labels.push_back(label);
  }
  return labels;
}

// With sameReadings the files match byte for byte: a tube drawn again reads as it did. Else
// (a tube's second replicate read from a fresh draw) the labels match.
void ExpectEveryCutResumesToTheWholeRun(const MethodSettings& method, bool pures,
                                        bool sameReadings = true) {
  const Uninterrupted whole = RunWhole(method, pures);
  ASSERT_GT(whole.recordFiles.size(), 10u);
  for (std::size_t cut = 0; cut < whole.recordFiles.size(); ++cut) {
    SCOPED_TRACE("cut after record " + std::to_string(cut));
    TrayFixture fx(method);
    const auto headers = CutAfter(fx, whole, cut);
    const std::vector<std::string> visited = Resume(fx);
    for (const std::string& path : SetFiles(fx.state)) {
      const std::string& expected = whole.records.at(Extension(path));
      const std::string actual = readFile(path).substr(headers.at(Extension(path)));
      if (sameReadings) {
        EXPECT_SAME_BYTES(expected, actual) << path;
      } else {
        EXPECT_EQ(Labels(expected), Labels(actual)) << path;
      }
    }
    // No tube whose records were all on disk is drawn again.
    ASSERT_LE(visited.size(), whole.tubes.size());
    EXPECT_TRUE(std::equal(visited.begin(), visited.end(), whole.tubes.end() - visited.size()));
    EXPECT_FALSE(OfferTrayResume(fx.state, fx.op, false).has_value());
  }
}

TEST(TrayResume, AStopAfterAnyRecordResumesToTheUninterruptedRunsFiles) {
  ExpectEveryCutResumesToTheWholeRun(EightTubes(), false);
}

TEST(TrayResume, AStopAmongThePuresResumesToTheUninterruptedRunsFiles) {
  ExpectEveryCutResumesToTheWholeRun(EightTubes(3), true);
}

TEST(TrayResume, ATubeCutBetweenItsRecordsReadsOnlyThoseItLacks) {
  MethodSettings fourTubes = TrayMethod(true, true, 2);
  ExpectEveryCutResumesToTheWholeRun(fourTubes, false, false);
}

TEST(TrayResume, TheQuestionNamesTheRunsStartWhereItStoppedAndWhereItGoesOn) {
  const Uninterrupted whole = RunWhole(EightTubes(), false);
  const auto question = [&whole](std::size_t cut) {
    TrayFixture fx(EightTubes());
    CutAfter(fx, whole, cut);
    fx.op.answerNext(answer::kNo);
    EXPECT_FALSE(OfferTrayResume(fx.state, fx.op, true).has_value());
    const auto boxes = fx.op.messages();
    EXPECT_EQ(1u, boxes.size());
    EXPECT_EQ("ZORVEL QUESTION", boxes.back().title);
    EXPECT_EQ(BoxButtons::YesNo, boxes.back().buttons);
    return boxes.back().text;
  };
  const std::string started = "The tray run started 03-07-2000 14:05:11 ";
  // Records: control, blank, S5, S6, control, blank, S7 ...
  EXPECT_EQ(started + "ended before tube 5 of 5 - 12.  Resume at tube 5?", question(1));
  EXPECT_EQ(started + "ended after tube 6 of 5 - 12.  Resume at tube 7?", question(5));
  EXPECT_EQ(started + "ended after tube 7 of 5 - 12.  Resume at tube 8?", question(7));
  const std::size_t all = whole.recordFiles.size();
  EXPECT_EQ(started + "ended after tube 12 of 5 - 12.  Resume with the closing control and blank?",
            question(all - 2));
  EXPECT_EQ(started + "ended after tube 12 of 5 - 12.  Resume with the closing blank?",
            question(all - 1));
}

TEST(TrayResume, NoLeavesTheRunAsAnAppendedSetStartsAndACompletedRunOffersNothing) {
  MethodSettings method = EightTubes();
  const Uninterrupted whole = RunWhole(method, false);
  TrayFixture fx(method);
  CutAfter(fx, whole, 7);
  fx.state.Method.Autosampler.StartingTube = 9;
  fx.op.answerNext(answer::kNo);
  fx.state.Flags.AutosamplerPortOpen = true;
  const RunLaunch launch = LaunchAppend(
      LaunchServices{fx.state, fx.op, fx.clock, fx.printer, fx.filing, fx.filing, {}, {}}, false, 1,
      0, OfferTrayResume(fx.state, fx.op));
  EXPECT_FALSE(launch.setup.resume.has_value());
  EXPECT_TRUE(launch.setup.FirstRead);
  EXPECT_EQ(3, launch.setup.SampleNumber);  // S5, S6, S7 on file
  EXPECT_EQ(9, fx.state.Method.Autosampler.StartingTube);
  // Once a run on the set completes, its journal says so.
  fx.reopen(launch.setup);
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  EXPECT_FALSE(OfferTrayResume(fx.state, fx.op, false).has_value());
  EXPECT_EQ(1u, fx.op.messages().size());
}

// Stops the run with `stop` at random steps and carries it on after each stop (once `mend` has
// put right what stopped it) until it completes: the files end as the uninterrupted run's.
void ExpectStopsResumeToTheWholeRun(const std::function<void(TrayFixture&)>& stop,
                                    const std::function<void(TrayFixture&)>& mend, unsigned seed,
                                    bool sameReadings = true) {
  const MethodSettings method = EightTubes();
  const Uninterrupted whole = RunWhole(method, false);
  TrayFixture fx(method);
  const auto headers = WriteHeaders(fx);
  std::mt19937 random(seed);
  // Up to about one visit's steps between stops.
  std::uniform_int_distribution<int> steps(1, whole.steps / static_cast<int>(whole.tubes.size()));
  int step = 0, stopAt = steps(random), stops = 0;
  fx.onYield = [&] {
    if (++step == stopAt) stop(fx);
  };
  fx.controller->press(RunButton::InitRead);
  fx.controller->press(RunButton::InitRead);
  for (auto resume = OfferTrayResume(fx.state, fx.op, false); resume;
       resume = OfferTrayResume(fx.state, fx.op, false)) {
    SCOPED_TRACE("stop " + std::to_string(++stops) + " at step " + std::to_string(stopAt));
    mend(fx);
    step = 0;
    stopAt = stops < 20 ? steps(random) : 0;
    fx.state.Flags.AutosamplerPortOpen = true;
    fx.reopen(
        LaunchAppend(
            LaunchServices{fx.state, fx.op, fx.clock, fx.printer, fx.filing, fx.filing, {}, {}},
            false, 1, 0, resume)
            .setup);
    fx.controller->press(RunButton::InitRead);
    fx.controller->press(RunButton::InitRead);
  }
  EXPECT_GE(stops, 20);
  for (const std::string& path : SetFiles(fx.state)) {
    const std::string& expected = whole.records.at(Extension(path));
    const std::string actual = readFile(path).substr(headers.at(Extension(path)));
    if (sameReadings) {
      EXPECT_SAME_BYTES(expected, actual) << path;
    } else {
      EXPECT_EQ(Labels(expected), Labels(actual)) << path;
    }
  }
}

TEST(TrayResume, RunsAbortedWithF5AtRandomMomentsResumeToTheUninterruptedRunsFiles) {
  ExpectStopsResumeToTheWholeRun(
      [](TrayFixture& fx) { fx.controller->keyDown(Key::F5); },  // "Yes" to the abort
      [](TrayFixture&) {}, 5);
}

// The dilutor falls silent; after the silence bound the operator gives it up with Cancel, and the
// run ends there (the arm still goes home). The dilutor's initialisation when the run is taken up
// again empties what the fault left in its syringe, so the files match byte for byte.
TEST(TrayResume, RunsGivenUpWithCancelOnASilentDilutorResumeToTheUninterruptedRunsFiles) {
  ExpectStopsResumeToTheWholeRun(
      [](TrayFixture& fx) {
        fx.pumpModel.setSilent(true);
        fx.op.answerNext(answer::kCancel);
      },
      [](TrayFixture& fx) { fx.pumpModel.setSilent(false); }, 9, true);
}

}  // namespace
}  // namespace zorvel
