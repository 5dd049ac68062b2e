// A tray run's cost per tube over pseudo-terminals: the simulated arm, dilutor and fluorimeter
// are served on pseudo-terminals by the same server zorvel-sim runs (here from a thread of the
// benchmark, on the real clock), and the run talks to them through the real serial-port code.
// Its lower bound is the time during which, as the simulator models them, some instrument or
// line is working for the run whatever the program does: every arm command's characters, its
// motion and its reply; every dilutor command's frame, its stroke or valve turn, and the ready
// reply to a status query arriving as it ends; the fluorimeter's characters (a read's status
// travels during the read) and its read times; and the waits the sample cycle itself prescribes
// (priming, drying). Each is kept as an interval on one timeline and the bound is the length of
// their union, so work that runs side by side is counted once ("side_by_side" says how much
// there was; a run that waits each step out has none). The dilutor says it is done only when
// asked, so finding out costs a run part of a query cycle beyond this bound.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <utility>
#include <vector>

#include "bench/quiet_run.h"
#include "core/autosampler/step_counts.h"
#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/platform/page_printer.h"
#include "core/platform/real_clock.h"
#include "core/platform/scripted_operator.h"
#include "core/quality/filing_check.h"
#include "core/run/run_controller.h"
#include "core/run/tray_run.h"
#include "sim/arm_sim.h"
#include "sim/fluorimeter_sim.h"
#include "sim/pty_bridge.h"
#include "sim/pump_sim.h"
#include "tests/support/method_builder.h"
#include "ui/platform/qt_serial_line.h"

namespace {

using namespace zorvel;
using bench::QuietView;

constexpr int kTubes = 3;
constexpr double kCharacterS = 1.0 / 960.0;  // 9600 baud, ten bits a character

// Intervals of necessary work on the server's timeline.
struct Timeline {
  std::vector<std::pair<double, double>> spans;
  void add(double fromS, double toS) {
    if (toS > fromS) spans.emplace_back(fromS, toS);
  }
  double sumS(double fromS, double toS) const {
    double total = 0;
    for (auto [a, b] : spans) total += std::max(0.0, std::min(b, toS) - std::max(a, fromS));
    return total;
  }
};

// The length of the union of all spans within [fromS, toS].
double UnionS(const std::vector<const Timeline*>& timelines, double fromS, double toS) {
  std::vector<std::pair<double, double>> all;
  for (const Timeline* t : timelines) {
    for (auto [a, b] : t->spans) {
      a = std::max(a, fromS);
      b = std::min(b, toS);
      if (b > a) all.emplace_back(a, b);
    }
  }
  std::sort(all.begin(), all.end());
  double total = 0;
  double reachedS = fromS;
  for (auto [a, b] : all) {
    if (b <= reachedS) continue;
    total += b - std::max(a, reachedS);
    reachedS = b;
  }
  return total;
}

// The wall clock, with the run's own prescribed sleeps put on the server's timeline.
class SleepRecordingClock final : public Clock {
 public:
  SleepRecordingClock(Timeline& sleeps, double offsetS) : sleeps_(sleeps), offsetS_(offsetS) {}
  double monotonicS() override { return real_.monotonicS(); }
  double secondsSinceMidnight() override { return real_.secondsSinceMidnight(); }
  CalendarTime now() override { return real_.now(); }
  void sleepUntil(double untilS) override {
    sleeps_.add(real_.monotonicS() - offsetS_, untilS - offsetS_);
    real_.sleepUntil(untilS);
  }

 private:
  RealClock real_;
  Timeline& sleeps_;
  double offsetS_;
};

// The arm: from a command's first character to the end of its reply, the motion between.
class ArmWork final : public sim::LinePeer, public sim::LineEnd {
 public:
  explicit ArmWork(sim::ArmSim& arm) : arm_(arm) {}
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) override {
    if (!commandStartS_)
      commandStartS_ = arrivedS - static_cast<double>(bytes.size()) * kCharacterS;
    end_ = &reply;
    arm_.onReceive(bytes, arrivedS, *this);
  }
  void transmit(std::string_view bytes, double startS) override {
    if (commandStartS_)
      work.add(*commandStartS_, startS + static_cast<double>(bytes.size()) * kCharacterS);
    commandStartS_.reset();
    end_->transmit(bytes, startS);
  }
  Timeline work;

