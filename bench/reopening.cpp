// Reopening a long data set: reloading a control database of 10,000 records at 30 colours
// against `wc -l` on the same file (the least any reader of all its lines needs), and reopening a
// set whose ".FIX" file holds 1,000,000 records against reopening the same set with one record
// (its lower bound: the same work but for the file's length), with `wc -l` on the long file
// beside it to show how little of the file reopening reads, and the peak memory against the
// file's size. The files lie in the page cache for all, as they do when a set is reopened.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core/datafiles/data_set_commands.h"
#include "core/datafiles/data_set_headers.h"
#include "core/datafiles/record_lines.h"
#include "core/method/method_file.h"
#include "core/platform/scripted_operator.h"
#include "core/quality/quality_database.h"

extern char** environ;

namespace {

using namespace zorvel;
using Clock = std::chrono::steady_clock;

constexpr int kRepeats = 5;

std::string MakeTempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "zorvel-bench-XXXXXX").string();
  const char* made = ::mkdtemp(pattern.data());
  return made != nullptr ? std::string(made) + "/" : std::string();
}

// The best of a few runs: the least the machine's other work added.
template <typename F>
double BestSeconds(F work) {
  double best = 1e9;
  for (int i = 0; i < kRepeats; ++i) {
    const auto start = Clock::now();
    work();
    best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
  }
  return best;
}

// `wc -l` reads every byte of the file whatever its output is sent to (`grep -c ''` into
// /dev/null stops at the first line).
double WholeReadSeconds(const std::string& path) {
  return BestSeconds([&] {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    std::vector<std::string> args{"wc", "-l", path};
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawnp(&pid, "wc", &actions, nullptr, argv.data(), environ) == 0) {
      int status = 0;
      waitpid(pid, &status, 0);
    }
    posix_spawn_file_actions_destroy(&actions);
  });
}

// Resident and peak resident memory of this process in bytes; writing 5 to clear_refs starts
// a new peak.
long StatusBytes(const char* key) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind(key, 0) == 0) return std::atol(line.c_str() + std::string(key).size()) * 1024;
  }
  return 0;
}
void StartNewPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

MethodSettings LongSetMethod(int colours) {
  MethodSettings m;
  m.Fixed = true;
  m.NoColors = static_cast<std::int16_t>(colours);
  m.NoPures = m.NoColors;
  m.ReadTime = 1;
  m.ReadTimePures = 1;
  m.FileType = DataFileType::DosWindows;
  for (int i = 1; i <= colours; ++i) {
    m.FixedPairs.colour(i) = {350.0f + i, 400.0f + i, 5, 5, static_cast<std::int16_t>(i % 14)};
  }
  return m;
}

void BM_ReloadTenThousandControls(benchmark::State& state) {
  constexpr int kColours = 30;
  const std::string dir = MakeTempDir();
  AppState app;
  app.Method = LongSetMethod(kColours);
  app.DataSet.CtlPath = dir + "LONG.CTL";
  std::string text = DatabaseHeaderText(app, true);
  std::vector<float> readings(kColours);
  for (int k = 1; k <= 10000; ++k) {
    for (int i = 0; i < kColours; ++i)
      readings[static_cast<std::size_t>(i)] = 100.0f + (k * 7 + i) % 97;
    const CalendarTime when{2000, 3, 1 + k / 400 % 28, 9, k % 60, 0};
    text += DatabaseRecordLine('C', k, readings, when, "", "\r\n");
  }
  std::ofstream(app.DataSet.CtlPath, std::ios::binary) << text;
  int headerLines = 0;
  for (char c : DatabaseHeaderText(app, true)) headerLines += c == '\n' ? 1 : 0;

  int count = 0;
  double loadS = 0;
  for (auto _ : state) {
    loadS = BestSeconds(
        [&] { count = LoadDatabase(app.DataSet.CtlPath, kColours, headerLines).count; });
  }
  const double wcS = WholeReadSeconds(app.DataSet.CtlPath);
  state.counters["entries"] = count;
  state.counters["file_MB"] = static_cast<double>(text.size()) / 1e6;
  state.counters["load_ms"] = loadS * 1e3;
  state.counters["wc_ms"] = wcS * 1e3;
  state.counters["ratio_to_wc"] = loadS / wcS;
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_ReloadTenThousandControls)->Iterations(1)->Unit(benchmark::kMillisecond);

