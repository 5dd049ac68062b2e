// A tray run's cost per tube over pseudo-terminals: the simulated arm, dilutor and fluorimeter
// are served on pseudo-terminals by the same server zorvel-sim runs (here from a thread of the
// benchmark, on the real clock), and the run talks to them through the real serial-port code.
// Its lower bound is the time during which, as the simulator models them, some instrument or
// line is working for the run whatever the program does: every arm command's characters, its
// motion and its reply; every dilutor command's frame, its stroke or valve turn, and the ready
// reply to a status query arriving as it ends; every fluorimeter command's characters and, from
// its last character to the end of each reply to it, the handling, settings and read time the
// model gives it; and the waits the sample cycle itself prescribes (priming, drying). Each is
// kept as an interval on one timeline and the bound is the length of their union, so work that
// runs side by side is counted once ("side_by_side" says how much there was; a run that waits
// each step out has none). The time outside the bound is charged to the instrument whose work
// ended last before it ("extra_after_..."). The dilutor says it is done only when asked, and
// the questions follow each other as fast as the line carries them (one each 7.3 ms at 9600
// baud), so finding out costs a run on average about half that beyond this bound after every
// dilutor command ("dilutor_found_late").
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <utility>
#include <vector>

#include "bench/qt_core_main.h"
#include "bench/tray_rig.h"
#include "core/autosampler/step_counts.h"
#include "core/platform/real_clock.h"
#include "sim/arm_sim.h"
#include "sim/fluorimeter_sim.h"
#include "sim/pty_bridge.h"
#include "sim/pump_sim.h"
#include "tests/support/method_builder.h"
#include "ui/platform/qt_serial_line.h"

namespace {

using namespace zorvel;

constexpr int kTubes = 3;
constexpr double kCharacterS = 1.0 / 960.0;  // 9600 baud, ten bits a character

// Intervals of necessary work on the server's timeline.
struct Timeline {
  std::vector<std::pair<double, double>> spans;
  void add(double fromS, double toS) {
    if (toS > fromS) spans.emplace_back(fromS, toS);
  }
};

// The union of all spans within [fromS, toS], and the time outside it charged to the timeline
// whose work ended last before each gap: what the run was finishing with when it lost the time.
struct Union {
  double lengthS = 0;
  std::vector<double> gapAfterS;
};

Union UnionOf(const std::vector<const Timeline*>& timelines, double fromS, double toS) {
  struct Span {
    double fromS, toS;
    std::size_t timeline;
  };
  std::vector<Span> all;
  for (std::size_t k = 0; k < timelines.size(); ++k) {
    for (auto [a, b] : timelines[k]->spans) {
      a = std::max(a, fromS);
      b = std::min(b, toS);
      if (b > a) all.push_back({a, b, k});
    }
  }
  std::sort(all.begin(), all.end(), [](const Span& x, const Span& y) { return x.fromS < y.fromS; });
  Union u;
  u.gapAfterS.assign(timelines.size(), 0.0);
  double reachedS = fromS;
  std::optional<std::size_t> last;
  for (const Span& s : all) {
    if (s.toS <= reachedS) continue;
    if (s.fromS > reachedS && last) u.gapAfterS[*last] += s.fromS - reachedS;
    u.lengthS += s.toS - std::max(s.fromS, reachedS);
    reachedS = s.toS;
    last = s.timeline;
  }
  return u;
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

// Stands between a simulated instrument and its line and sees what passes each way; `work`
// holds the spans a subclass finds in it.
class WorkRecorder : public sim::LinePeer, public sim::LineEnd {
 public:
  explicit WorkRecorder(sim::LinePeer& inner) : inner_(inner) {}
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) final {
    received(bytes, arrivedS);
    end_ = &reply;
    inner_.onReceive(bytes, arrivedS, *this);
  }
  void transmit(std::string_view bytes, double startS) final {
    sent(bytes, startS);
    end_->transmit(bytes, startS);
  }
  Timeline work;

 protected:
  virtual void received(std::string_view bytes, double arrivedS) = 0;
  virtual void sent(std::string_view bytes, double startS) = 0;

 private:
  sim::LinePeer& inner_;
  sim::LineEnd* end_ = nullptr;
};

// The arm: from a command's first character to the end of its reply, the motion between.
class ArmWork final : public WorkRecorder {
 public:
  using WorkRecorder::WorkRecorder;

