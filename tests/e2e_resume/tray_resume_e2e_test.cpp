// One 12-tube tray run on zorvel-sim, stopped again and again at random moments (kill -9,
// SIGTERM, or SIGINT with the abort answered Yes) and carried on each time with
// `zorvel-run --append --resume` until it completes: the set must then hold what one
// uninterrupted run writes, every tube's record once, numbered without gap or repeat, the
// controls and blanks where that run puts them.

#include <gtest/gtest.h>
#include <signal.h>

#include <QProcess>
#include <chrono>
#include <random>
#include <regex>
#include <thread>
#include <vector>

#include "e2e/run_helpers.h"

#if defined(ZORVEL_SIM_EXECUTABLE) && defined(ZORVEL_RUN_EXECUTABLE)

namespace zorvel {
namespace {

// Tubes 5 to 16 of three colours, the control in tube 1 and the blank in tube 2 opening and
// closing the run and before every sixth tube; small, quick strokes and no air dry.
MethodSettings TwelveTubes(const std::string& trayFile) {
  MethodSettings m = e2e::QuickTrayMethod(trayFile, 16, "Resume");
  testing::WithReferences(m.Autosampler, 6);
  return m;
}

struct ResumeBench {
  ResumeBench() {
    e2e::ensureApplication();
    dir = e2e::makeWorkspace("e2e-resume");
    e2e::WriteTrayWorkspace(dir, TwelveTubes);
    std::string tubes = "tube 1 control: Blue=1\ntube 2 blank: solvent\n";
    for (int t = 5; t <= 16; ++t) tubes += "tube " + std::to_string(t) + " s: Yellow=1\n";
    testing::writeFile(dir + "bench.txt", tubes);
    sim.start(ZORVEL_SIM_EXECUTABLE, {"--dir", QString::fromStdString(dir), "--speed", "50",
                                      "--bench", QString::fromStdString(dir + "bench.txt")});
    EXPECT_TRUE(sim.waitForStarted(5000));
    int listed = 0;
    while (listed < 3 && sim.waitForReadyRead(5000)) {
      while (sim.canReadLine()) listed += sim.readLine().isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(3, listed) << sim.readAllStandardError().toStdString();
  }
  ~ResumeBench() {
    sim.terminate();
    sim.waitForFinished(3000);
  }

  // A new set (first) or the set carried on with --resume.
  void start(QProcess& run, bool resume, const std::string& answers) {
    testing::writeFile(dir + "answers.txt", answers);
    QStringList args{"--start-dir",
                     QString::fromStdString(dir),
                     "--method",
                     QString::fromStdString(dir + "METHODS/TRAY.MTH"),
                     resume ? "--append" : "--data",
                     QString::fromStdString(dir + "DATA/SET.FIX"),
                     "--answers",
                     QString::fromStdString(dir + "answers.txt")};
    if (resume) args << "--resume";
    out.clear();
    run.start(ZORVEL_RUN_EXECUTABLE, args);
    ASSERT_TRUE(run.waitForStarted(5000));
  }

  // Reads the run's output until a line holds the text; false when the run ends first.
  bool waitFor(QProcess& run, const std::string& text) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < until) {
      while (run.canReadLine()) {
        const std::string line = run.readLine().toStdString();
        out += line;
        if (line.find(text) != std::string::npos) return true;
      }
      if (run.state() == QProcess::NotRunning) return false;
      run.waitForReadyRead(100);
    }
    return false;
  }

  std::string finish(QProcess& run) {
    EXPECT_TRUE(run.waitForFinished(120000));
    out += run.readAllStandardOutput().toStdString();
    return out;
  }

  // The labels of a file's records, with the tube for ".FIX": "S3/7".
  std::vector<std::string> labels(const std::string& extension) {
    std::vector<std::string> found;
    const std::regex record("^[SPBC][0-9]+\t.*");
    for (const std::string& r : e2e::matchingLines(dir + "DATA/SET" + extension, record)) {
      const std::size_t tab = r.find('\t');
      std::string label = r.substr(0, tab);
      if (extension == ".FIX") label += "/" + r.substr(tab + 1, r.find('\t', tab + 1) - tab - 1);
      found.push_back(label);
    }
    return found;
  }

