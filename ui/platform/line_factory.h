#pragma once

#include <memory>
#include <string>

#include "core/app/port_map.h"
#include "core/platform/clock.h"
#include "core/platform/serial_line.h"
#include "sim/sim_rig.h"

namespace zorvel::ui {

// Where an instrument's line leads and how it is watched.
struct LineRoute {
  InstrumentKind kind = InstrumentKind::Fluorimeter;
  int comPort = 1;
  const PortMap* ports = nullptr;  // nullptr: the machine's default devices
  std::string traceDirectory;      // empty: no trace
};

// Makes the line for an instrument on its COM port: the port map's device "sim" joins it to the
// instrument's model in the shared in-process rig, any other device is a real port. With a
// trace directory the line records its traffic in DIR/<instrument>.trace. Nothing when the
// rig has no model for the instrument.
std::unique_ptr<SerialLine> MakeInstrumentLine(const LineRoute& route, Clock& clock,
                                               sim::SimRig& rig);

}  // namespace zorvel::ui