 private:
  void received(std::string_view bytes, double arrivedS) override {
    if (!commandStartS_)
      commandStartS_ = arrivedS - static_cast<double>(bytes.size()) * kCharacterS;
  }
  void sent(std::string_view bytes, double startS) override {
    if (commandStartS_)
      work.add(*commandStartS_, startS + static_cast<double>(bytes.size()) * kCharacterS);
    commandStartS_.reset();
  }
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
      const double busyUntilS = pump_.busyUntilS(address);
      if (frame_.compare(4, etx - 4, "Q") != 0) {
        work.add(frameStartS, std::max(frameEndS + kQueryS, busyUntilS) + kReplyS);
        awaiting_ = {address, frameStartS};
      } else if (awaiting_ && awaiting_->first == address && arrivedS >= busyUntilS) {
        answered.add(awaiting_->second, arrivedS + kReplyS);
        awaiting_.reset();
      }
      frame_.erase(0, etx + 2);
      frameStartS = frameEndS;
    }
  }
  Timeline work;
  // Each command until the reply to the first query that found the device done: the dilutor's
  // time as a run polling it learns of it. Not a lower bound (where the queries fall is the
  // run's doing), but the measure of what the polling itself costs.
  Timeline answered;

 private:
  sim::PumpSim& pump_;
  std::string frame_;
  std::optional<std::pair<char, double>> awaiting_;  // a command's address and first character
};

// The fluorimeter: every command's characters, and from a command's last character to the end
// of each reply to it: the handling, settings and read time the model gives it, and the reply.
class FluorimeterWork final : public WorkRecorder {
 public:
  using WorkRecorder::WorkRecorder;

 private:
  void received(std::string_view bytes, double arrivedS) override {
    work.add(arrivedS - static_cast<double>(bytes.size()) * kCharacterS, arrivedS);
    if (bytes.find('\r') != std::string_view::npos) commandEndS_ = arrivedS;
  }
  void sent(std::string_view bytes, double startS) override {
    work.add(commandEndS_.value_or(startS),
             startS + static_cast<double>(bytes.size()) * kCharacterS);
  }
  std::optional<double> commandEndS_;
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

void Report(benchmark::State& state, const std::vector<const Timeline*>& work,
            const std::vector<const char*>& names, const std::vector<const Timeline*>& asAnswered,
            double fromS, double toS) {
  const double wallS = toS - fromS;
  const Union bound = UnionOf(work, fromS, toS);
  // Work of different instruments (or a wait) under way side by side, counted once in the bound.
  double sumS = 0;
  for (const Timeline* t : work) sumS += UnionOf({t}, fromS, toS).lengthS;
  state.counters["tubes"] = kTubes;
  state.counters["s_per_tube"] = wallS / kTubes;
  state.counters["bound_s_per_tube"] = bound.lengthS / kTubes;
  state.counters["extra_s_per_tube"] = (wallS - bound.lengthS) / kTubes;
  for (std::size_t k = 0; k < work.size(); ++k)
    state.counters[std::string("extra_after_") + names[k]] = bound.gapAfterS[k] / kTubes;
  state.counters["side_by_side_s_per_tube"] = (sumS - bound.lengthS) / kTubes;
  state.counters["ratio"] = wallS / bound.lengthS;
  // The same with every dilutor command lasting until the run was told it was done.
  const double answeredS = UnionOf(asAnswered, fromS, toS).lengthS;
  state.counters["dilutor_found_late_s_per_tube"] = (answeredS - bound.lengthS) / kTubes;
  state.counters["ratio_to_answered"] = wallS / answeredS;
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
  bench::TrayRig rig(app, clock, line, armLine, pumpLine);
  RunController& run = rig.run;
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
  Report(state, {&served.arm.work, &served.pump.work, &served.fluorimeter.work, &sleeps},
         {"arm", "dilutor", "fluorimeter", "wait"},
         {&served.arm.work, &served.pump.answered, &served.fluorimeter.work, &sleeps}, fromS, toS);
  state.counters["messages"] = static_cast<double>(rig.op.messages().size());
  std::filesystem::remove_all(folder);
}
BENCHMARK(BM_TrayTubeThroughPseudoTerminals)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace

ZORVEL_BENCHMARK_MAIN_WITH_QT_CORE()
