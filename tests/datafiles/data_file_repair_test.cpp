// Reopening a set makes each file's end whole without ever losing a whole line or the header,
// whatever line ending the file came to have, and refuses what is not a file of the set.
#include "core/datafiles/data_file_repair.h"

#include <gtest/gtest.h>

#include "core/datafiles/data_set_headers.h"
#include "core/datafiles/record_lines.h"
#include "datafiles/data_set_examples.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::readFile;
using testing::visible;
using testing::writeFile;

struct KindSample {
  DataFileKind kind;
  std::string header;
  std::string record;  // one whole record, empty for the run log
};

// Every kind of file of the Liver set (two colours), written in the given line ending.
std::vector<KindSample> samplesIn(const std::string& eol) {
  AppState state = testing::LiverSetState();
  state.LineEnding = eol;
  const float readings[] = {1.5f, 0.25f};
  const float points[] = {10.5f, -2, 3};
  const CalendarTime when{2026, 3, 7, 14, 5, 9};
  const std::string scan = ScanRecordLine('S', 12, points, eol);
  return {
      {DataFileKind::Fixed, FixedHeaderText(state, when),
       FixedRecordLine('S', 12, std::nullopt, readings, "cloudy", eol)},
      {DataFileKind::Synch, SynchHeaderText(state, when), scan},
      {DataFileKind::Control, DatabaseHeaderText(state, true),
       DatabaseRecordLine('C', 12, readings, when, "", eol)},
      {DataFileKind::Blank, DatabaseHeaderText(state, false),
       DatabaseRecordLine('B', 12, readings, when, "", eol)},
      {DataFileKind::ScanControl, ScanDatabaseHeaderText(state, true, when), scan},
      {DataFileKind::ScanBlank, ScanDatabaseHeaderText(state, false, when), scan},
      {DataFileKind::RunLog, RunLogHeaderText(state), ""},
  };
}

std::string withoutEnding(std::string line) {
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.pop_back();
  return line;
}

// A long file is read at its ends only: its records then run past the blocks read.
std::string manyRecords(const std::string& record) {
  std::string records;
  while (!record.empty() && records.size() < 300000) records += record;
  return records;
}

TEST(DataFileRepair, EveryKindInEveryLineEndingLosesOnlyAPartialLastLine) {
  const std::string dir = testing::makeTempDir("repair-kinds");
  const MethodSettings method = testing::LiverSetState().Method;
  for (const std::string eol : {"\r\n", "\r", "\n"}) {
    for (const KindSample& sample : samplesIn(eol))
      for (const bool longFile : {false, true}) {
        KindSample k = sample;
        if (longFile) k.header += manyRecords(k.record);
        const DataFileShape shape = ShapeOf(k.kind, method);
        const std::string whole = k.header + k.record + k.record;
        const std::string record = k.record.empty() ? "S1" : withoutEnding(k.record);
        struct Case {
          std::string before, after;
          bool logged;
        } cases[] = {
            {whole, whole, false},
            {k.header, k.header, false},
            // Half a record is cut; the whole lines before it stay.
            {whole + record.substr(0, record.size() / 2 + 1), whole, true},
        };
        std::vector<Case> all(std::begin(cases), std::end(cases));
        // A whole record that lost its line ending gets it back (not for the log's header).
        if (!k.record.empty()) all.push_back({k.header + k.record + record, whole, true});
        if (eol == "\r\n" && !k.record.empty())
          all.push_back({whole.substr(0, whole.size() - 1), whole, true});
        for (const Case& c : all) {
          SCOPED_TRACE(visible(eol) + " " + shape.firstLineStart + " " +
                       visible(c.before.substr(c.before.size() -
                                               std::min<std::size_t>(c.before.size(), 300))));
          const std::string path = dir + "file";
          writeFile(path, c.before);
          const DataFileRepair r = RepairDataFile(path, shape);
          ASSERT_TRUE(r.ok) << r.refusal;
          EXPECT_EQ(r.lineEnding, eol);
          EXPECT_SAME_BYTES(c.after, readFile(path));
          EXPECT_EQ(c.logged, !r.logEntry.empty()) << r.logEntry;
        }
      }
  }
}

TEST(DataFileRepair, WhatIsNotAFileOfTheSetIsRefusedAndLeftAsItIs) {
  const std::string dir = testing::makeTempDir("repair-refused");
  const MethodSettings method = testing::LiverSetState().Method;
  const KindSample fixed = samplesIn("\r\n")[0];
  const std::string path = dir + "run.FIX";
  const std::string cutHeader = fixed.header.substr(0, fixed.header.find("ex wl"));
  for (const std::string& bytes :
       {std::string(), std::string("\x7f\x45LF\x02\x01\x01\0\0\xff\xfe\r\n", 14),
        samplesIn("\r\n")[2].header, cutHeader, cutHeader.substr(0, 30)}) {
    SCOPED_TRACE(visible(bytes));
    writeFile(path, bytes);
    const DataFileRepair r = RepairDataFile(path, ShapeOf(DataFileKind::Fixed, method));
    EXPECT_FALSE(r.ok);
    EXPECT_NE(std::string::npos, r.refusal.find(path)) << r.refusal;
    EXPECT_SAME_BYTES(bytes, readFile(path));
  }
  EXPECT_NE(
      std::string::npos,
      RepairDataFile(path, ShapeOf(DataFileKind::Fixed, method)).refusal.find("lacks its header"));
  EXPECT_FALSE(RepairDataFile(dir + "missing.FIX", ShapeOf(DataFileKind::Fixed, method)).ok);
}

TEST(DataFileRepair, ThePartialLineRemovedIsNamedByteForByteForTheLog) {
  const std::string dir = testing::makeTempDir("repair-log");
  const KindSample fixed = samplesIn("\r\n")[0];
  writeFile(dir + "run.FIX", fixed.header + "S13\t1.2");
  const DataFileRepair r = RepairDataFile(
      dir + "run.FIX", ShapeOf(DataFileKind::Fixed, testing::LiverSetState().Method));
  EXPECT_EQ(r.logEntry,
            "Data file " + dir + "run.FIX: removed a partial last line of 7 bytes: S13\\t1.2");
}

}  // namespace
}  // namespace zorvel
