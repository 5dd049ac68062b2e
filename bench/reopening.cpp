// Reopening a long data set, each against `grep -c ''` on the same file (the least any reader
// of its lines needs): reloading a control database of 10,000 records at 30 colours, and
// reopening a set whose ".FIX" file holds 1,000,000 records, with its peak memory against the
// file's size. The files lie in the page cache for both, as they do when a set is reopened.
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

double GrepSeconds(const std::string& path) {
  return BestSeconds([&] {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    std::vector<std::string> args{"grep", "-c", "", path};
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawnp(&pid, "grep", &actions, nullptr, argv.data(), environ) == 0) {
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
  m.FileType = 1;
  for (int i = 1; i <= colours; ++i) {
    m.FixedPairs[static_cast<std::size_t>(i)] = {350.0f + i, 400.0f + i, 5, 5,
                                                 static_cast<std::int16_t>(i % 14)};
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
  const double grepS = GrepSeconds(app.DataSet.CtlPath);
  state.counters["entries"] = count;
  state.counters["file_MB"] = static_cast<double>(text.size()) / 1e6;
  state.counters["load_ms"] = loadS * 1e3;
  state.counters["grep_ms"] = grepS * 1e3;
  state.counters["ratio_to_grep"] = loadS / grepS;
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_ReloadTenThousandControls)->Iterations(1)->Unit(benchmark::kMillisecond);

// The set's databases are left out here: the ".FIX" file is what this one measures.
class NoDatabases final : public QualityDatabases {
 public:
  void resetCounts() override {}
  void load(const std::string&, const std::string&) override {}
};

void BM_ReopenMillionRecordSet(benchmark::State& state) {
  constexpr int kColours = 3;
  constexpr int kRecords = 1000000;
  const std::string dir = MakeTempDir();
  AppState app;
  app.Method = LongSetMethod(kColours);
  app.LineEnding = "\r\n";
  app.DataSet.FixPath = dir + "LONG.FIX";
  app.DataSet.MethodFilePath = dir + "LONG.MTH";
  app.DataSet.DataSetName = "long";
  WriteMethodFile(app.Method, app.DataSet.MethodFilePath);
  // The whole set as a run makes it (its databases and run log beside the ".FIX"), then a
  // million records in the ".FIX".
  NoDatabases none;
  WriteDataSetHeaders(app, app.DataSet.FixPath, CalendarTime{}, none);
  std::size_t fileBytes = 0;
  {
    std::ofstream out(app.DataSet.FixPath, std::ios::binary);
    std::string chunk = FixedHeaderText(app, CalendarTime{});
    std::vector<float> readings{101.5f, 2.25f, 33.0f};
    for (int k = 1; k <= kRecords; ++k) {
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
  }

  ScriptedOperator op;
  NoDatabases databases;
  ReopenResult result;
  long peakBytes = 0;
  double reopenS = 0;
  for (auto _ : state) {
    reopenS = BestSeconds([&] {
      StartNewPeak();
      const long before = StatusBytes("VmRSS:");
      AppState reopened;
      result = ReopenDataFileSet(reopened, op, app.DataSet.FixPath, databases);
      peakBytes = std::max(peakBytes, StatusBytes("VmHWM:") - before);
    });
  }
  const double grepS = GrepSeconds(app.DataSet.FixPath);
  if (!result.ok) {
    state.SkipWithError(op.messages().empty() ? "not reopened" : op.messages().back().text.c_str());
  }
  state.counters["reopened"] = result.ok ? 1 : 0;
  state.counters["last_number"] = result.lastSampleNumber;
  state.counters["file_MB"] = static_cast<double>(fileBytes) / 1e6;
  state.counters["reopen_ms"] = reopenS * 1e3;
  state.counters["grep_ms"] = grepS * 1e3;
  state.counters["ratio_to_grep"] = reopenS / grepS;
  state.counters["peak_MB"] = static_cast<double>(peakBytes) / 1e6;
  state.counters["peak_to_file"] = static_cast<double>(peakBytes) / static_cast<double>(fileBytes);
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_ReopenMillionRecordSet)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
