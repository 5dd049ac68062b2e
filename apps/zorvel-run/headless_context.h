#pragma once

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/app/answer_file_operator.h"
#include "core/app/port_map.h"
#include "core/platform/real_clock.h"
#include "core/platform/serial_line.h"
#include "core/state/answer_script.h"
#include "core/state/app_state.h"
#include "ui/platform/instrument_lines.h"
#include "ui/platform/qt_printer.h"

namespace zorvel::headless {

// The command line of zorvel-run.
struct Options {
  std::string startDirectory;
  std::vector<std::string> portEntries;
  std::string answersPath;
  std::string printTo;
  std::string traceDirectory;
  std::string benchPath;  // what the in-process simulated bench holds (ports on "sim")
  // Analysis runs.
  std::string methodPath;
  std::string newDataPath;     // --data NEW.fix
  std::string appendDataPath;  // --append EXISTING.fix
  bool resume = false;         // --resume: carry on the set's unfinished tray run, unasked
  int firstNumber = 1;
  std::string autosampler;      // --autosampler prime|rinse|volumes|test
  std::string checkMethodPath;  // --check-method FILE.mth
  // Instrument checks.
  bool watercell = false;
  bool intensity = false;
  std::optional<double> exWl, emWl, exSl, emSl, readTimeS;
  std::optional<int> filter;
  std::string pmt;  // a voltage, "default", or empty
};

// What an unattended run works with: the program's state after start-up, the real clock, the
// answer file as the operator, the printer and the instruments' lines.
struct Context {
  explicit Context(const Options& options);

  Options options;
  AppState state;
  RealClock clock;
  AnswerScript script;
  std::ostream& out = std::cout;
  AnswerFileOperator op{script, out};
  ui::QtPrinter printer;
  // The instruments' lines: the port map, the in-process simulated bench, the trace folder.
  ui::InstrumentLines lines{state, clock};
  // Prints "zorvel-run: " + message on the error stream; returns the exit code to use.
  int fail(const std::string& message, int exitCode = 1);
};

// Starts as the desktop program starts (directory check, preferences, log "Boot up") without
// windows; a missing preferences file cannot be filled in here and ends the run. False with the
// reason printed when the run cannot go on.
bool StartHeadless(Context& context);

}  // namespace zorvel::headless
