// The run's own reading path (Acquisition::ReadFixed, 30 colours) through zorvel-sim on a
// pseudo-terminal and the real serial-port code, against the least the line and the instrument
// need for the same conversation: its characters at 9600 baud (a read's status reply travels
// during the read) plus the instrument's own handling, move and read times, as counted when
// the same reading runs on the in-process simulator.
#include <benchmark/benchmark.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "bench/counting_peer.h"
#include "bench/qt_core_main.h"
#include "bench/quiet_run.h"
#include "core/app/port_map.h"
#include "core/app/preferences_file.h"
#include "core/platform/real_clock.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "core/run/acquisition.h"
#include "sim/dye_model.h"
#include "sim/fluorimeter_sim.h"
#include "sim/sim_rig.h"
#include "ui/platform/line_factory.h"

extern char** environ;

namespace {

using namespace zorvel;
using bench::QuietView;

constexpr int kColours = 30;
constexpr float kReadTimeS = 0.1f;

MethodSettings ThirtyColours() {
  MethodSettings m;
  m.Fixed = true;
  m.NoColors = kColours;
  const auto& bands = sim::DyeBands();
  for (int i = 1; i <= kColours; ++i) {
    const auto& band = bands[static_cast<std::size_t>((i - 1) % sim::kDyeCount)];
    const float slit = i % 2 == 0 ? 4.0f : 5.0f;
    m.FixedPairs.colour(i) = {static_cast<float>(band.excitationNm),
                              static_cast<float>(band.emissionNm), slit, slit,
                              static_cast<std::int16_t>((i - 1) % 14)};
  }
  return m;
}

// One fixed reading of every colour as the run takes it; the seconds it took on the clock.
double ReadAllColours(SerialLine& line, Clock& clock, const MethodSettings& method) {
  ScriptedOperator person;
  LinkState links;
  QuietView view;
  Fluorimeter fluorimeter(line, clock, person, links, kLs50B.preference);
  fluorimeter.open();
  Acquisition acquisition(fluorimeter, line, method, links, view, [](const std::string&) {});
  acquisition.forgetWavelengths();
  acquisition.forgetSlits();
  const double start = clock.monotonicS();
  const bool ok = acquisition.ReadFixed(kReadTimeS, 2);
  const double elapsed = clock.monotonicS() - start;
  line.close();
  return ok ? elapsed : 0.0;
}

struct SimProcess {
  pid_t pid = 0;
  ~SimProcess() {
    if (pid > 0) {
      ::kill(pid, SIGTERM);
      int status = 0;
      ::waitpid(pid, &status, 0);
    }
  }
};

void BM_RunReadingThroughZorvelSim(benchmark::State& state) {
  std::string pattern = (std::filesystem::temp_directory_path() / "zorvel-pty-XXXXXX").string();
  const std::string dir = std::string(::mkdtemp(pattern.data())) + "/";
  Preferences prefs;
  prefs.BaseDirectoryPath = dir;
  WritePreferencesFile(dir + "ZORVEL.PRF", prefs);
  SimProcess simulator;
  std::vector<std::string> args{ZORVEL_SIM_EXECUTABLE, "--dir", dir};
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  if (posix_spawn(&simulator.pid, ZORVEL_SIM_EXECUTABLE, nullptr, nullptr, argv.data(), environ) !=
      0) {
    state.SkipWithError("zorvel-sim did not start");
    return;
  }
  const std::string portsFile = dir + std::string(kPortsFileName);
  for (int i = 0; i < 500 && !std::filesystem::exists(portsFile); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  const PortMap ports = LoadPortMap({}, dir + "ZORVEL.PRF");

  const MethodSettings method = ThirtyColours();
  RealClock clock;
  sim::SimRig rig;
  double ptyS = 0;
  for (auto _ : state) {
    auto line = ui::MakeInstrumentLine({InstrumentKind::Fluorimeter, 1, &ports, ""}, clock, rig);
    ptyS = line ? ReadAllColours(*line, clock, method) : 0.0;
  }

  // The same conversation on the in-process simulator and a virtual clock.
  VirtualClock ideal;
  sim::Bench bench;
  sim::FluorimeterSim instrument(bench, 2, 11);
  bench::CountingPeer counter(instrument);
  sim::SimulatedLine line(ideal, counter, "COM1 (sim)");
  const double idealS = ReadAllColours(line, ideal, method);
  const double boundS = counter.lineBoundS() + instrument.deliberateDelayS();
  state.counters["pty_s"] = ptyS;
  state.counters["bound_s"] = boundS;
  state.counters["ratio"] = ptyS / boundS;
  state.counters["ideal_s"] = idealS;
  state.counters["ratio_to_ideal"] = ptyS / idealS;
  std::filesystem::remove_all(dir);
}
BENCHMARK(BM_RunReadingThroughZorvelSim)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

ZORVEL_BENCHMARK_MAIN_WITH_QT_CORE()
