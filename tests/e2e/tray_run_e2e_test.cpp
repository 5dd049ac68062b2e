// zorvel-run conducting tray runs against zorvel-sim over pseudo-terminals, steered by the
// signals an operator's shell sends: SIGUSR1 pauses and resumes, SIGINT asks to abort, SIGTERM
// stops at the next checkpoint, and --append carries the numbering on.

#include <gtest/gtest.h>
#include <signal.h>

#include <QProcess>
#include <chrono>
#include <cstdio>
#include <regex>
#include <thread>

#include "e2e/run_helpers.h"

#if defined(ZORVEL_SIM_EXECUTABLE) && defined(ZORVEL_RUN_EXECUTABLE)

namespace zorvel {
namespace {

// Three colours from tubes 5 to 7 with small, quick strokes and no air dry.
MethodSettings TrayMethod(const std::string& trayFile) {
  MethodSettings m = e2e::QuickTrayMethod(trayFile, 7, "Tray");
  m.Autosampler.StandardTube = 1;
  m.Autosampler.BlankTube = 2;
  return m;
}

struct TrayBench {
  TrayBench() {
    e2e::ensureApplication();
    dir = e2e::makeWorkspace("e2e-tray");
    e2e::WriteTrayWorkspace(dir, TrayMethod);
    testing::writeFile(dir + "bench.txt",
                       "tube 5 first: Yellow-Green=1\ntube 6 second: Yellow=1\n"
                       "tube 7 third: Crimson=1\n");
    sim.start(ZORVEL_SIM_EXECUTABLE, {"--dir", QString::fromStdString(dir), "--speed", "20",
                                      "--bench", QString::fromStdString(dir + "bench.txt")});
    EXPECT_TRUE(sim.waitForStarted(5000));
    int listed = 0;
    while (listed < 3 && sim.waitForReadyRead(5000)) {
      while (sim.canReadLine()) listed += sim.readLine().isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(3, listed) << sim.readAllStandardError().toStdString();
  }
  ~TrayBench() {
    sim.terminate();
    sim.waitForFinished(3000);
  }

  // Starts zorvel-run on a new (--data) or reopened (--append) set of this name.
  void start(QProcess& run, const std::string& data, bool append, const std::string& answers) {
    testing::writeFile(dir + "answers.txt", answers);
    run.start(ZORVEL_RUN_EXECUTABLE,
              {"--start-dir", QString::fromStdString(dir), "--method",
               QString::fromStdString(dir + "METHODS/TRAY.MTH"), append ? "--append" : "--data",
               QString::fromStdString(dir + "DATA/" + data + ".FIX"), "--answers",
               QString::fromStdString(dir + "answers.txt")});
    ASSERT_TRUE(run.waitForStarted(5000));
  }

  // Reads the run's output until a line holds the text; false after 30 seconds.
  bool waitFor(QProcess& run, const std::string& text) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < until) {
      if (run.canReadLine() || run.waitForReadyRead(200)) {
        while (run.canReadLine()) {
          const std::string line = run.readLine().toStdString();
          out += line;
          if (line.find(text) != std::string::npos) return true;
        }
      }
      if (run.state() == QProcess::NotRunning) return false;
    }
    return false;
  }
  std::vector<std::string> records(const std::string& data) {
    return e2e::matchingLines(dir + "DATA/" + data + ".FIX", std::regex("^[SPBC][0-9]+\t.*"));
  }
  std::vector<std::string> labels(const std::string& data) {
    std::vector<std::string> found;
    for (const auto& r :
         e2e::matchingLines(dir + "DATA/" + data + ".FIX", std::regex("^[SPBC][0-9]+\t.*"))) {
      found.push_back(r.substr(0, r.find('\t')));
    }
    return found;
  }