 private:
  sim::ArmSim& arm_;
  sim::LineEnd* end_ = nullptr;
  std::optional<double> commandStartS_;
};

// The dilutor: a command frame; its stroke or turn, or else one status query sent straight
// after it; and the ready reply to a query that arrives as it is done. The polling in between
// overlaps the stroke.
class PumpWork final : public sim::LinePeer {
 public:
  explicit PumpWork(sim::PumpSim& pump) : pump_(pump) {}
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) override {
    constexpr double kReplyS = sim::PumpSim::kAnswerDelayS + 6 * kCharacterS;
    constexpr double kQueryS = 7 * kCharacterS;
    // Where the first byte still held from earlier chunks went on the line.
    double frameStartS = arrivedS - static_cast<double>(frame_.size() + bytes.size()) * kCharacterS;
    frame_ += bytes;
    pump_.onReceive(bytes, arrivedS, reply);
    for (;;) {
      const std::size_t etx = frame_.find('\x03', 4);
      if (etx == std::string::npos || etx + 1 >= frame_.size()) return;
      const char address = frame_[2];
      const double frameEndS = frameStartS + static_cast<double>(etx + 2) * kCharacterS;
      if (frame_.compare(4, etx - 4, "Q") != 0)
        work.add(frameStartS, std::max(frameEndS + kQueryS, pump_.busyUntilS(address)) + kReplyS);
      frame_.erase(0, etx + 2);
      frameStartS = frameEndS;
    }
  }
  Timeline work;

 private:
  sim::PumpSim& pump_;
  std::string frame_;
};

// The fluorimeter: every character on its line but a read's status, and every read time.
class FluorimeterWork final : public sim::LinePeer, public sim::LineEnd {
 public:
  explicit FluorimeterWork(sim::LinePeer& inner) : inner_(inner) {}
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) override {
    line.add(arrivedS - static_cast<double>(bytes.size()) * kCharacterS, arrivedS);
    for (char c : bytes) {
      if (c != '\r') {
        command_ += c;
        continue;
      }
      readPending_ = command_.rfind("$RD ", 0) == 0;
      if (readPending_) reads.add(arrivedS, arrivedS + std::atof(command_.c_str() + 4));
      command_.clear();
    }
    end_ = &reply;
    inner_.onReceive(bytes, arrivedS, *this);
  }
  void transmit(std::string_view bytes, double startS) override {
    if (!readPending_) line.add(startS, startS + static_cast<double>(bytes.size()) * kCharacterS);
    readPending_ = false;
    end_->transmit(bytes, startS);
  }
  Timeline line;
  Timeline reads;

 private:
  sim::LinePeer& inner_;
  sim::LineEnd* end_ = nullptr;
  std::string command_;
  bool readPending_ = false;
};

void TubeMethod(AppState& app) {
  MethodSettings& m = app.Method;
  m = testing::FixedMethod(1, 1);
  m.ScanSpeed = 240;
  m.FixedPairs.colour(1) = {350, 397.5f, 5, 5, 0};
  testing::FromTray(m, 1, kTubes, {500, 200, 100, 300});
  AutosamplerSettings& a = m.Autosampler;
  a.FillSpeed = a.DispenseSpeed = a.FillSpeedFlush = a.DispenseSpeedFlush = 10;
  a.AirDryTime = 1;
  app.Tray.positions[0] = TrayPosition{290.0f, 170.0f, 0};
  for (int t = 1; t <= kTubes; ++t)
    app.Tray.positions[static_cast<std::size_t>(t)] =
        TrayPosition{40.0f * static_cast<float>(t), 30.0f, static_cast<std::int16_t>(t)};
  app.Tray.positionCount = kTubes + 1;
  app.Tray.TubeCount = kTubes;
  app.Links.StepsPerMicrolitre = StepsPerMicrolitreFor(a);
  app.Steps = ComputePumpSteps(a, app.Links.StepsPerMicrolitre);
}

