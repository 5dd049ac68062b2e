#include <filesystem>

#include <gtest/gtest.h>

#include "core/datafiles/data_set_commands.h"
#include "core/datafiles/data_set_headers.h"
#include "core/datafiles/last_sample_number.h"
#include "core/files/file_output.h"
#include "core/method/method_codes.h"
#include "core/method/method_file.h"
#include "core/platform/scripted_operator.h"
#include "method/method_examples.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::readGolden;
using testing::writeFile;

class RecordingDatabases final : public QualityDatabases {
 public:
  void resetCounts() override {}
  void load(const std::string& ctl, const std::string& blk) override {
    loaded.push_back(ctl + "|" + blk);
  }
  std::vector<std::string> loaded;
};

// A data set made as a run makes it: the method file, the headers, then the records appended.
struct SavedSet {
  std::string directory;
  std::string methodPath;
  std::string dataPath;  // the file it made, which reopening chooses
};

SavedSet makeSet(const MethodSettings& method, const std::string& name,
                 const std::string& records) {
  SavedSet set;
  set.directory = testing::makeTempDir("reopen");
  set.methodPath = set.directory + "Study.MTH";
  EXPECT_TRUE(WriteMethodFile(method, set.methodPath));
  AppState writer;
  FillColourTables(writer);
  writer.Method = method;
  writer.LineEnding = LineEndingFor(method.FileType);
  writer.DataSet.MethodFilePath = set.methodPath;
  NoQualityDatabases none;
  WriteDataSetHeaders(writer, set.directory + name, CalendarTime{}, none);
  const std::string base = set.directory + name.substr(0, name.find('.'));
  set.dataPath = base + (method.Fixed ? ".FIX" : ".SYN");
  EXPECT_TRUE(AppendRecord(set.dataPath, records));
  return set;
}

TEST(ReopenDataFileSet, ContinuesAfterTheLastNumberedRecord) {
  const SavedSet set = makeSet(testing::FixedCuvetteMethod(), "liver.fix",
                               "B0\t0.010\t0.020\t0.030\r\n"
                               "P1\t5.000\t0.100\t0.200\r\n"
                               "S16\t1.000\t2.000\t3.000\r\n"
                               "R17\t1.000\t2.000\t3.000\r\n"
                               "S17\t1.000\t2.000\t3.000\tcloudy\r\n"
                               "P9\t5.000\t0.100\t0.200\r\n"
                               "\r\n");
  AppState state;
  ScriptedOperator op;
  RecordingDatabases databases;
  const ReopenResult r = ReopenDataFileSet(state, op, set.dataPath, databases);
  ASSERT_TRUE(r.ok);
  EXPECT_TRUE(op.shown.empty());
  EXPECT_EQ(r.lastSampleNumber, 17);
  EXPECT_EQ(r.nextSampleNumber, 18);
  EXPECT_TRUE(r.samplesPresent);
  EXPECT_TRUE(state.Method == testing::FixedCuvetteMethod());
  EXPECT_EQ(state.DataSet.MethodFilePath, set.methodPath);
  EXPECT_EQ(state.DataSet.DataSetName, "liver");
  EXPECT_EQ(state.DataSet.FixPath, set.directory + "liver.FIX");
  EXPECT_EQ(state.DataSet.SynPath, "");
  EXPECT_EQ(state.LineEnding, "\r\n");
  EXPECT_EQ(r.window.methodFileLabel, set.methodPath);
  EXPECT_EQ(r.window.dataFileLabel, set.directory + "liver.FIX");
  EXPECT_EQ(databases.loaded,
            std::vector<std::string>{set.directory + "liver.CTL|" + set.directory + "liver.BLK"});
}

TEST(ReopenDataFileSet, SetOfPuresAloneStartsAtOne) {
  const LastSample last =
      LastSampleInFixedText("em wl\t515\r\nB0\t0.010\r\nP1\t5.000\r\nP2\t5.000\r\nP3\t5.000\r\n");
  EXPECT_EQ(last.number, 0);
  EXPECT_FALSE(last.samplesPresent);
}