  std::string dir;
  std::string out;
  QProcess sim;
};

// Stops the run `times` times, each at a random moment after its tray has started, resuming
// after each, then lets it complete; every file is checked whole after each stop.
void StopAndResumeUntilComplete(const std::vector<int>& stopSignals, int times,
                                const std::string& afterStop, unsigned seed) {
  ResumeBench bench;
  std::mt19937 random(seed);
  // Up to about a tube's cycle (the rinse alone takes over a second).
  std::uniform_int_distribution<int> moment(0, 2000);
  QProcess first;
  bench.start(first, false, "no    # no database building\ninit\nread\n" + afterStop + "quit\n");
  QProcess* run = &first;
  std::vector<std::unique_ptr<QProcess>> resumed;
  int stops = 0;
  for (; stops < times; ++stops) {
    // The first stop comes once a record is on disk: a new set without any is not kept.
    if (!bench.waitFor(*run, stops == 0 ? "Record " : "Tube ")) break;
    const int ms = moment(random);
    SCOPED_TRACE("stop " + std::to_string(stops + 1) + " after " + std::to_string(ms) + " ms");
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    ::kill(static_cast<pid_t>(run->processId()), stopSignals[stops % stopSignals.size()]);
    const std::string out = bench.finish(*run);
    if (out.find("Run completed.") != std::string::npos) break;
    for (const char* ext : {".FIX", ".CTL", ".BLK"}) {
      const std::string bytes = testing::readFile(bench.dir + "DATA/SET" + ext);
      ASSERT_EQ("\r\n", bytes.substr(bytes.size() - 2)) << ext << "\n" << out;
    }
    resumed.push_back(std::make_unique<QProcess>());
    run = resumed.back().get();
    bench.start(*run, true, "init\nread\n" + afterStop + "quit\n");
  }
  const std::string out = bench.finish(*run);
  EXPECT_GE(stops, times) << "the run completed after " << stops << " stops";
  EXPECT_TRUE(out.find("Run completed.") != std::string::npos ||
              out.find("Nothing to resume") != std::string::npos)
      << out;
  std::vector<std::string> samples;
  for (int n = 1; n <= 12; ++n)
    samples.push_back("S" + std::to_string(n) + "/" + std::to_string(n + 4));
  EXPECT_EQ(samples, bench.labels(".FIX"));
  EXPECT_EQ((std::vector<std::string>{"C1", "C6", "C12"}), bench.labels(".CTL"));
  EXPECT_EQ((std::vector<std::string>{"B1", "B6", "B12"}), bench.labels(".BLK"));
  // Every tube holds the same sample: a stop must leave nothing in the dilutor that dilutes or
  // carries over into the tubes read after it (the instrument's noise is a few per cent).
  const std::regex record("^S[0-9]+\t[0-9]+\t([0-9.]+)\t.*");
  for (const std::string& r : e2e::matchingLines(bench.dir + "DATA/SET.FIX", record)) {
    std::smatch m;
    ASSERT_TRUE(std::regex_match(r, m, record));
    EXPECT_NEAR(21.0, std::stod(m[1]), 1.5) << r;
  }
}

TEST(TrayResumeE2e, KilledWithSigkillAtTwentyMomentsResumesToOneWholeRun) {
  StopAndResumeUntilComplete({SIGKILL}, 20, "", 25);
}

// SIGTERM and SIGINT (F5) in turn; the abort question is answered Yes.
TEST(TrayResumeE2e, StoppedBySigtermOrAbortedWithF5ResumesToOneWholeRun) {
  StopAndResumeUntilComplete({SIGTERM, SIGINT}, 6, "yes\n", 7);
}

}  // namespace
}  // namespace zorvel

#endif
