#pragma once

#include "core/app/port_map.h"
#include "core/autosampler/tray_geometry.h"
#include "sim/arm_sim.h"
#include "sim/bench.h"
#include "sim/pump_sim.h"
#include "sim/simulated_line.h"

namespace zorvel::sim {

// The in-process simulated bench: one shared Bench and the instrument models that work on it.
// Every line the program opens on the device "sim" is joined to the model of its instrument
// here, so the run window's and the intensity check's fluorimeter lines meet the same one.
class SimRig {
 public:
  SimRig() = default;
  SimRig(const SimRig&) = delete;
  SimRig& operator=(const SimRig&) = delete;

  Bench bench;
  ArmSim arm{bench};
  PumpSim pump{bench};

  // The tray the arm works over (the program's own, so a loaded plate file counts at once).
  void setTray(const TrayGeometry* tray) { arm.setTray(tray); }
  // The model answering for the instrument, or nothing when the rig has none for it.
  LinePeer* peerFor(InstrumentKind kind);
};

}  // namespace zorvel::sim
