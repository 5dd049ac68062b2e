// zorvel-run conducting whole cuvette runs: against zorvel-sim over pseudo-terminals, and on its
// own simulated bench while it is killed in the middle of a run.

#include <gtest/gtest.h>
#include <signal.h>

#include <QFileInfo>
#include <QProcess>
#include <chrono>
#include <thread>

#include "core/method/method_file.h"
#include "e2e/run_helpers.h"

#if defined(ZORVEL_SIM_EXECUTABLE) && defined(ZORVEL_RUN_EXECUTABLE)

namespace zorvel {
namespace {

MethodSettings QuickMethod(bool synch) {
  MethodSettings m;
  m.Fixed = true;
  m.Synch = synch;
  m.Spillover = synch;
  m.NoColors = 3;
  m.NoPures = 3;
  m.ReadTime = 0.1f;
  m.ReadTimePures = 0.1f;
  m.ScanSpeed = 1500;
  m.FilterSetting = EmissionFilter::None;
  m.PMTVoltage = 820;
  m.Repetitions = 1;
  m.AmtSolvent = 1;
  m.Operator = "JS";
  m.StudyId = "Liver";
  m.FixedPairs.colour(1) = {493, 515, 5, 5, 4};
  m.FixedPairs.colour(2) = {497.5f, 512, 5, 5, 5};
  m.FixedPairs.colour(3) = {500, 515, 10, 5, 10};
  // The scan covers the fixed pairs, as a method's must, and is kept short: the simulated
  // instruments scan at the pace of real ones.
  m.SynchScan = {5, 5, 490, 515, 20, 1};
  return m;
}

std::string Workspace(const MethodSettings& method) {
  const std::string dir = e2e::makeWorkspace("e2e-run");
  EXPECT_TRUE(WriteMethodFile(method, dir + "METHODS/LIVER.MTH"));
  return dir;
}

// The records of a data file: the lines that start with a record letter and a number.
std::vector<std::string> Records(const std::string& path) {
  return e2e::matchingLines(path, std::regex("^[SPBCR][0-9]+[\t ].*"));
}

std::vector<std::string> Labels(const std::vector<std::string>& records) {
  std::vector<std::string> labels;
  for (const auto& r : records) labels.push_back(r.substr(0, r.find_first_of("\t ")));
  return labels;
}

QStringList RunArguments(const std::string& dir, const std::string& answers) {
  testing::writeFile(dir + "answers.txt", answers);
  return {"--start-dir", QString::fromStdString(dir),
          "--method",    QString::fromStdString(dir + "METHODS/LIVER.MTH"),
          "--data",      QString::fromStdString(dir + "DATA/RUN1.FIX"),
          "--answers",   QString::fromStdString(dir + "answers.txt")};
}

// Also the printout: written as a PDF by the separate writer program, and no word of Qt's about
// the missing desktop session reaches the run's output.
TEST(AnalysisRun, ZorvelRunAgainstZorvelSimOverPseudoTerminals) {
  e2e::ensureApplication();
  MethodSettings method = QuickMethod(true);
  method.PrintResults = true;
  const std::string dir = Workspace(method);
  QProcess sim;
  sim.start(ZORVEL_SIM_EXECUTABLE, {"--dir", QString::fromStdString(dir), "--speed", "20"});
  ASSERT_TRUE(sim.waitForStarted(5000));
  int listed = 0;
  while (listed < 3 && sim.waitForReadyRead(5000)) {
    while (sim.canReadLine()) listed += sim.readLine().isEmpty() ? 0 : 1;
  }
  ASSERT_EQ(3, listed) << sim.readAllStandardError().toStdString();

  const std::string answers =
      "no      # no database building\n"
      "yes     # the solvent blank and the pures\n"
      "init\n"
      "read\naccept\naccept\n"                  // solvent blank: fixed, then scan
      "read\naccept\naccept\n"                  // pure 1
      "read\nreject\nretry\naccept\naccept\n"   // pure 2, read again
      "read\naccept\naccept\n"                  // pure 3
      "read\ncomment Cloudy\naccept\naccept\n"  // sample 1
      "read\ncontrol\naccept\n"                 // filed as a control
      "read\nblank\naccept\n"                   // and as a blank
      "read\naccept\nreject\ncancel\n"          // scan rejected: asked again
      "read\naccept\naccept\n"                  // sample 2
      "quit\n";
  QProcess run;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.remove("XDG_RUNTIME_DIR");
  run.setProcessEnvironment(environment);
  run.start(ZORVEL_RUN_EXECUTABLE, RunArguments(dir, answers)
                                       << "--print-to" << QString::fromStdString(dir + "run.pdf"));
  ASSERT_TRUE(run.waitForFinished(20000));
  const std::string out = run.readAllStandardOutput().toStdString();
  const std::string err = run.readAllStandardError().toStdString();
  sim.terminate();
  sim.waitForFinished(3000);
  ASSERT_EQ(0, run.exitCode()) << out << err;
  EXPECT_NE(std::string::npos, out.find("Waiting For New Cuvette.")) << out;
  EXPECT_NE(std::string::npos, out.find("Insert a cuvette with pure sample for color 3.")) << out;
  EXPECT_EQ(testing::readFile(dir + "run.pdf").substr(0, 5), "%PDF-");
  EXPECT_EQ(std::string::npos, (out + err).find("XDG_RUNTIME_DIR")) << out << err;

  const std::string data = dir + "DATA/RUN1.";
  const std::vector<std::string> samples = {"B1", "P1", "P2", "P3", "S1", "S2"};
  EXPECT_EQ(samples, Labels(Records(data + "FIX")));
  EXPECT_EQ(samples, Labels(Records(data + "SYN")));
  EXPECT_EQ(std::vector<std::string>{"C2"}, Labels(Records(data + "CTL")));
  EXPECT_EQ(std::vector<std::string>{"B2"}, Labels(Records(data + "BLK")));
  EXPECT_EQ(std::vector<std::string>{"C2"}, Labels(Records(data + "STL")));
  EXPECT_EQ(std::vector<std::string>{"B2"}, Labels(Records(data + "SLK")));
  const auto fixed = Records(data + "FIX");
  ASSERT_EQ(6u, fixed.size());
  EXPECT_TRUE(std::regex_match(fixed[4], std::regex("S1(\t-?[0-9]+\\.[0-9]{3}){3}\tCloudy")))
      << fixed[4];
}

TEST(AnalysisRun, ARunKilledMidwayLeavesEveryRecordItWroteWhole) {
  e2e::ensureApplication();
  MethodSettings method = QuickMethod(false);
  method.ReadTime = 0.1f;
  const std::string dir = Workspace(method);
  std::string answers = "no\ninit\n";
  for (int k = 0; k < 40; ++k) answers += "read\naccept\n";
  answers += "quit\n";
  QProcess run;
  QStringList arguments = RunArguments(dir, answers);
  arguments << "--port"
            << "COM1=sim";
  run.start(ZORVEL_RUN_EXECUTABLE, arguments);
  ASSERT_TRUE(run.waitForStarted(5000));
  const std::string fix = dir + "DATA/RUN1.FIX";
  // Killed at once after the second record, while the third is being read or written.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (Records(fix).size() < 2 && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  ::kill(static_cast<pid_t>(run.processId()), SIGKILL);
  run.waitForFinished(3000);

  const std::string bytes = testing::readFile(fix);
  ASSERT_FALSE(bytes.empty());
  EXPECT_EQ("\r\n", bytes.substr(bytes.size() - 2)) << "a record was cut short";
  const auto records = Records(fix);
  ASSERT_GE(records.size(), 2u);
  for (std::size_t k = 0; k < records.size(); ++k) {
    EXPECT_TRUE(std::regex_match(records[k], std::regex("S[0-9]+(\t-?[0-9]+\\.[0-9]{3}){3}")))
        << records[k];
    EXPECT_EQ("S" + std::to_string(k + 1), Labels(records)[k]);
  }
}

TEST(AnalysisRun, AppendingAfterACrashRepairsTheTornRecordAndContinuesTheNumbers) {
  e2e::ensureApplication();
  MethodSettings method = QuickMethod(false);
  method.NoColors = 1;
  const std::string dir = Workspace(method);
  QStringList first = RunArguments(dir, "no\ninit\nread\naccept\nread\naccept\nquit\n");
  first << "--port"
        << "COM1=sim";
  QProcess run;
  run.start(ZORVEL_RUN_EXECUTABLE, first);
  ASSERT_TRUE(run.waitForFinished(10000));
  ASSERT_EQ(0, run.exitCode()) << run.readAllStandardError().toStdString();
  const std::string fix = dir + "DATA/RUN1.FIX";
  const std::string whole = testing::readFile(fix);
  testing::writeFile(fix, whole + "S3\t12.3");  // what a power cut left of a third record

  testing::writeFile(dir + "more.txt", "init\nread\ncomment after\naccept\nquit\n");
  run.start(
      ZORVEL_RUN_EXECUTABLE,
      {"--start-dir", QString::fromStdString(dir), "--method",
       QString::fromStdString(dir + "METHODS/LIVER.MTH"), "--append", QString::fromStdString(fix),
       "--answers", QString::fromStdString(dir + "more.txt"), "--port", "COM1=sim"});
  ASSERT_TRUE(run.waitForFinished(10000));
  ASSERT_EQ(0, run.exitCode()) << run.readAllStandardOutput().toStdString()
                               << run.readAllStandardError().toStdString();
  const std::string after = testing::readFile(fix);
  ASSERT_EQ(0u, after.find(whole));
  EXPECT_TRUE(std::regex_match(after.substr(whole.size()),
                               std::regex("S3\t-?[0-9]+\\.[0-9]{3}\tafter\r\n")))
      << testing::visible(after.substr(whole.size()));
}

constexpr const char* kStrace = "/usr/bin/strace";

// Whether strace is installed and may trace here (a container can forbid ptrace).
bool StraceCanTrace() {
  static const bool can = [] {
    if (!QFileInfo::exists(kStrace)) return false;
    QProcess probe;
    probe.start(kStrace, {"-qq", "-o", "/dev/null", "/bin/true"});
    return probe.waitForFinished(10000) && probe.exitStatus() == QProcess::NormalExit &&
           probe.exitCode() == 0;
  }();
  return can;
}

// zorvel-run killed by strace the moment it enters the when-th of the given system calls;
// false when strace cannot do it here.
bool RunKilledAt(const std::string& syscalls, int when, const QStringList& arguments) {
  const QString strace = kStrace;
  if (!StraceCanTrace()) return false;
  QProcess run;
  QStringList traced = {
      "-qq",
      "-f",
      "-o",
      "/dev/null",
      "-e",
      QString::fromStdString("trace=" + syscalls),
      "-e",
      QString::fromStdString("inject=" + syscalls + ":signal=SIGKILL:when=" + std::to_string(when)),
      ZORVEL_RUN_EXECUTABLE};
  run.start(strace, traced + arguments);
  EXPECT_TRUE(run.waitForFinished(60000));  // a bound; the run ends well before it
  EXPECT_TRUE(run.exitStatus() == QProcess::CrashExit || run.exitCode() != 0)
      << run.readAllStandardOutput().toStdString();
  return true;
}

int RunToEnd(QProcess& run, const QStringList& arguments) {
  run.start(ZORVEL_RUN_EXECUTABLE, arguments);
  EXPECT_TRUE(run.waitForFinished(60000));  // a bound; the run ends well before it
  return run.exitCode();
}

QStringList AppendArguments(const std::string& dir, const std::string& answers) {
  testing::writeFile(dir + "more.txt", answers);
  return {"--start-dir", QString::fromStdString(dir),
          "--method",    QString::fromStdString(dir + "METHODS/LIVER.MTH"),
          "--append",    QString::fromStdString(dir + "DATA/RUN1.FIX"),
          "--answers",   QString::fromStdString(dir + "more.txt"),
          "--port",      "COM1=sim"};
}

// SIGTERM or SIGINT sent the moment the first sample's record is forced to the disk: the run
// stops once that reading is filed, every record whole, and the status file says how it ended.
TEST(AnalysisRun, ASignalEndsACuvetteRunAfterTheStepUnderWay) {
  e2e::ensureApplication();
  const QString strace = kStrace;
  if (!StraceCanTrace()) GTEST_SKIP() << "strace cannot trace here";
  MethodSettings method = QuickMethod(false);
  method.NoColors = 1;
  for (const auto& [name, number] : {std::pair{"SIGTERM", SIGTERM}, std::pair{"SIGINT", SIGINT}}) {
    SCOPED_TRACE(name);
    const std::string dir = Workspace(method);
    const QString inject = QString("inject=fdatasync:signal=%1:when=1").arg(name);
    QProcess run;
    run.start(strace, QStringList{"-qq", "-f", "-o", "/dev/null", "-e", "trace=fdatasync", "-e",
                                  inject, ZORVEL_RUN_EXECUTABLE}
                          << RunArguments(dir, "no\ninit\nread\naccept\nread\naccept\nquit\n")
                          << "--port"
                          << "COM1=sim");
    ASSERT_TRUE(run.waitForFinished(60000));  // a bound; the run ends well before it
    const std::string out = run.readAllStandardOutput().toStdString();
    ASSERT_EQ(128 + number, run.exitCode()) << out << run.readAllStandardError().toStdString();
    EXPECT_NE(std::string::npos, out.find(std::string("Stopped on ") + name + ".")) << out;
    const std::string data = dir + "DATA/RUN1.";
    EXPECT_EQ(std::vector<std::string>{"S1"}, Labels(Records(data + "FIX")));
    const std::string fix = testing::readFile(data + "FIX");
    EXPECT_EQ("\r\n", fix.substr(fix.size() - 2));
    const std::string status = testing::readFile(data + "status.json");
    EXPECT_NE(std::string::npos, status.find("\"state\": \"ended\",\n  \"ended\": \"terminated\""))
        << status;
    EXPECT_NE(std::string::npos, status.find("\"completed\": 1,")) << status;
  }
}

TEST(AnalysisRun, KilledBetweenTheFixAndSynRecordsTheNextRunNumbersAfterBoth) {
  e2e::ensureApplication();
  const std::string dir = Workspace(QuickMethod(true));
  std::string answers = "no\ncancel\ninit\n";  // no databases, no pures
  for (int k = 0; k < 4; ++k) answers += "read\naccept\naccept\n";
  QStringList arguments = RunArguments(dir, answers + "quit\n");
  arguments << "--port"
            << "COM1=sim";
  // Each sample is forced to the disk in .FIX, then in .SYN: the fifth sync is sample 3's .FIX.
  if (!RunKilledAt("fdatasync", 5, arguments)) GTEST_SKIP() << "strace cannot trace here";
  const std::string data = dir + "DATA/RUN1.";
  EXPECT_EQ((std::vector<std::string>{"S1", "S2", "S3"}), Labels(Records(data + "FIX")));
  EXPECT_EQ((std::vector<std::string>{"S1", "S2"}), Labels(Records(data + "SYN")));

  QProcess run;
  const int status = RunToEnd(run, AppendArguments(dir, "ok\ninit\nread\naccept\naccept\nquit\n"));
  const std::string out = run.readAllStandardOutput().toStdString();
  ASSERT_EQ(0, status) << out << run.readAllStandardError().toStdString();
  EXPECT_NE(std::string::npos, out.find("RUN1.FIX ends with S3, RUN1.SYN with S2")) << out;
  EXPECT_NE(std::string::npos, out.find("Sample needed: Sample 4")) << out;
  EXPECT_EQ((std::vector<std::string>{"S1", "S2", "S3", "S4"}), Labels(Records(data + "FIX")));
  EXPECT_EQ((std::vector<std::string>{"S1", "S2", "S4"}), Labels(Records(data + "SYN")));
}

TEST(AnalysisRun, KilledWhileTheSetIsCreatedLeavesNoSetToAppendToAndAnExistingSetIsAskedFor) {
  e2e::ensureApplication();
  const std::string dir = Workspace(QuickMethod(true));
  QStringList arguments = RunArguments(dir, "no\ncancel\ninit\nread\naccept\naccept\nquit\n");
  arguments << "--port"
            << "COM1=sim";
  // The headers come into place one rename at a time, .SYN and .FIX last.
  if (!RunKilledAt("rename,renameat,renameat2", 3, arguments)) {
    GTEST_SKIP() << "strace cannot trace here";
  }
  const std::string data = dir + "DATA/RUN1.";
  EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(data + "FIX")));
  QProcess run;
  EXPECT_EQ(2, RunToEnd(run, AppendArguments(dir, "ok\n")));

