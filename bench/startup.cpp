// Start-up of the desktop program against a bare Qt Widgets window: each start is a fresh process
// of the executable a user starts (zorvel, or bench_startup_bare_window, which links Qt Widgets
// alone), timed from its spawning to its end. Both carry the same preloaded hook, which ends them
// at one of two marks: the first window mapped (exposed on the screen), or that window's first
// paint pass done, every control and text in it drawn. Both use the offscreen platform, so no
// display is needed.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "core/app/preferences_file.h"

extern char** environ;

namespace {

using namespace zorvel;

constexpr int kRepeats = 40;

std::string Workspace() {
  std::string pattern = (std::filesystem::temp_directory_path() / "zorvel-start-XXXXXX").string();
  std::string dir = std::string(::mkdtemp(pattern.data())) + "/";
  std::filesystem::create_directories(dir + "DATA");
  std::filesystem::create_directories(dir + "METHODS");
  Preferences prefs;
  prefs.BaseDirectoryPath = dir;
  WritePreferencesFile(dir + "ZORVEL.PRF", prefs);
  return dir;
}

// One start, from spawning the program to its end; 0 when it did not end well.
double StartSeconds(std::vector<std::string> args) {
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  // What the programs say on their standard error (the offscreen platform's notices) would
  // bury the figures.
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, 2, "/dev/null", O_WRONLY, 0);
  const auto start = std::chrono::steady_clock::now();
  pid_t pid = 0;
  const int spawned = posix_spawn(&pid, argv[0], &quiet, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&quiet);
  if (spawned != 0) return 0;
  int status = 0;
  waitpid(pid, &status, 0);
  const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? s : 0;
}

void StartUpTo(benchmark::State& state, const char* mark) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("LD_PRELOAD", ZORVEL_STARTUP_HOOK, 1);
  setenv("ZORVEL_BENCH_END", mark, 1);
  const std::string workspace = Workspace();
  // The two starts take turns, so a busy moment of the machine falls on both alike; the best
  // of each is the least the machine's other work added.
  double zorvelS = 1e9;
  double bareS = 1e9;
  for (auto _ : state) {
    for (int i = 0; i < kRepeats; ++i) {
      if (const double s = StartSeconds({ZORVEL_BARE_WINDOW}); s > 0) bareS = std::min(bareS, s);
      if (const double s =
              StartSeconds({ZORVEL_EXECUTABLE, "--start-dir", workspace, "--no-disclaimer"});
          s > 0)
        zorvelS = std::min(zorvelS, s);
    }
  }
  unsetenv("LD_PRELOAD");
  state.counters["zorvel_ms"] = zorvelS * 1e3;
  state.counters["bare_ms"] = bareS * 1e3;
  state.counters["ratio_to_bare"] = zorvelS / bareS;
  std::filesystem::remove_all(workspace);
}

void BM_StartUpToMappedWindow(benchmark::State& state) {
  StartUpTo(state, "mapped");
}
BENCHMARK(BM_StartUpToMappedWindow)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_StartUpToPaintedWindow(benchmark::State& state) {
  StartUpTo(state, "painted");
}
BENCHMARK(BM_StartUpToPaintedWindow)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
