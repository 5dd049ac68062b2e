#include "sim/sim_rig.h"

namespace zorvel::sim {

LinePeer* SimRig::peerFor(InstrumentKind) {
  return nullptr;
}

}  // namespace zorvel::sim
