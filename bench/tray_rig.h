// What the tray benchmarks share: a tray run on three lines with nobody at the screen, the run
// and everything it reports to held together.
#pragma once

#include "bench/quiet_run.h"
#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/platform/page_printer.h"
#include "core/platform/scripted_operator.h"
#include "core/quality/filing_check.h"
#include "core/run/run_controller.h"
#include "core/run/tray_run.h"

namespace zorvel::bench {

struct TrayRig {
  TrayRig(AppState& app, Clock& clock, SerialLine& line, SerialLine& armLine, SerialLine& pumpLine)
      : checks(app, clock, op),
        arm(armLine, clock, op, app.Links, app.Tray),
        pump(pumpLine, clock, op, app.Links, app.Method.Autosampler),
        run(RunServices{app, op, clock, printer, line, checks}, RunSetup{}, view) {
    run.attachAutosampler(arm, pump, TrayHooks{});
  }

  ScriptedOperator op;
  PagePrinter printer;
  FilingCheck checks;
  QuietView view;
  Arm arm;
  Pump pump;
  RunController run;
};

}  // namespace zorvel::bench
