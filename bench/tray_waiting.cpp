// Processor use of a tray run while it waits on the dilutor and the arm: one tube on the real
// clock over the simulated arm, dilutor and fluorimeter, with slow pump strokes and long arm
// travel, so that nearly all of the run is waiting for the instruments to finish.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>

#include "bench/tray_rig.h"
#include "core/autosampler/step_counts.h"
#include "core/platform/real_clock.h"
#include "sim/arm_sim.h"
#include "sim/fluorimeter_sim.h"
#include "sim/pump_sim.h"
#include "sim/simulated_line.h"
#include "tests/support/method_builder.h"

namespace {

using namespace zorvel;
using bench::ProcessorS;

void TrayMethod(AppState& app) {
  MethodSettings& m = app.Method;
  m = testing::FixedMethod(1, 1);
  m.ScanSpeed = 240;
  m.FixedPairs.colour(1) = {350, 397.5f, 5, 5, 0};
  // Slow strokes (speed code 40: 146 steps a second) and the tube at the far end of the tray.
  testing::FromTray(m, 1, 1, {1000, 500, 100, 1000});
  AutosamplerSettings& a = m.Autosampler;
  a.FillSpeed = a.DispenseSpeed = a.FillSpeedFlush = a.DispenseSpeedFlush = 40;
  a.AirDryTime = 2;
  app.Tray.positions[0] = TrayPosition{290.0f, 170.0f, 0};
  app.Tray.positions[1] = TrayPosition{250.0f, 150.0f, 1};
  app.Tray.positionCount = 2;
  app.Tray.TubeCount = 1;
  app.Links.StepsPerMicrolitre = StepsPerMicrolitreFor(a);
  app.Steps = ComputePumpSteps(a, app.Links.StepsPerMicrolitre);
}

void BM_TrayRunWaitsOnThePumpAndTheArm(benchmark::State& state) {
  AppState app;
  TrayMethod(app);
  // The tube's record is written where a run writes it: a data file of a set.
  std::string folder = (std::filesystem::temp_directory_path() / "zorvel-tray-XXXXXX").string();
  app.DataSet.FixPath = std::string(::mkdtemp(folder.data())) + "/TRAY.FIX";
  app.DataSet.LogFilePath = folder + "/TRAY.LOG";
  RealClock clock;
  sim::Bench bench;
  sim::Sample sample;
  sample.dyes[0] = 1;
  bench.tubes[1] = sample;
  sim::FluorimeterSim instrument(bench, 2, 5);
  instrument.setTiming(sim::FluorimeterSim::InstantTiming());
  sim::ArmSim armModel(bench, &app.Tray);
  sim::PumpSim pumpModel(bench);
  sim::SimulatedLine line(clock, instrument, "COM1 (sim)");
  sim::SimulatedLine armLine(clock, armModel, "COM3 (sim)");
  sim::SimulatedLine pumpLine(clock, pumpModel, "COM2 (sim)");
  bench::TrayRig rig(app, clock, line, armLine, pumpLine);
  RunController& run = rig.run;
  run.Form_Load();                 // the dilutor's initialisation
  run.press(RunButton::InitRead);  // set-up
  double wallS = 0;
  double cpuS = 0;
  for (auto _ : state) {
    const auto wallStart = std::chrono::steady_clock::now();
    const double cpuStart = ProcessorS();
    run.press(RunButton::InitRead);  // the tray: rinse, draw, read, dispose, final rinse
    cpuS = ProcessorS() - cpuStart;
    wallS = std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
  }
  state.counters["wall_s"] = wallS;
  state.counters["cpu_s"] = cpuS;
  state.counters["cpu_percent"] = 100.0 * cpuS / wallS;
  std::filesystem::remove_all(folder);
}
BENCHMARK(BM_TrayRunWaitsOnThePumpAndTheArm)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

BENCHMARK_MAIN();