  // What the crash left is not replaced without a Yes; no answer means no.
  const std::string ctl = testing::readFile(data + "CTL");
  EXPECT_EQ(2, RunToEnd(run, RunArguments(dir, "")));
  EXPECT_NE(std::string::npos, run.readAllStandardError().toStdString().find("ran out"));
  EXPECT_EQ(ctl, testing::readFile(data + "CTL"));
  EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(data + "FIX")));
  arguments = RunArguments(dir, "yes\nno\ncancel\ninit\nread\naccept\naccept\nquit\n");
  arguments << "--port"
            << "COM1=sim";
  ASSERT_EQ(0, RunToEnd(run, arguments)) << run.readAllStandardOutput().toStdString();
  EXPECT_EQ((std::vector<std::string>{"S1"}), Labels(Records(data + "FIX")));

  // An existing .FIX is asked for as the desktop's Save As dialog asks.
  const std::string fix = testing::readFile(data + "FIX");
  EXPECT_EQ(2, RunToEnd(run, RunArguments(dir, "no\n")));
  EXPECT_NE(std::string::npos, run.readAllStandardOutput().toStdString().find(
                                   "RUN1.FIX already exists. | Do you want to replace it?"));
  EXPECT_EQ(fix, testing::readFile(data + "FIX"));
}

TEST(AnalysisRun, AnAnswerThatDoesNotFitStopsTheRunWithItsLine) {
  e2e::ensureApplication();
  const std::string dir = Workspace(QuickMethod(false));
  QStringList arguments = RunArguments(dir, "no\ninit\naccept\n");
  arguments << "--port"
            << "COM1=sim";
  QProcess run;
  run.start(ZORVEL_RUN_EXECUTABLE, arguments);
  ASSERT_TRUE(run.waitForFinished(10000));
  EXPECT_NE(0, run.exitCode());
  EXPECT_NE(std::string::npos, run.readAllStandardError().toStdString().find(
                                   "line 3 \"accept\" does not fit: the run waits for read"));
  arguments = RunArguments(dir, "no\ninit\n");
  arguments << "--port"
            << "COM1=sim";
  run.start(ZORVEL_RUN_EXECUTABLE, arguments);
  ASSERT_TRUE(run.waitForFinished(10000));
  EXPECT_NE(0, run.exitCode());
  EXPECT_NE(std::string::npos,
            run.readAllStandardError().toStdString().find("the answer file ran out"));
}

}  // namespace
}  // namespace zorvel

#endif