TEST(ReopenDataFileSet, ScanSetInMacintoshLineEnds) {
  MethodSettings method = testing::SynchAutosamplerMethod();
  method.FileType = DataFileType::Macintosh;
  const SavedSet set = makeSet(method, "plate.syn",
                               "B0  1 2 \rP1  1.5 2 \rS1  3 4 \rC1  3 4 \rS3  1 2 \rB3  0 0 \r");
  AppState state;
  ScriptedOperator op;
  RecordingDatabases databases;
  const ReopenResult r = ReopenDataFileSet(state, op, set.dataPath, databases);
  ASSERT_TRUE(r.ok);
  EXPECT_EQ(r.lastSampleNumber, 3);
  EXPECT_EQ(r.nextSampleNumber, 4);
  EXPECT_TRUE(r.samplesPresent);
  EXPECT_EQ(state.LineEnding, "\r");
  EXPECT_EQ(state.DataSet.SynPath, set.directory + "plate.SYN");
  EXPECT_EQ(state.DataSet.LogFilePath, set.directory + "plate.LOG");
  EXPECT_EQ(r.window.dataFileLabel, set.directory + "plate.SYN");
  EXPECT_TRUE(databases.loaded.empty());
}

// Converts every line ending of a file to another, as a copying tool would.
void convertLineEnds(const std::string& path, const std::string& eol) {
  std::string bytes = testing::readFile(path);
  std::string out;
  for (std::size_t k = 0; k < bytes.size(); ++k) {
    if (bytes[k] == '\r' && k + 1 < bytes.size() && bytes[k + 1] == '\n') ++k;
    if (bytes[k] == '\r' || bytes[k] == '\n') {
      out += eol;
    } else {
      out += bytes[k];
    }
  }
  writeFile(path, out);
}

TEST(ReopenDataFileSet, ACopiedSetKeepsEveryLineWhateverItsLineEnds) {
  for (const std::string eol : {"\n", "\r"}) {
    SCOPED_TRACE(testing::visible(eol));
    const SavedSet set = makeSet(testing::FixedCuvetteMethod(), "liver.fix",
                                 "S16\t1.000\t2.000\t3.000\r\nS17\t1.000\t2.000\t3.000\r\n");
    for (const char* ext : {"FIX", "CTL", "BLK"})
      convertLineEnds(set.directory + "liver." + ext, eol);
    const std::string before = testing::readFile(set.dataPath);
    AppState state;
    ScriptedOperator op;
    NoQualityDatabases none;
    const ReopenResult r = ReopenDataFileSet(state, op, set.dataPath, none);
    ASSERT_TRUE(r.ok) << (op.messages().empty() ? "" : op.messages()[0].text);
    EXPECT_SAME_BYTES(before, testing::readFile(set.dataPath));
    EXPECT_EQ(r.nextSampleNumber, 18);
    EXPECT_EQ(state.LineEnding, eol);
    EXPECT_TRUE(r.logEntries.empty());
  }
}

TEST(ReopenDataFileSet, AWholeLastRecordIsCompletedAndATornOneCutAndLogged) {
  const SavedSet set = makeSet(testing::FixedCuvetteMethod(), "liver.fix",
                               "S16\t1.000\t2.000\t3.000\r\nS17\t1.000\t2.000\t3.000");
  writeFile(set.directory + "liver.CTL", testing::readFile(set.directory + "liver.CTL") +
                                             "C4\t 1 \t 2 \t 3.5 \t03-07-2026\t14:0");
  AppState state;
  ScriptedOperator op;
  NoQualityDatabases none;
  const ReopenResult r = ReopenDataFileSet(state, op, set.dataPath, none);
  ASSERT_TRUE(r.ok);
  EXPECT_EQ(r.nextSampleNumber, 18);
  const std::string fix = testing::readFile(set.dataPath);
  EXPECT_EQ(fix.substr(fix.size() - 23), "S17\t1.000\t2.000\t3.000\r\n");
  const std::string ctl = testing::readFile(set.directory + "liver.CTL");
  EXPECT_EQ(ctl.substr(ctl.size() - 9), "Comment\r\n");
  EXPECT_EQ(std::string::npos, ctl.find("C4"));
  ASSERT_EQ(r.logEntries.size(), 2u);
  EXPECT_NE(std::string::npos, r.logEntries[0].find("completed the whole last record S17"));
  EXPECT_NE(std::string::npos, r.logEntries[1].find("removed a partial last line of 32 bytes"));
}

TEST(ReopenDataFileSet, ASetWithAFileWithoutItsHeaderIsRefused) {
  const SavedSet set = makeSet(testing::FixedCuvetteMethod(), "liver.fix", "S4\t1\t2\t3\r\n");
  writeFile(set.directory + "liver.BLK", "BLANK FILE: x\r\n");
  AppState state;
  ScriptedOperator op;
  NoQualityDatabases none;
  EXPECT_FALSE(ReopenDataFileSet(state, op, set.dataPath, none).ok);
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text, set.directory +
                                       "liver.BLK lacks its header (1 of its 3 lines): nothing is "
                                       "appended to it.  The file was left as it is.");
  EXPECT_TRUE(state.DataSet == DataSetPaths{});
}

