#include "sim/sim_rig.h"

namespace zorvel::sim {

LinePeer* SimRig::peerFor(InstrumentKind kind) {
  switch (kind) {
    case InstrumentKind::Arm:
      return &arm;
    case InstrumentKind::Pump:
      return &pump;
    case InstrumentKind::Fluorimeter:
      break;
  }
  return nullptr;
}

}  // namespace zorvel::sim
