#pragma once

#include <memory>
#include <string>

#include "core/platform/page_printer.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "core/quality/filing_check.h"
#include "core/run/run_controller.h"
#include "run/canned_fluorimeter.h"
#include "run/recording_view.h"
#include "sim/simulated_line.h"
#include "support/bytes.h"

namespace zorvel::testing {

// A method of three colours read by cuvette: colours 1 and 2 share their slits, colour 3 has
// a wider excitation slit. The scan covers 400-402 nm in 0.5 nm steps.
inline MethodSettings ThreeColourMethod(bool fixed, bool synch, int repetitions = 1) {
  MethodSettings m;
  m.Fixed = fixed;
  m.Synch = synch;
  m.Spillover = true;
  m.NoColors = 3;
  m.NoPures = 3;
  m.ReadTime = 1;
  m.ReadTimePures = 2;
  m.ScanSpeed = 240;
  m.FilterSetting = EmissionFilter::None;
  m.PMTVoltage = 820;
  m.Repetitions = static_cast<std::int16_t>(repetitions);
  m.Operator = "JS";
  m.StudyId = "Liver";
  m.FixedPairs[1] = {493, 515, 5, 5, 4};
  m.FixedPairs[2] = {520, 540, 5, 5, 5};
  m.FixedPairs[3] = {617.5f, 640, 10, 5, 10};
  m.SynchScan = {5, 5, 400, 402, 20, 0.5f};
  return m;
}

// One run window over the canned fluorimeter, with its data set in a fresh folder (records
// only: the headers are the data-set commands' business).
struct RunFixture {
  explicit RunFixture(const MethodSettings& method, RunSetup setup = {}) {
    FillColourTables(state);
    state.StartDirectory = makeTempDir("run");
    state.LogPath = state.StartDirectory + "ZORVEL.LOG";
    state.Method = method;
    state.LineEnding = "\r\n";
    const std::string base = state.StartDirectory + "LIVER";
    state.DataSet = {base + ".FIX", base + ".SYN", base + ".CTL",
                     base + ".BLK", base + ".STL", base + ".SLK",
                     base + ".LOG", "liver",       ""};
    controller = std::make_unique<RunController>(
        RunServices{state, op, clock, printer, line, checks}, setup, view);
    controller->setCuvetteChanger([this] { instrument.nextCuvette(); });
    controller->Form_Load();
  }

  std::string file(const std::string& path) const { return readFile(path); }

  AppState state;
  VirtualClock clock;
  VirtualClock wallClock;  // the time stamps of control and blank records stand still
  CannedFluorimeter instrument;
  sim::SimulatedLine line{clock, instrument, "COM1 (sim)"};
  ScriptedOperator op;
  PagePrinter printer;
  FilingCheck checks{state, wallClock, op};
  RecordingView view;
  std::unique_ptr<RunController> controller;
};

// The setup of a new data set whose pures are due.
inline RunSetup WithPures() {
  RunSetup setup;
  setup.PuresPending = true;
  return setup;
}

}  // namespace zorvel::testing
