// zorvel-run's commands that draw nothing (--version, --check-method) against a bare Qt Core
// program: each run a fresh process, timed from its spawning to its end. They take turns with
// the bare program, so a busy moment of the machine falls on both alike, and the best of each
// is the least the machine's other work added.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/spawn_timing.h"
#include "core/app/preferences_file.h"
#include "core/method/method_file.h"
#include "tests/method/method_examples.h"

namespace {

using namespace zorvel;

constexpr int kRepeats = 60;

void Compare(benchmark::State& state, const std::vector<std::string>& command, int exitCode) {
  double commandS = 1e9;
  double bareS = 1e9;
  for (auto _ : state) {
    for (int i = 0; i < kRepeats; ++i) {
      if (const double s = bench::RunSeconds({ZORVEL_BARE_CORE}); s > 0) bareS = std::min(bareS, s);
      if (const double s = bench::RunSeconds(command, exitCode); s > 0)
        commandS = std::min(commandS, s);
    }
  }
  if (commandS > 1e8)
    return state.SkipWithError(("the command did not end as expected: " + command.back()).c_str());
  state.counters["command_ms"] = commandS * 1e3;
  state.counters["bare_core_ms"] = bareS * 1e3;
  state.counters["ratio_to_bare"] = commandS / bareS;
}

void BM_Version(benchmark::State& state) {
  Compare(state, {ZORVEL_RUN_EXECUTABLE, "--version"}, 0);
}
BENCHMARK(BM_Version)->Iterations(1)->Unit(benchmark::kMillisecond);

// A method that passes every check, in a start-up folder of its own.
void BM_CheckMethod(benchmark::State& state) {
  std::string pattern = (std::filesystem::temp_directory_path() / "zorvel-check-XXXXXX").string();
  const std::string dir = std::string(::mkdtemp(pattern.data())) + "/";
  std::filesystem::create_directories(dir + "METHODS");
  // The cuvette method of the method-file tests, which passes every check.
  const MethodSettings method = testing::FixedCuvetteMethod();
  WriteMethodFile(method, dir + "METHODS/GOOD.MTH");
  Compare(state,
          {ZORVEL_RUN_EXECUTABLE, "--start-dir", dir, "--check-method", dir + "METHODS/GOOD.MTH"},
          0);
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_CheckMethod)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
