#pragma once

#include <array>
#include <deque>
#include <map>
#include <string>

namespace zorvel::sim {

inline constexpr int kDyeCount = 14;

// What a cuvette, a tube, the syringe or the flow cell holds: amounts of the 14 dye colours in
// a solvent (water unless stated), in arbitrary concentration units.
struct Sample {
  std::array<double, kDyeCount> dyes{};
  bool water = true;
  std::string label;  // for traces and test messages: "pure 3", "control", ...
};

// The one bench the three simulated instruments share, so that a tray run reads what the pump
// drew from the tube the arm stood over. Times are the simulators' own business; this is state.
struct Bench {
  // Cuvette runs: cuvettes waiting to be put in the holder, and the one in it.
  std::deque<Sample> cuvetteQueue;
  Sample cuvette;
  bool cuvetteInHolder = true;

  // Autosampler runs: what each tube holds (position 0 is the rinse station).
  std::map<int, Sample> tubes;
  int armTube = 0;
  float armHeightMm = 0;
  // What the syringe holds and the flow cell in the light path.
  Sample syringe;
  double syringeVolumeUl = 0;
  Sample flowCell;
  bool flowCellFilled = false;
  // Liquid pushed out through the probe, by the tray position under it (0: the rinse station).
  std::map<int, double> receivedUl;
  // True when readings come from the flow cell (autosampler) rather than the cuvette holder;
  // set once the dilutor is initialised.
  bool readFromFlowCell = false;

  // The sample the fluorimeter sees now.
  const Sample& inLightPath() const { return readFromFlowCell ? flowCell : cuvette; }
  // The operator's change of cuvette before a Read: the first Read finds the cuvette already in
  // the holder, each later one the next from the queue (the last stays when the queue is empty).
  void insertNextCuvette() {
    if (!holderRead) {
      holderRead = true;
      return;
    }
    putNextCuvette();
  }
  // Takes the next cuvette from the queue into the holder; false when none is left (the last
  // stays in the holder).
  bool putNextCuvette() {
    if (cuvetteQueue.empty()) return false;
    cuvette = cuvetteQueue.front();
    cuvetteQueue.pop_front();
    return true;
  }
  bool holderRead = false;
  // Time drives are only run by the water-cell check, which has the operator put the sealed
  // water cell in the holder first: they read it, not the flow cell or a sample cuvette. False:
  // the operator forgot, and the drive reads whatever is in the light path.
  bool waterCellPlaced = true;
};

}  // namespace zorvel::sim