TEST(ReopenDataFileSet, TheHighestNumberOfBothFilesCountsAndAOneSidedReadingIsReported) {
  MethodSettings method = testing::FixedCuvetteMethod();
  method.Synch = true;
  const SavedSet set =
      makeSet(method, "liver.fix", "S4\t1.000\t2.000\t3.000\r\nS5\t1.000\t2.000\t3.000\r\n");
  writeFile(set.directory + "liver.SYN",
            testing::readFile(set.directory + "liver.SYN") + "S4  1 2 \r\n");
  AppState state;
  ScriptedOperator op;
  NoQualityDatabases none;
  const ReopenResult r = ReopenDataFileSet(state, op, set.dataPath, none);
  ASSERT_TRUE(r.ok);
  EXPECT_EQ(r.nextSampleNumber, 6);
  ASSERT_EQ(op.messages().size(), 1u);
  EXPECT_EQ(op.messages()[0].text,
            "The last reading of the data set is not in both of its files: liver.FIX ends with "
            "S5, liver.SYN with S4.  A run was interrupted between the two records; numbering "
            "continues after 5.");
  EXPECT_EQ(r.logEntries, std::vector<std::string>{op.messages()[0].text});
}

// A long set is read from its end; whatever the line ends, where the records fall against the
// blocks read, or how far back the last number, label or sample lies, it must agree with
// reading the whole text.
TEST(LastSampleInFile, ReadingFromTheEndAgreesWithReadingTheWholeText) {
  const std::string dir = testing::makeTempDir("lastsample");
  for (const std::string eol : {"\r\n", "\r", "\n"}) {
    std::string records;
    for (int k = 1; records.size() < 200000; ++k)
      records += (k % 7 ? "S" : "C") + std::to_string(k % 30000) + "\t  101.500" + eol;
    for (const bool fixed : {true, false}) {
      const std::string head = std::string(fixed ? "LONG.FIX\tx" : "LONG.SYN\tx") + eol +
                               (fixed ? "em wl" : "Initial") + eol;
      for (const std::string& tail :
           {std::string(), "C7\t1" + eol + "P3\t5" + eol + "B0\t1" + eol,
            "S40000\t1" + eol + "R40000\t1" + eol, std::string("C9\t1"), "x\tgarbled" + eol}) {
        for (const std::string& text :
             {head + records + tail, head + tail, head + "P1\t5" + eol + "P2\t5" + eol + tail}) {
          writeFile(dir + "LONG", text);
          const LastSample expected =
              fixed ? LastSampleInFixedText(text) : LastSampleInScanText(text);
          const LastSample read =
              LastSampleInFile(dir + "LONG", fixed ? DataFileKind::Fixed : DataFileKind::Synch);
          SCOPED_TRACE(testing::visible(eol + tail) + " " + std::to_string(text.size()));
          EXPECT_EQ(expected.number, read.number);
          EXPECT_EQ(expected.samplesPresent, read.samplesPresent);
          EXPECT_EQ(expected.lastLabel, read.lastLabel);
        }
      }
    }
  }
  EXPECT_EQ(0, LastSampleInFile(dir + "missing.FIX", DataFileKind::Fixed).number);
}

TEST(ReopenDataFileSet, GarbledLinesAreNoRecordsAndNumbersPast16BitsAreKept) {
  EXPECT_EQ(LastSampleInFixedText("em wl\r\nS40\t1.000\r\n#x\tgarbled\r\nS\t2\r\n").number, 40);
  EXPECT_EQ(LastSampleInFixedText("em wl\r\nS40000\t1.000\r\n").number, 40000);
  EXPECT_EQ(LastSampleInScanText("Initial\rS9  1 \rS1x 2 \r").number, 9);
}

