#pragma once

#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/printer.h"
#include "core/platform/serial_line.h"
#include "core/quality/quality_check.h"
#include "core/state/app_state.h"

namespace zorvel {

// What the run borrows from the program. The fluorimeter line is opened by Init.
struct RunServices {
  AppState& state;
  Operator& op;
  Clock& clock;
  Printer& printer;
  SerialLine& fluorimeterLine;
  QualityCheck& checks;
};

}  // namespace zorvel
