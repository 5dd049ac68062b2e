#pragma once

#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>

#include "core/autosampler/step_counts.h"
#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/instruments/pump_protocol.h"
#include "core/platform/page_printer.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/tracing_line.h"
#include "core/platform/virtual_clock.h"
#include "core/quality/filing_check.h"
#include "core/quality/quality_checks.h"
#include "core/run/run_controller.h"
#include "core/run/tray_run.h"
#include "quality/scripted_alert.h"
#include "run/canned_fluorimeter.h"
#include "run/recording_view.h"
#include "run/run_fixture.h"
#include "sim/arm_sim.h"
#include "sim/fluorimeter_sim.h"
#include "sim/pump_sim.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"

namespace zorvel::testing {

// Keeps the conversation on a line as text: "arm > SET DOWN=35<CR>", "pump < <xFF><STX>0`...".
// A status query and its answer that repeat unchanged, with nothing from the other line between,
// are kept once with the count of repetitions, so a transcript shows every distinct exchange in
// the order the lines carried them without the length of each wait.
class TranscriptPeer final : public sim::LinePeer, public sim::LineEnd {
 public:
  TranscriptPeer(std::string name, sim::LinePeer& inner, std::string& transcript)
      : name_(std::move(name)), inner_(inner), transcript_(transcript) {}

  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) override {
    note(" > ", bytes);
    real_ = &reply;
    inner_.onReceive(bytes, arrivedS, *this);
  }
  void transmit(std::string_view bytes, double startS) override {
    note(" < ", bytes);
    real_->transmit(bytes, startS);
  }

 private:
  void note(const char* way, std::string_view bytes) {
    const std::string line = name_ + way + VisibleTraceBytes(bytes);
    // An exchange is a sent line and its answer: the pair that repeats is counted.
    if (way[1] == '>') {
      pendingSent_ = line;
      return;
    }
    const std::string pair = pendingSent_ + "\n" + line + "\n";
    pendingSent_.clear();
    if (pair == lastPair_ && transcript_.size() == endOfMine_) {
      transcript_.resize(countAt_);
      transcript_ += "  (" + std::to_string(++repeats_) + " more)\n";
    } else {
      transcript_ += pair;
      lastPair_ = pair;
      countAt_ = transcript_.size();
      repeats_ = 0;
    }
    endOfMine_ = transcript_.size();
  }

  std::string name_;
  sim::LinePeer& inner_;
  std::string& transcript_;
  sim::LineEnd* real_ = nullptr;
  std::string pendingSent_, lastPair_;
  std::size_t countAt_ = 0, endOfMine_ = 0;
  int repeats_ = 0;
};

// The canned fluorimeter reading the flow cell: the tubes of the test bench hold Tissue dye in
// the amount of their own number, so every "$RD" reads 100 x tube + k, k counting the reads
// since that tube's liquid came into the flow cell (0 when it is empty or holds solvent).
class FlowCellFluorimeter final : public sim::LinePeer {
 public:
  explicit FlowCellFluorimeter(sim::Bench& bench) : bench_(bench) {}
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) override {
    if (model != nullptr) return model->onReceive(bytes, arrivedS, reply);
    const int tube =
        bench_.flowCellFilled ? static_cast<int>(std::lround(bench_.flowCell.dyes[0])) : 0;
    if (tube != canned.cuvette) {
      canned.cuvette = tube;
      canned.readsInCuvette = 0;
    }
    canned.onReceive(bytes, arrivedS, reply);
  }
  CannedFluorimeter canned;
  // When set, this instrument model answers instead (the dye model reading the flow cell).
  sim::LinePeer* model = nullptr;

 private:
  sim::Bench& bench_;
};

// Three colours read from a tray of 12 tubes: the control in tube 1, the blank in tube 2,
// samples from tube 5 to 8, both every second tube.
inline MethodSettings TrayMethod(bool fixed = true, bool synch = false, int repetitions = 1) {
  MethodSettings m = ThreeColourMethod(fixed, synch, repetitions);
  FromTray(m, 5, 8, {750, 500, 100, 1000});
  AutosamplerSettings& a = m.Autosampler;
  a.FillSpeed = 15;
  a.DispenseSpeed = a.FillSpeedFlush = a.DispenseSpeedFlush = 10;
  a.AirDryTime = 5;
  WithReferences(a, 2);
  return m;
}