// The three simulated instruments, each behind its work recorder, served on pseudo-terminals
// from a thread of their own; tube t holds dye 1 at strength t.
struct ServedInstruments {
  explicit ServedInstruments(const TrayGeometry& tray) : armModel(bench, &tray) {
    for (int t = 1; t <= kTubes; ++t) bench.tubes[t].dyes[0] = t;
  }
  bool start() {
    for (sim::PtyBridge* b : {&flBridge, &armBridge, &pumpBridge}) {
      if (!b->open()) return false;
      server.add(*b);
    }
    offsetS = serverClock.monotonicS() - server.nowS();
    serving = std::thread([this] { server.run(); });
    return true;
  }
  void stop() {
    server.requestStop();
    if (serving.joinable()) serving.join();
  }

  sim::Bench bench;
  sim::FluorimeterSim fluorimeterModel{bench, 2, 5};
  FluorimeterWork fluorimeter{fluorimeterModel};
  sim::ArmSim armModel;
  ArmWork arm{armModel};
  sim::PumpSim pumpModel{bench};
  PumpWork pump{pumpModel};
  sim::PtyBridge flBridge{fluorimeter};
  sim::PtyBridge armBridge{arm};
  sim::PtyBridge pumpBridge{pump};
  RealClock serverClock;
  sim::PtyServer server{serverClock};
  std::thread serving;
  double offsetS = 0;  // the real monotonic clock less the server's timeline
};

void Report(benchmark::State& state, const std::vector<const Timeline*>& work, double fromS,
            double toS) {
  const double wallS = toS - fromS;
  const double boundS = UnionS(work, fromS, toS);
  // Work the run had under way side by side, counted once in the bound.
  double sumS = 0;
  for (const Timeline* t : work) sumS += t->sumS(fromS, toS);
  state.counters["tubes"] = kTubes;
  state.counters["s_per_tube"] = wallS / kTubes;
  state.counters["bound_s_per_tube"] = boundS / kTubes;
  state.counters["extra_s_per_tube"] = (wallS - boundS) / kTubes;
  state.counters["side_by_side_s_per_tube"] = (sumS - boundS) / kTubes;
  state.counters["ratio"] = wallS / boundS;
}

void BM_TrayTubeThroughPseudoTerminals(benchmark::State& state) {
  AppState app;
  TubeMethod(app);
  std::string folder = (std::filesystem::temp_directory_path() / "zorvel-tube-XXXXXX").string();
  app.DataSet.FixPath = std::string(::mkdtemp(folder.data())) + "/TRAY.FIX";
  app.DataSet.LogFilePath = folder + "/TRAY.LOG";
  ServedInstruments served(app.Tray);
  if (!served.start()) return state.SkipWithError("no pseudo-terminal");

  Timeline sleeps;
  SleepRecordingClock clock(sleeps, served.offsetS);
  ui::QtSerialLine line(clock, "COM1", served.flBridge.devicePath());
  ui::QtSerialLine armLine(clock, "COM3", served.armBridge.devicePath());
  ui::QtSerialLine pumpLine(clock, "COM2", served.pumpBridge.devicePath());
  ScriptedOperator op;
  PagePrinter printer;
  FilingCheck checks(app, clock, op);
  QuietView view;
  Arm arm(armLine, clock, op, app.Links, app.Tray);
  Pump pump(pumpLine, clock, op, app.Links, app.Method.Autosampler);
  RunController run(RunServices{app, op, clock, printer, line, checks}, RunSetup{}, view);
  run.attachAutosampler(arm, pump, TrayHooks{});
  run.Form_Load();
  run.press(RunButton::InitRead);  // set-up
  double fromS = 0;
  double toS = 0;
  for (auto _ : state) {
    fromS = clock.monotonicS() - served.offsetS;
    run.press(RunButton::InitRead);  // the tray
    toS = clock.monotonicS() - served.offsetS;
  }
  served.stop();
  Report(state,
         {&served.arm.work, &served.pump.work, &served.fluorimeter.line, &served.fluorimeter.reads,
          &sleeps},
         fromS, toS);
  state.counters["messages"] = static_cast<double>(op.messages().size());
  std::filesystem::remove_all(folder);
}
BENCHMARK(BM_TrayTubeThroughPseudoTerminals)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
