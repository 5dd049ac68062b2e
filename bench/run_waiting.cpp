// Processor use of the run window while a 10-second reading is under way: the run controller
// reads one cuvette on the real clock over the simulated line, and should sleep on the line for
// nearly all of it.
#include <benchmark/benchmark.h>

#include <chrono>

#include "bench/quiet_run.h"
#include "core/platform/page_printer.h"
#include "core/platform/real_clock.h"
#include "core/platform/scripted_operator.h"
#include "core/quality/filing_check.h"
#include "core/run/run_controller.h"
#include "sim/fluorimeter_sim.h"
#include "sim/simulated_line.h"

namespace {

using namespace zorvel;
using bench::ProcessorS;
using bench::QuietView;

void BM_RunReadsOneCuvetteForTenSeconds(benchmark::State& state) {
  AppState app;
  MethodSettings& m = app.Method;
  m.Fixed = true;
  m.NoColors = 1;
  m.ReadTime = 10;
  m.ReadTimePures = 10;
  m.ScanSpeed = 240;
  m.FilterSetting = EmissionFilter::None;
  m.PMTVoltage = 820;
  m.Repetitions = 1;
  m.FixedPairs.colour(1) = {350, 397.5f, 5, 5, 0};
  RealClock clock;
  sim::Bench bench;
  sim::FluorimeterSim instrument(bench, 2, 5);
  instrument.setTiming(sim::FluorimeterSim::InstantTiming());
  sim::SimulatedLine line(clock, instrument, "COM1 (sim)");
  ScriptedOperator op;
  PagePrinter printer;
  FilingCheck checks(app, clock, op);
  QuietView view;
  RunController run(RunServices{app, op, clock, printer, line, checks}, RunSetup{}, view);
  run.Form_Load();
  run.press(RunButton::InitRead);  // set-up
  double wallS = 0;
  double cpuS = 0;
  for (auto _ : state) {
    const auto wallStart = std::chrono::steady_clock::now();
    const double cpuStart = ProcessorS();
    run.press(RunButton::InitRead);  // the reading, up to the decision
    cpuS = ProcessorS() - cpuStart;
    wallS = std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
  }
  state.counters["wall_s"] = wallS;
  state.counters["cpu_s"] = cpuS;
  state.counters["cpu_percent"] = 100.0 * cpuS / wallS;
}
BENCHMARK(BM_RunReadsOneCuvetteForTenSeconds)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