// A tray run over the simulated arm and dilutor and the flow-cell fluorimeter, all on one
// virtual clock, with the arm's and dilutor's conversation kept as a transcript.
struct TrayFixture {
  // controls: the control file's records, for a run with the quality checks in place of plain
  // filing (three header lines are added).
  explicit TrayFixture(const MethodSettings& method, RunSetup setup = {},
                       const std::string& controls = {}) {
    NewRunState(state, method, "tray", "TRAY");
    state.Tray.positions[0] = TrayPosition{250.0f, 20.0f, 0};
    for (int k = 1; k <= 12; ++k) {
      state.Tray.positions[static_cast<std::size_t>(k)] = TrayPosition{
          20.0f + 18.0f * static_cast<float>(k - 1), 40.0f, static_cast<std::int16_t>(k)};
      sim::Sample sample;
      sample.dyes[0] = k;
      sample.label = "tube " + std::to_string(k);
      bench.tubes[k] = sample;
    }
    state.Tray.positionCount = 13;
    state.Tray.TubeCount = 12;
    state.Links.StepsPerMicrolitre = StepsPerMicrolitreFor(method.Autosampler);
    state.Steps = ComputePumpSteps(method.Autosampler, state.Links.StepsPerMicrolitre);
    armModel.setTray(&state.Tray);
    checks = &filing;
    if (!controls.empty()) {
      writeFile(state.DataSet.CtlPath, "H1\r\nH2\r\nH3\r\n" + controls);
      writeFile(state.DataSet.BlkPath, "H1\r\nH2\r\nH3\r\n");
      quality = std::make_unique<QualityChecks>(state, wallClock, op, alert);
      quality->load(state.DataSet.CtlPath, state.DataSet.BlkPath);
      checks = quality.get();
    }
    reopen(setup);
  }

  // Opens the run window (again) on the set as it stands, with this setup.
  void reopen(const RunSetup& setup) {
    controller.reset();
    controller = std::make_unique<RunController>(
        RunServices{state, op, clock, printer, line, *checks}, setup, view);
    TrayHooks hooks;
    hooks.yield = [this] {
      if (onYield) onYield();
    };
    hooks.note = [this](const std::string& note) { notes.push_back(note); };
    controller->attachAutosampler(arm, pump, hooks);
    controller->Form_Load();
  }

  std::string file(const std::string& path) const { return readFile(path); }
  // The arm's and dilutor's conversation so far.
  const std::string& conversation() const { return transcript; }

  AppState state;
  VirtualClock clock;
  VirtualClock wallClock;
  sim::Bench bench;
  sim::ArmSim armModel{bench};
  sim::PumpSim pumpModel{bench};
  FlowCellFluorimeter instrument{bench};
  std::string transcript;
  TranscriptPeer armPeer{"arm", armModel, transcript};
  TranscriptPeer pumpPeer{"pump", pumpModel, transcript};
  sim::SimulatedLine line{clock, instrument, "COM1 (sim)"};
  sim::SimulatedLine armLine{clock, armPeer, "COM3 (sim)"};
  sim::SimulatedLine pumpLine{clock, pumpPeer, "COM2 (sim)"};
  ScriptedOperator op;
  PagePrinter printer;
  FilingCheck filing{state, wallClock, op};
  ScriptedAlert alert;
  std::unique_ptr<QualityChecks> quality;
  RecordingView view;
  Arm arm{armLine, clock, op, state.Links, state.Tray};
  Pump pump{pumpLine, clock, op, state.Links, state.Method.Autosampler};
  // Runs between the steps of the tray run and while it is paused.
  std::function<void()> onYield;
  // Each tube as it starts and each record as it is written.
  std::vector<std::string> notes;
  QualityCheck* checks = nullptr;
  std::unique_ptr<RunController> controller;
};

// Compares with a golden file; with ZORVEL_WRITE_GOLDEN set to the golden folder, writes it.
inline void ExpectGolden(const std::string& name, const std::string& actual) {
  if (const char* dir = std::getenv("ZORVEL_WRITE_GOLDEN")) {
    writeFile(std::string(dir) + "/" + name, actual);
    return;
  }
  EXPECT_SAME_BYTES(readGolden(name), actual);
}

}  // namespace zorvel::testing
