// Start-up of the desktop program against a bare Qt Widgets window with one label, as a user
// starts them and as the X server sees them: each start is a fresh process of the executable
// (zorvel, or bench_startup_bare_window, which links Qt Widgets alone and reads the font
// configuration on a second thread as zorvel does), timed from its spawning to two marks
// reported by the server to a watching client: its first window mapped, and that window first
// painted into. Nothing is preloaded into or changed in the programs. Needs an X server in
// DISPLAY (Xvfb will do) with no other client making windows meanwhile.
#include <benchmark/benchmark.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/spawn_timing.h"
#include "bench/x_watcher.h"
#include "core/app/preferences_file.h"

namespace {

using namespace zorvel;

constexpr int kRepeats = 30;
constexpr double kWindowWithinS = 20;

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

struct Start {
  double mappedS = 0;
  double paintedS = 0;
};

// One start, from spawning the program to its first window mapped and painted; the program is
// then ended. Nothing when it showed no window.
std::optional<Start> StartOnce(bench::XWatcher& watcher, const std::vector<std::string>& args) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t pid = bench::Spawn(args);
  if (pid == 0) return std::nullopt;
  const auto marks = watcher.awaitWindow(kWindowWithinS);
  ::kill(pid, SIGKILL);
  int status = 0;
  ::waitpid(pid, &status, 0);
  if (!marks) return std::nullopt;
  const auto seconds = [&](auto moment) {
    return std::chrono::duration<double>(moment - start).count();
  };
  return Start{seconds(marks->mapped), seconds(marks->painted)};
}

void BM_StartUpToMappedAndPaintedWindow(benchmark::State& state) {
  unsetenv("QT_QPA_PLATFORM");
  if (std::getenv("DISPLAY") == nullptr)
    return state.SkipWithError("needs an X server in DISPLAY (e.g. Xvfb :N and DISPLAY=:N)");
  const std::string workspace = Workspace();
  const std::vector<std::string> zorvel{ZORVEL_EXECUTABLE, "--start-dir", workspace,
                                        "--no-disclaimer"};
  // The two starts take turns, so a busy moment of the machine falls on both alike; the best
  // of each is the least the machine's other work added.
  // One watching client throughout: an X server that resets when its last client leaves would
  // otherwise refuse the next connection while it does.
  bench::XWatcher watcher;
  if (!watcher.ready()) return state.SkipWithError("the X server is out of reach or lacks DAMAGE");
  Start best{1e9, 1e9};
  Start bare{1e9, 1e9};
  int failed = 0;
  for (auto _ : state) {
    for (int i = 0; i < kRepeats; ++i) {
      for (auto [args, into] : {std::pair{std::vector<std::string>{ZORVEL_BARE_WINDOW}, &bare},
                                std::pair{zorvel, &best}}) {
        const auto s = StartOnce(watcher, args);
        if (!s) {
          ++failed;
          continue;
        }
        into->mappedS = std::min(into->mappedS, s->mappedS);
        into->paintedS = std::min(into->paintedS, s->paintedS);
      }
    }
  }
  std::filesystem::remove_all(workspace);
  if (best.mappedS > 1e8 || bare.mappedS > 1e8) return state.SkipWithError("no window shown");
  state.counters["zorvel_mapped_ms"] = best.mappedS * 1e3;
  state.counters["bare_mapped_ms"] = bare.mappedS * 1e3;
  state.counters["ratio_mapped"] = best.mappedS / bare.mappedS;
  state.counters["zorvel_painted_ms"] = best.paintedS * 1e3;
  state.counters["bare_painted_ms"] = bare.paintedS * 1e3;
  state.counters["ratio_painted"] = best.paintedS / bare.paintedS;
  state.counters["starts_without_window"] = failed;
}
BENCHMARK(BM_StartUpToMappedAndPaintedWindow)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
