#include <algorithm>

#include "sim/pump_sim.h"

namespace zorvel::sim {

namespace {

// Liquid b of volume vb joins liquid a of volume va.
Sample mixed(const Sample& a, double va, const Sample& b, double vb) {
  if (va <= 0) return b;
  Sample m;
  const double total = va + vb;
  for (std::size_t k = 0; k < m.dyes.size(); ++k)
    m.dyes[k] = (a.dyes[k] * va + b.dyes[k] * vb) / total;
  m.water = a.water && b.water;
  m.label = a.label == b.label ? a.label : "mixture";
  return m;
}

bool throughFlowCell(int valvePort) {
  return valvePort == 1 || valvePort == 3;
}

}  // namespace

void PumpSim::draw(double volumeUl) {
  Sample source;
  if (pumpValve_ == 'O') {
    source.label = "solvent";
  } else if (pumpValve_ == 'I' && throughFlowCell(valvePort_) &&
             bench_.armHeightMm >= liquidSurface_) {
    const auto tube = bench_.tubes.find(bench_.armTube);
    if (tube == bench_.tubes.end()) return;  // the probe is down in nothing: air
    source = tube->second;
    bench_.flowCell = source;
    bench_.flowCellFilled = true;
  } else {
    return;  // air, or the bypass
  }
  bench_.syringe = mixed(bench_.syringe, bench_.syringeVolumeUl, source, volumeUl);
  bench_.syringeVolumeUl += volumeUl;
}

void PumpSim::dispense(double volumeUl) {
  const double liquidUl = std::min(volumeUl, bench_.syringeVolumeUl);
  if (liquidUl <= 0) return;
  if (pumpValve_ == 'I' && throughFlowCell(valvePort_)) {
    bench_.flowCell = bench_.syringe;
    bench_.flowCellFilled = true;
    if (bench_.armTube >= 0) bench_.receivedUl[bench_.armTube] += liquidUl;
  }
  bench_.syringeVolumeUl -= liquidUl;
  if (bench_.syringeVolumeUl <= 1e-9) {
    bench_.syringeVolumeUl = 0;
    bench_.syringe = Sample{};
  }
}

}  // namespace zorvel::sim