// A record whose number cannot be read is not numbered past in silence: the operator is told
// which record of which file, and the set keeps it.
TEST(ReopenDataFileSet, ARecordNumberThatCannotBeReadIsNamed) {
  for (const std::string label : {"S99999999999999999", "S-7"}) {
    const SavedSet set =
        makeSet(testing::FixedCuvetteMethod(), "liver.fix",
                "S16\t1.000\t2.000\t3.000\r\n" + label + "\t1.000\t2.000\t3.000\r\n");
    AppState state;
    ScriptedOperator op;
    RecordingDatabases databases;
    const ReopenResult r = ReopenDataFileSet(state, op, set.dataPath, databases);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.nextSampleNumber, 17);
    const std::string said = "The data file liver.FIX holds the record \"" + label +
                             "\" after its last readable record number (16); its number cannot "
                             "be read.  Numbering continues after 16.";
    ASSERT_EQ(op.messages().size(), 1u);
    EXPECT_EQ(op.messages()[0].text, said);
    EXPECT_EQ(r.logEntries, std::vector<std::string>{said});
    EXPECT_NE(testing::readFile(set.dataPath).find(label + "\t"), std::string::npos);
  }
  // A folder chosen as the set is named as such.
  AppState state;
  ScriptedOperator op;
  RecordingDatabases databases;
  const std::string folder = testing::makeTempDir("reopen-folder") + "SET.FIX";
  std::filesystem::create_directory(folder);
  EXPECT_FALSE(ReopenDataFileSet(state, op, folder, databases).ok);
  EXPECT_EQ(
      op.messages().at(0).text,
      "The data file " + folder + " is a folder; a data set's .FIX or .SYN file is expected.");
}

TEST(ReopenDataFileSet, BadHeadersAndMissingMethodsLeaveTheSetClosed) {
  const std::string directory = testing::makeTempDir("bad");
  const std::string methodPath = directory + "m.mth";
  writeFile(methodPath, readGolden("method/fixed_cuvette.mth"));
  struct Case {
    std::string text;
    std::string message;
  };
  const std::vector<Case> cases = {
      {"", "Invalid data file format. Line 1."},
      {"Data File /x/run.FIX\r\nMethod name\t" + methodPath + "\r\n",
       "Invalid data file format. Line 1."},
      {"Data File\t/x/run.FIX\r\nMethod name " + methodPath + "\r\n",
       "Invalid file format. Line 2."},
      {"Data File\t/x/run.FIX\r\n", "Invalid file format. Line 2."},
      // A comma ends the first field; what follows it is read as the second line.
      {"Data File\t/x/a,b.FIX\r\nMethod name\t" + methodPath + "\r\n",
       "Invalid file format. Line 2."},
      {"Data File\t/x/run.FIX\r\nMethod name\t" + directory + "gone.mth\r\n",
       InvalidMethodFileMessage(directory + "gone.mth")},
      {"\xff\xfe\t\x01\r\n\t\r\n", InvalidMethodFileMessage("")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::visible(c.text));
    writeFile(directory + "run.FIX", c.text);
    AppState state;
    state.DataSet.FixPath = "/before.FIX";
    const DataSetPaths before = state.DataSet;
    ScriptedOperator op;
    NoQualityDatabases none;
    EXPECT_FALSE(ReopenDataFileSet(state, op, directory + "run.FIX", none).ok);
    ASSERT_EQ(op.messages().size(), 1u);
    EXPECT_EQ(op.messages()[0].text, c.message);
    EXPECT_EQ(op.messages()[0].title, "ZORVEL ERROR");
    EXPECT_TRUE(state.DataSet == before);
  }
}

TEST(AppendDataFile, DialogMissingFileAndSuccess) {
  const SavedSet set = makeSet(testing::FixedCuvetteMethod(), "liver.fix", "S4\t1\t2\t3\r\n");
  AppState state;
  state.DataDirectory = set.directory;
  NoQualityDatabases none;

  ScriptedOperator cancelled;
  EXPECT_FALSE(AppendDataFile(state, cancelled, none).ok);
  ASSERT_EQ(cancelled.shown.size(), 1u);
  const FileDialogRequest& dialog = cancelled.shown[0].dialog;
  EXPECT_EQ(dialog.defaultExtension, "FIX;*.SYN");
  EXPECT_EQ(dialog.initialDirectory, set.directory);
  EXPECT_EQ(dialog.flags, 4096);

  ScriptedOperator missing;
  missing.chooseNext(set.directory + "other.fix");
  EXPECT_FALSE(AppendDataFile(state, missing, none).ok);
  ASSERT_EQ(missing.messages().size(), 1u);
  EXPECT_EQ(missing.messages()[0].text, "File does not exist.");
  EXPECT_EQ(missing.messages()[0].icon, BoxIcon::Exclamation);

  ScriptedOperator chosen;
  chosen.chooseNext(set.directory + "liver.FIX");
  const ReopenResult r = AppendDataFile(state, chosen, none);
  ASSERT_TRUE(r.ok);
  EXPECT_EQ(r.window.fileAndInstrumentMenusEnabled, false);
  EXPECT_TRUE(r.window.showMethod);
  EXPECT_EQ(r.window.newDataSet, false);
  EXPECT_EQ(r.window.firstSampleNumber, 5);
}

}  // namespace
}  // namespace zorvel
