#pragma once

#include <cstdint>
#include <memory>

#include "core/platform/line_source.h"
#include "core/state/tray_geometry.h"
#include "sim/arm_sim.h"
#include "sim/bench.h"
#include "sim/fluorimeter_sim.h"
#include "sim/pump_sim.h"
#include "sim/simulated_line.h"

namespace zorvel::sim {

// The in-process simulated bench: one shared Bench and the instrument models that work on it.
// Every line the program opens on the device "sim" is joined to the model of its instrument
// here, so the run window's and the intensity check's fluorimeter lines meet the same one.
class SimRig {
 public:
  // model: 1 LS-50, 2 LS-50B; seed: of the readings' noise.
  explicit SimRig(int model = 2, std::uint32_t seed = 1);
  SimRig(const SimRig&) = delete;
  SimRig& operator=(const SimRig&) = delete;

  Bench bench;
  ArmSim arm{bench};
  PumpSim pump{bench};
  FluorimeterSim& fluorimeter() { return *fluorimeter_; }

  // The tray the arm works over (the program's own, so a loaded plate file counts at once).
  void setTray(const TrayGeometry* tray) { arm.setTray(tray); }
  // The operator chose the other model in the setup: lines already joined follow the change.
  void setFluorimeterModel(int model);
  // The model answering for the instrument.
  LinePeer* peerFor(InstrumentKind kind);

 private:
  // Stands in for the fluorimeter on its lines, so that a change of model keeps them joined.
  class FluorimeterPort final : public LinePeer {
   public:
    explicit FluorimeterPort(SimRig& rig) : rig_(rig) {}
    void onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) override {
      rig_.fluorimeter_->onReceive(bytes, arrivedS, reply);
    }

   private:
    SimRig& rig_;
  };

  int model_;
  std::uint32_t seed_;
  std::unique_ptr<FluorimeterSim> fluorimeter_;
  FluorimeterPort fluorimeterPort_{*this};
};

}  // namespace zorvel::sim
