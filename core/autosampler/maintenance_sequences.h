#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

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
  Stopped,          // the operator stopped it; the instruments were put in a known state
};

// Told as a sequence goes: each step before it starts, and the arm's new place after a move.
struct SequenceHooks {
  std::function<void(const std::string&)> step;
  std::function<void()> armMoved;
  // A box the whole check corrected (check volumes only).
  std::function<void(AutosamplerField)> corrected;
  // Steps done of the sequence's steps, told before each step and once at the end.
  std::function<void(int done, int total)> progress;
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
  // "Locate": over each tube of the range in turn, the probe lowered to the height.
  SequenceEnd LocateTubes(std::int16_t first, std::int16_t last, std::int16_t height);

  // Ends the running sequence at its next step boundary (any thread): the valve goes to port 1
  // and the arm home, and stoppedState() says what was left where.
  void requestStop() { stopRequested_ = true; }
  const std::string& stoppedState() const { return stoppedState_; }

  // Arm steps shared with the window's positioning controls.
  LinkFailure moveTo(std::int16_t tube);
  LinkFailure lower(std::int16_t height, const char* what);
  // "RESET", then the rinse height.
  LinkFailure resetOverRinse();

 private:
  // What a step leaves in the syringe.
  enum class Syringe { Unchanged, Holding, Empty };
  struct Step {
    std::string title;  // told as the step starts; empty: a part of the step before
    std::function<LinkFailure()> run;
    Syringe leaves = Syringe::Unchanged;
  };
  template <typename Body>
  SequenceEnd withDilutor(Body body);
  void tell(const std::string& text) const;
  Step armTo(std::int16_t tube);
  Step probeTo(std::int16_t height, const char* what);
  Step resetStep();
  Step airDry();
  Step flush();
  SequenceEnd runSteps(const std::vector<Step>& steps);
  void stopSafely(int done, int total, const std::string& last);

  MaintenanceRig rig_;
  SequenceHooks hooks_;
  std::atomic<bool> stopRequested_{false};
  bool syringeHolding_ = false;
  std::string stoppedState_;
};

}  // namespace zorvel
