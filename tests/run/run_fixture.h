#pragma once

#include <cctype>
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
#include "support/method_builder.h"

namespace zorvel::testing {

// A method of three colours read by cuvette: colours 1 and 2 share their slits, colour 3 has
// a wider excitation slit. The scan covers 400-402 nm in 0.5 nm steps.
inline MethodSettings ThreeColourMethod(bool fixed, bool synch, int repetitions = 1) {
  MethodSettings m = FixedMethod(3, 1);
  m.Fixed = fixed;
  m.Synch = synch;
  m.Spillover = true;
  m.NoPures = 3;
  m.ReadTimePures = 2;
  m.ScanSpeed = 240;
  m.Repetitions = static_cast<std::int16_t>(repetitions);
  m.Operator = "JS";
  m.StudyId = "Liver";
  m.SynchScan = {5, 5, 400, 402, 20, 0.5f};
  return m;
}

// The state a run starts from: the method, the program log and an empty data set `base` (its
// files upper case, its name lower case) in a fresh folder.
inline void NewRunState(AppState& state, const MethodSettings& method, const std::string& folder,
                        const std::string& base) {
  FillColourTables(state);
  state.StartDirectory = makeTempDir(folder);
  state.LogPath = state.StartDirectory + "ZORVEL.LOG";
  state.Method = method;
  state.LineEnding = "\r\n";
  const std::string path = state.StartDirectory + base;
  std::string name = base;
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  state.DataSet = {path + ".FIX", path + ".SYN", path + ".CTL", path + ".BLK", path + ".STL",
                   path + ".SLK", path + ".LOG", name,          ""};
}

// One run window over the canned fluorimeter, with its data set in a fresh folder (records
// only: the headers are the data-set commands' business).
struct RunFixture {
  explicit RunFixture(const MethodSettings& method, RunSetup setup = {}) {
    NewRunState(state, method, "run", "LIVER");
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
