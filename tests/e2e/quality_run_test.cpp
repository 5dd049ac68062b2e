// zorvel-run with the control and blank checks in place: the databases are built on the
// simulated bench, a control far outside the band raises the alert, and a reopened set
// reloads both databases.

#include <gtest/gtest.h>

#include <QProcess>

#include "core/method/method_file.h"
#include "e2e/run_helpers.h"

#if defined(ZORVEL_RUN_EXECUTABLE)

namespace zorvel {
namespace {

// One fixed colour on one dye of the bench, read long enough that readings of one cuvette
// agree well within the 5 % of the alert rule. The cuvettes are read in the order listed.
std::string Workspace() {
  const std::string dir = e2e::makeWorkspace("e2e-qc");
  MethodSettings m;
  m.Fixed = true;
  m.NoColors = 1;
  m.ReadTime = 0.25f;
  m.ReadTimePures = 0.25f;
  m.ScanSpeed = 1500;
  m.FilterSetting = EmissionFilter::None;
  m.PMTVoltage = 820;
  m.Repetitions = 1;
  m.AmtSolvent = 1;
  m.Operator = "QC";
  m.StudyId = "Controls";
  m.FixedPairs.colour(1) = {493, 518, 5, 5, 4};
  EXPECT_TRUE(WriteMethodFile(m, dir + "METHODS/QC.MTH"));
  testing::writeFile(dir + "bench.txt",
                     "cuvette control 1: Yellow-Green=1\n"
                     "cuvette blank 1:\n"
                     "cuvette control 2: Yellow-Green=1\n"
                     "cuvette blank 2:\n"
                     "cuvette control 3: Yellow-Green=1\n"
                     "cuvette blank 3:\n"
                     "cuvette far control: Yellow-Green=3\n"
                     "cuvette never read:\n");
  return dir;
}

struct Finished {
  int exitCode = -1;
  std::string out;
  std::string err;
};

Finished RunWith(const std::string& dir, const std::string& dataOption,
                 const std::string& answers) {
  testing::writeFile(dir + "answers.txt", answers);
  QProcess run;
  run.start(ZORVEL_RUN_EXECUTABLE,
            {"--start-dir", QString::fromStdString(dir), "--method",
             QString::fromStdString(dir + "METHODS/QC.MTH"), QString::fromStdString(dataOption),
             QString::fromStdString(dir + "DATA/QC.FIX"), "--answers",
             QString::fromStdString(dir + "answers.txt"), "--port", "COM1=sim", "--bench",
             QString::fromStdString(dir + "bench.txt")});
  EXPECT_TRUE(run.waitForFinished(20000));
  return {run.exitCode(), run.readAllStandardOutput().toStdString(),
          run.readAllStandardError().toStdString()};
}

// The first reading of each record of a database file, in file order.
std::vector<double> FirstReadings(const std::string& path) {
  const std::regex record("^[CB][0-9]+\t *(-?[0-9.]+) *\t.*");
  std::vector<double> readings;
  for (const std::string& line : e2e::matchingLines(path, record)) {
    std::smatch match;
    std::regex_match(line, match, record);
    readings.push_back(std::stod(match[1].str()));
  }
  return readings;
}

TEST(QualityCheckedRun, BuildsTheDatabasesRefusesAFarControlThenKeepsItAndReloadsOnReopening) {
  e2e::ensureApplication();
  const std::string dir = Workspace();
  const Finished built = RunWith(dir, "--data",
                                 "yes        # build the databases\n"
                                 "init\n"
                                 "read\ncontrol\nread\nblank\n"
                                 "read\ncontrol\nread\nblank\n"
                                 "read\ncontrol\nread\nblank\n"
                                 "read\ncontrol\n"
                                 "no         # read the far control again\n"
                                 "control\n"
                                 "yes        # keep it\n"
                                 "quit\n");
  ASSERT_EQ(0, built.exitCode) << built.out << built.err;
  const std::string& out = built.out;
  // On the simulator: said first, and the log names the port and the set that got readings.
  EXPECT_EQ(0u, out.find("SIMULATED fluorimeter\n")) << out;
  const std::string log = testing::readFile(dir + "ZORVEL.LOG");
  EXPECT_NE(std::string::npos, log.find("\nSimulated ports: COM1\t")) << log;
  EXPECT_TRUE(std::regex_search(
      log, std::regex("\nSIMULATED fluorimeter readings in data set [^\t]*QC\\.FIX\t")))
      << log;
  std::size_t at = 0;  // the alert, answered "no", then again, answered "yes"
  for (const char* step : {"Out of Range]", "\n> no ", "Out of Range]", "\n> yes "}) {
    at = out.find(step, at);
    ASSERT_NE(std::string::npos, at) << step << "\n" << out;
  }
  // Refused: the row reads "NS" in yellow, and the cuvette is read again under its number, then
  // kept in light red. The trend's figures follow as the run closes.
  std::smatch refused;
  ASSERT_TRUE(std::regex_search(out, refused, std::regex("Row ([0-9]+): NS\n"))) << out;
  const std::string row = refused[1].str(), next = std::to_string(std::stoi(row) + 1);
  EXPECT_NE(std::string::npos,
            out.find("Row " + row + " colour 1 shaded yellow\nRow " + next + ": 1\n"))
      << out;
  EXPECT_NE(std::string::npos, out.find("Row " + next + " colour 1 shaded light red")) << out;
  EXPECT_NE(std::string::npos, out.find("[Controls Display]\nControls (4 entries)")) << out;
  EXPECT_NE(std::string::npos, out.find("Blanks (3 entries)")) << out;

  // "No" filed nothing: three built controls and the far one once, as read the second time.
  const std::vector<double> controls = FirstReadings(dir + "DATA/QC.CTL");
  ASSERT_EQ(4u, controls.size()) << testing::readFile(dir + "DATA/QC.CTL");
  EXPECT_GT(controls[3], 2.5 * controls[0]);
  EXPECT_EQ(3u, FirstReadings(dir + "DATA/QC.BLK").size());

  // Reopened: the medians the run ended with, and both databases whole.
  const std::size_t median = out.rfind("\nMedian: ") + 9;
  const std::string lastMedian = out.substr(median, out.find('\n', median) - median);
  const Finished reopened = RunWith(dir, "--append", "quit\n");
  ASSERT_EQ(0, reopened.exitCode) << reopened.out << reopened.err;
  EXPECT_NE(std::string::npos, reopened.out.find("Control medians:  493/518: " + lastMedian + "\n"))
      << reopened.out;
  EXPECT_NE(std::string::npos, reopened.out.find("Controls (4 entries)")) << reopened.out;
  EXPECT_NE(std::string::npos, reopened.out.find("Blanks (3 entries)")) << reopened.out;
}

}  // namespace
}  // namespace zorvel

#endif