// The set's databases are left out here: the ".FIX" file is what this one measures.
class NoDatabases final : public QualityDatabases {
 public:
  void resetCounts() override {}
  void load(const std::string&, const std::string&) override {}
};

// A whole set as a run makes it (its databases and run log beside the ".FIX"), with `records`
// records in its ".FIX"; the size of the ".FIX" in bytes.
std::size_t MakeSet(const std::string& dir, int records, AppState& app) {
  constexpr int kColours = 3;
  app.Method = LongSetMethod(kColours);
  app.LineEnding = "\r\n";
  app.DataSet.FixPath = dir + "LONG.FIX";
  app.DataSet.MethodFilePath = dir + "LONG.MTH";
  app.DataSet.DataSetName = "long";
  WriteMethodFile(app.Method, app.DataSet.MethodFilePath);
  NoDatabases none;
  WriteDataSetHeaders(app, app.DataSet.FixPath, CalendarTime{}, none);
  std::size_t fileBytes = 0;
  std::ofstream out(app.DataSet.FixPath, std::ios::binary);
  std::string chunk = FixedHeaderText(app, CalendarTime{});
  const std::vector<float> readings{101.5f, 2.25f, 33.0f};
  for (int k = 1; k <= records; ++k) {
    // Numbers stay within 16 bits, as a run keeps them.
    chunk += FixedRecordLine('S', 1 + (k - 1) % 30000, std::nullopt, readings, "", "\r\n");
    if (chunk.size() > (1 << 20)) {
      fileBytes += chunk.size();
      out << chunk;
      chunk.clear();
    }
  }
  fileBytes += chunk.size();
  out << chunk;
  return fileBytes;
}

struct Reopening {
  double seconds = 0;
  long peakBytes = 0;
  ReopenResult result;
  std::string trouble;
};

Reopening Reopen(const std::string& fixPath) {
  ScriptedOperator op;
  NoDatabases databases;
  Reopening r;
  r.seconds = BestSeconds([&] {
    StartNewPeak();
    const long before = StatusBytes("VmRSS:");
    AppState reopened;
    r.result = ReopenDataFileSet(reopened, op, fixPath, databases);
    r.peakBytes = std::max(r.peakBytes, StatusBytes("VmHWM:") - before);
  });
  if (!r.result.ok) r.trouble = op.messages().empty() ? "not reopened" : op.messages().back().text;
  return r;
}

void BM_ReopenMillionRecordSet(benchmark::State& state) {
  const std::string dir = MakeTempDir();
  const std::string oneDir = MakeTempDir();
  AppState app;
  AppState one;
  const std::size_t fileBytes = MakeSet(dir, 1000000, app);
  MakeSet(oneDir, 1, one);
  Reopening longSet;
  for (auto _ : state) longSet = Reopen(app.DataSet.FixPath);
  const Reopening oneRecord = Reopen(one.DataSet.FixPath);
  const double wcS = WholeReadSeconds(app.DataSet.FixPath);
  if (!longSet.result.ok || !oneRecord.result.ok) {
    state.SkipWithError((longSet.trouble + oneRecord.trouble).c_str());
  }
  state.counters["last_number"] = longSet.result.lastSampleNumber;
  state.counters["file_MB"] = static_cast<double>(fileBytes) / 1e6;
  state.counters["reopen_ms"] = longSet.seconds * 1e3;
  state.counters["one_record_ms"] = oneRecord.seconds * 1e3;
  state.counters["ratio_to_one_record"] = longSet.seconds / oneRecord.seconds;
  state.counters["wc_ms"] = wcS * 1e3;
  state.counters["reopen_to_wc"] = longSet.seconds / wcS;
  state.counters["peak_MB"] = static_cast<double>(longSet.peakBytes) / 1e6;
  state.counters["peak_to_file"] =
      static_cast<double>(longSet.peakBytes) / static_cast<double>(fileBytes);
  std::filesystem::remove_all(dir);
  std::filesystem::remove_all(oneDir);
}
BENCHMARK(BM_ReopenMillionRecordSet)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