  std::string dir;
  std::string out;
  QProcess sim;
};

void Signal(QProcess& run, int number) {
  ::kill(static_cast<pid_t>(run.processId()), number);
}

TEST(TrayRunE2e, SignalsPauseResumeAndAbortARunOnThePseudoTerminals) {
  TrayBench bench;
  QProcess run;
  bench.start(run, "RUN1", false,
              "no    # no database building\n"
              "init\nread\n"
              "yes   # SIGINT: abort the run\n"
              "quit\n");
  ASSERT_TRUE(bench.waitFor(run, "Tube 6: Sample 2")) << bench.out;
  Signal(run, SIGUSR1);
  ASSERT_TRUE(bench.waitFor(run, "Keys: Paused.  Press F11 to Restart")) << bench.out;
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  Signal(run, SIGUSR1);
  ASSERT_TRUE(bench.waitFor(run, "Tube 7: Sample 3")) << bench.out;
  Signal(run, SIGINT);
  ASSERT_TRUE(run.waitForFinished(30000));
  bench.out += run.readAllStandardOutput().toStdString();
  ASSERT_EQ(0, run.exitCode()) << bench.out << run.readAllStandardError().toStdString();
  EXPECT_NE(std::string::npos, bench.out.find("Do you want to abort the current run")) << bench.out;
  EXPECT_NE(std::string::npos, bench.out.find("Run aborted.")) << bench.out;
  // The pause held the run after tube 6; the abort came after tube 7's rinse, before its draw.
  EXPECT_EQ((std::vector<std::string>{"S1", "S2"}), bench.labels("RUN1"));
  EXPECT_EQ(std::string::npos, bench.out.find("Finishing up run."));
  // Tube 5 held the first colour only, tube 6 the second.
  const auto fixed = bench.records("RUN1");
  ASSERT_EQ(2u, fixed.size());
  double first[3] = {}, second[3] = {};
  ASSERT_EQ(3,
            std::sscanf(fixed[0].c_str(), "S1\t5\t%lf\t%lf\t%lf", &first[0], &first[1], &first[2]))
      << fixed[0];
  ASSERT_EQ(
      3, std::sscanf(fixed[1].c_str(), "S2\t6\t%lf\t%lf\t%lf", &second[0], &second[1], &second[2]))
      << fixed[1];
  EXPECT_GT(first[0], 2 * first[1]);
  EXPECT_GT(second[1], 2 * second[0]);
}

TEST(TrayRunE2e, SigtermStopsAtTheNextCheckpointAndAppendCarriesTheNumbersOn) {
  TrayBench bench;
  {
    QProcess run;
    bench.start(run, "RUN2", false, "no\ninit\nread\nquit\n");
    ASSERT_TRUE(bench.waitFor(run, "Tube 6: Sample 2")) << bench.out;
    Signal(run, SIGTERM);
    ASSERT_TRUE(run.waitForFinished(30000));
    bench.out += run.readAllStandardOutput().toStdString();
    EXPECT_EQ(143, run.exitCode()) << bench.out;
    EXPECT_NE(std::string::npos, bench.out.find("Stopped on SIGTERM.")) << bench.out;
    EXPECT_EQ((std::vector<std::string>{"S1"}), bench.labels("RUN2"));
  }
  QProcess again;
  bench.out.clear();
  // The reopened set reads tube 5 again only, through the tube-range command.
  bench.start(again, "RUN2", true,
              "no    # not carried on: the range is set anew\n"
              "tube-range\ntext 5\ntext 5\ninit\nread\nquit\n");
  ASSERT_TRUE(again.waitForFinished(30000));
  bench.out += again.readAllStandardOutput().toStdString();
  ASSERT_EQ(0, again.exitCode()) << bench.out << again.readAllStandardError().toStdString();
  EXPECT_EQ((std::vector<std::string>{"S1", "S2"}), bench.labels("RUN2"));
  // Every line of the file is whole.
  const std::string bytes = testing::readFile(bench.dir + "DATA/RUN2.FIX");
  EXPECT_EQ("\r\n", bytes.substr(bytes.size() - 2));
}

// kill -9 at moments spread over the first tubes' cycles (drawing, flushing, reading, writing):
// whatever the moment, every line on disk is whole and --append numbers on after the last one.
TEST(TrayRunE2e, KilledAtAnyMomentLeavesWholeLinesAndAppendNumbersOn) {
  TrayBench bench;
  const std::regex record(
      "S[0-9]+\t[5-7]\t-?[0-9]+\\.[0-9]{3}\t-?[0-9]+\\.[0-9]{3}\t-?[0-9]+\\.[0-9]{3}");
  int set = 0;
  const std::pair<const char*, int> moments[] = {
      {"Tube 5: Sample 1", 900}, {"Tube 6: Sample 2", 0}, {"Tube 6: Sample 2", 500}};
  for (const auto& [tube, afterMs] : moments) {
    const std::string name = "KILL" + std::to_string(++set);
    SCOPED_TRACE(name + " killed " + std::to_string(afterMs) + " ms after " + tube);
    QProcess run;
    bench.start(run, name, false, "no\ninit\nread\nquit\n");
    ASSERT_TRUE(bench.waitFor(run, tube)) << bench.out;
    std::this_thread::sleep_for(std::chrono::milliseconds(afterMs));
    Signal(run, SIGKILL);
    ASSERT_TRUE(run.waitForFinished(10000));
    const std::string path = bench.dir + "DATA/" + name + ".FIX";
    const std::string bytes = testing::readFile(path);
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ("\r\n", bytes.substr(bytes.size() - 2)) << testing::visible(bytes);
    const std::vector<std::string> labels = bench.labels(name);
    for (const std::string& line : bench.records(name))
      EXPECT_TRUE(std::regex_match(line, record)) << line;

    QProcess again;
    bench.out.clear();
    bench.start(again, name, true, "no\ntube-range\ntext 7\ntext 7\ninit\nread\nquit\n");
    ASSERT_TRUE(again.waitForFinished(30000));
    ASSERT_EQ(0, again.exitCode()) << again.readAllStandardOutput().toStdString();
    std::vector<std::string> expected = labels;
    expected.push_back("S" + std::to_string(labels.size() + 1));
    EXPECT_EQ(expected, bench.labels(name));
  }
}

}  // namespace
}  // namespace zorvel

#endif
