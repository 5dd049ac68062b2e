#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/autosampler/autosampler_field.h"
#include "core/autosampler/step_counts.h"
#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/platform/operator.h"
#include "core/state/link_state.h"
#include "core/state/method_settings.h"
#include "core/state/tray_geometry.h"

namespace zorvel {

// How a maintenance sequence ended.
enum class SequenceEnd {
  Done,             // every step was carried out
  SettingsRefused,  // the whole check failed; nothing moved
  LinkFailed,       // the arm or the dilutor failed; the operator has been told
};

// Told as a sequence goes: each step before it starts, and the arm's new place after a move.
struct SequenceHooks {
  std::function<void(const std::string&)> step;
  std::function<void()> armMoved;
  // A box the whole check corrected (check volumes only).
  std::function<void(AutosamplerField)> corrected;
};

// What the arm and dilutor sequences work on.
struct MaintenanceRig {
  Arm& arm;
  Pump& pump;
  AutosamplerSettings& settings;
  TrayGeometry& tray;  // the program's one table, the arm's included
  LinkState& links;
  PumpSteps& steps;
  Operator& person;
};

// The autosampler window's pump sequences, also run headless by zorvel-run. Each opens the
// dilutor link only when it finds it closed, and then closes it again at the end; a link that
// was already open is left open. A failing command ends the sequence where it stands.
class MaintenanceSequences {
 public:
  MaintenanceSequences(MaintenanceRig rig, SequenceHooks hooks = {});

  // Fills the line and the flow cell from the solvent side over the rinse station.
  SequenceEnd PrimePump();
  // Flushes through the probe over the rinse station and dries the cell.
  SequenceEnd CheckRinse();
  // One sample cycle on the first tube, stopping at "Check Flow Cell" for a look at the cell.
  SequenceEnd CheckVolumes();
  // Initialises the dilutor and flushes once.
  SequenceEnd Testing();

  // Arm steps shared with the window's positioning controls.
  LinkFailure moveTo(std::int16_t tube);
  LinkFailure lower(std::int16_t height, const char* what);
  // "RESET", then the rinse height.
  LinkFailure resetOverRinse();

 private:
  template <typename Body>
  SequenceEnd withDilutor(Body body);
  void tell(const std::string& text) const;
  LinkFailure primeStrokes();
  LinkFailure volumeCycle();

  MaintenanceRig rig_;
  SequenceHooks hooks_;
};

}  // namespace zorvel
