// How close a fixed reading of 30 colours comes to the time the line itself needs, and how
// little processor time the program spends while it waits on the instrument. Both run the
// simulated fluorimeter on the real clock, so the simulated line really waits its character
// times (960 characters per second at 9600 baud).
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

#include "bench/counting_peer.h"
#include "core/instruments/fluorimeter_link.h"
#include "core/platform/real_clock.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/dye_model.h"
#include "sim/fluorimeter_sim.h"
#include "sim/simulated_line.h"

namespace {

using namespace zorvel;

constexpr int kColours = 30;
constexpr float kReadTimeS = 0.1f;

struct ReadingRun {
  double elapsedS = 0;
  double boundS = 0;
};

// Slits, monochromators and a reading for each of 30 colours, as a run sends them.
ReadingRun ReadThirtyColours(Clock& clock, bool instrumentDelays) {
  sim::Bench bench;
  bench.cuvette.dyes[3] = 0.5;
  sim::FluorimeterSim instrument(bench, 2, 11);
  if (!instrumentDelays) instrument.setTiming(sim::FluorimeterSim::InstantTiming());
  bench::CountingPeer counter(instrument);
  sim::SimulatedLine line(clock, counter, "COM1 (sim)");
  ScriptedOperator person;
  LinkState links;
  FluorimeterLink link(line, clock, person, links, 2);
  link.OpenFluorimeterPort();
  const auto& bands = sim::DyeBands();
  const double start = clock.monotonicS();
  for (int i = 0; i < kColours; ++i) {
    const auto& band = bands[static_cast<std::size_t>(i % sim::kDyeCount)];
    const float slit = i % 2 == 0 ? 5.0f : 4.0f;
    const auto ex = static_cast<float>(band.excitationNm);
    const auto em = static_cast<float>(band.emissionNm);
    links.LinkTimeoutCount = 0;
    link.IssueCommand(fluor::ExcitationSlitCommand(slit), StatusReader::Command);
    links.LinkTimeoutCount = 0;
    link.IssueCommand(fluor::EmissionSlitCommand(slit), StatusReader::Command);
    links.LinkTimeoutCount = 0;
    link.IssueCommand(fluor::MonochromatorCommand(ex, em), StatusReader::Command);
    links.LinkTimeoutCount = 0;
    link.TakeReading(ex, em, kReadTimeS, fluor::AcceptanceRule::WithinTolerance);
  }
  ReadingRun run;
  run.elapsedS = clock.monotonicS() - start;
  // Each status reply during a read fits within the read time, so only the other characters
  // add line time to the instrument's own.
  run.boundS = counter.lineBoundS() + instrument.deliberateDelayS();
  return run;
}

// Argument 0: the instrument answers at once, so the bound is the line plus the read times.
// Argument 1: the instrument's own handling and move times are added to the bound.
void BM_ThirtyColourReading(benchmark::State& state) {
  const bool delays = state.range(0) != 0;
  RealClock clock;
  ReadingRun run;
  for (auto _ : state) run = ReadThirtyColours(clock, delays);
  VirtualClock ideal;
  const ReadingRun reference = ReadThirtyColours(ideal, delays);
  state.counters["wall_s"] = run.elapsedS;
  state.counters["bound_s"] = run.boundS;
  state.counters["ratio"] = run.elapsedS / run.boundS;
  state.counters["ideal_s"] = reference.elapsedS;
  state.counters["ratio_to_ideal"] = run.elapsedS / reference.elapsedS;
}
BENCHMARK(BM_ThirtyColourReading)->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kSecond);

double ProcessorS() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) { return t.tv_sec + t.tv_usec / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// One 10-second reading: the program should sleep on the line for nearly all of it.
void BM_WaitOnTenSecondRead(benchmark::State& state) {
  RealClock clock;
  sim::Bench bench;
  sim::FluorimeterSim instrument(bench, 2, 5);
  instrument.setTiming(sim::FluorimeterSim::InstantTiming());
  sim::SimulatedLine line(clock, instrument, "COM1 (sim)");
  ScriptedOperator person;
  LinkState links;
  FluorimeterLink link(line, clock, person, links, 2);
  link.OpenFluorimeterPort();
  double wallS = 0;
  double cpuS = 0;
  for (auto _ : state) {
    const auto wallStart = std::chrono::steady_clock::now();
    const double cpuStart = ProcessorS();
    link.TakeReading(350.0, 397.5, 10.0f, fluor::AcceptanceRule::WithinTolerance);
    cpuS = ProcessorS() - cpuStart;
    wallS = std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
  }
  state.counters["wall_s"] = wallS;
  state.counters["cpu_s"] = cpuS;
  state.counters["cpu_percent"] = 100.0 * cpuS / wallS;
}
BENCHMARK(BM_WaitOnTenSecondRead)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
