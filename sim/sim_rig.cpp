#include "sim/sim_rig.h"

namespace zorvel::sim {

SimRig::SimRig(int model, std::uint32_t seed)
    : model_(model),
      seed_(seed),
      fluorimeter_(std::make_unique<FluorimeterSim>(bench, model, seed)) {}

void SimRig::setFluorimeterModel(int model) {
  if (model == model_) return;
  model_ = model;
  fluorimeter_ = std::make_unique<FluorimeterSim>(bench, model, seed_);
}

LinePeer* SimRig::peerFor(InstrumentKind kind) {
  switch (kind) {
    case InstrumentKind::Arm:
      return &arm;
    case InstrumentKind::Pump:
      return &pump;
    case InstrumentKind::Fluorimeter:
      break;
  }
  return &fluorimeterPort_;
}

}  // namespace zorvel::sim
