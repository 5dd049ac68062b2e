// Start-up of the desktop program against a bare Qt Widgets window with one label, as a user
// starts them and as the X server sees them: each start is a fresh process of the executable
// (zorvel, or bench_startup_bare_window, which links Qt Widgets alone and reads the font
// configuration on a second thread as zorvel does), timed from its spawning to two marks
// reported by the server to a watching client: its first window mapped, and that window first
// painted into. Nothing is preloaded into or changed in the programs. The same window started
// plainly (--plain: no second thread) is timed beside it and reported as a comparison, not as a
// bound: the program, which overlaps that work, can map its window sooner. Needs an X server in
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

// Each mark on its own: the best (or median) mapping and the best (or median) paint may come
// from different starts.
Start Best(const std::vector<Start>& starts) {
  Start s{1e9, 1e9};
  for (const Start& x : starts)
    s = {std::min(s.mappedS, x.mappedS), std::min(s.paintedS, x.paintedS)};
  return s;
}

Start Median(const std::vector<Start>& starts) {
  const auto middle = [&](double Start::*mark) {
    std::vector<double> v;
    for (const Start& x : starts) v.push_back(x.*mark);
    std::nth_element(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(v.size() / 2), v.end());
    return v[v.size() / 2];
  };
  return {middle(&Start::mappedS), middle(&Start::paintedS)};
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
  std::vector<Start> zorvelStarts;
  std::vector<Start> bareStarts;
  std::vector<Start> plainStarts;
  int failed = 0;
  const std::string bare = ZORVEL_BARE_WINDOW;
  for (auto _ : state) {
    for (int i = 0; i < kRepeats; ++i) {
      for (auto [args, into] :
           {std::pair{std::vector<std::string>{bare}, &bareStarts},
            std::pair{zorvel, &zorvelStarts},
            std::pair{std::vector<std::string>{bare, "--plain"}, &plainStarts}}) {
        if (const auto s = StartOnce(watcher, args))
          into->push_back(*s);
        else
          ++failed;
      }
    }
  }
  std::filesystem::remove_all(workspace);
  if (zorvelStarts.empty() || bareStarts.empty() || plainStarts.empty())
    return state.SkipWithError("no window shown");
  // The best of each is the least the machine's other work added; the median is steadier from
  // run to run on a shared machine, where the best of a short start is a matter of luck. The
  // plain window is reported beside the bound, not as one: the program can map sooner than it.
  for (auto [name, pick] : {std::pair{"", &Best}, std::pair{"median_", &Median}}) {
    const Start z = pick(zorvelStarts);
    const Start b = pick(bareStarts);
    const Start p = pick(plainStarts);
    const std::string n = name;
    state.counters[n + "zorvel_mapped_ms"] = z.mappedS * 1e3;
    state.counters[n + "bare_mapped_ms"] = b.mappedS * 1e3;
    state.counters[n + "ratio_mapped"] = z.mappedS / b.mappedS;
    state.counters[n + "zorvel_painted_ms"] = z.paintedS * 1e3;
    state.counters[n + "bare_painted_ms"] = b.paintedS * 1e3;
    state.counters[n + "ratio_painted"] = z.paintedS / b.paintedS;
    state.counters[n + "plain_painted_ms"] = p.paintedS * 1e3;
    state.counters[n + "ratio_painted_to_plain"] = z.paintedS / p.paintedS;
    state.counters[n + "ratio_mapped_to_plain"] = z.mappedS / p.mappedS;
  }
  state.counters["starts_without_window"] = failed;
}
BENCHMARK(BM_StartUpToMappedAndPaintedWindow)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
