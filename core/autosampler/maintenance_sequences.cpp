#include "core/autosampler/maintenance_sequences.h"

#include <utility>

#include "core/autosampler/autosampler_check.h"
#include "core/instruments/pump_protocol.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

}  // namespace

MaintenanceSequences::MaintenanceSequences(MaintenanceRig rig, SequenceHooks hooks)
    : rig_(rig), hooks_(std::move(hooks)) {}

void MaintenanceSequences::tell(const std::string& text) const {
  if (hooks_.step) hooks_.step(text);
}

LinkFailure MaintenanceSequences::moveTo(std::int16_t tube) {
  tell(tube == 0 ? "Arm to the rinse station" : "Arm to tube " + whole(tube));
  const LinkFailure done = rig_.arm.MoveArmToTube(tube);
  if (hooks_.armMoved) hooks_.armMoved();
  return done;
}

LinkFailure MaintenanceSequences::lower(std::int16_t height, const char* what) {
  tell(std::string("Probe to the ") + what + " height " + whole(height));
  return rig_.arm.SetArmHeight(height);
}

LinkFailure MaintenanceSequences::resetOverRinse() {
  tell("Arm reset");
  const LinkFailure done = rig_.arm.MoveArmToTube(-1);
  if (hooks_.armMoved) hooks_.armMoved();
  if (done != LinkFailure::None) return done;
  return lower(rig_.settings.RinseHeight, "rinse");
}

template <typename Body>
SequenceEnd MaintenanceSequences::withDilutor(Body body) {
  stopRequested_ = false;
  stoppedState_.clear();
  // The flush volume goes out in steps of the syringe now chosen.
  rig_.links.StepsPerMicrolitre = StepsPerMicrolitreFor(rig_.settings);
  const bool opening = !rig_.pump.isOpen();
  LinkFailure result = LinkFailure::None;
  if (opening) {
    tell("Dilutor initialised");
    result = rig_.pump.InitialisePump();
  }
  SequenceEnd end = result == LinkFailure::None ? body() : SequenceEnd::LinkFailed;
  if (opening) rig_.pump.ClosePumpPort();
  return end;
}

MaintenanceSequences::Step MaintenanceSequences::armTo(std::int16_t tube) {
  return {tube == 0 ? "Arm to the rinse station" : "Arm to tube " + whole(tube), [this, tube] {
            const LinkFailure done = rig_.arm.MoveArmToTube(tube);
            if (hooks_.armMoved) hooks_.armMoved();
            return done;
          }};
}

MaintenanceSequences::Step MaintenanceSequences::probeTo(std::int16_t height, const char* what) {
  return {std::string("Probe to the ") + what + " height " + whole(height),
          [this, height] { return rig_.arm.SetArmHeight(height); }};
}

MaintenanceSequences::Step MaintenanceSequences::resetStep() {
  return {"", [this] { return resetOverRinse(); }};
}

MaintenanceSequences::Step MaintenanceSequences::airDry() {
  return {"Air dry for " + whole(rig_.settings.AirDryTime) + " s",
          [this] { return rig_.pump.PumpAirDry(rig_.settings.AirDryTime); }};
}

MaintenanceSequences::Step MaintenanceSequences::flush() {
  return {"Flush " + whole(rig_.settings.FlushTime) + " ul",
          [this] { return rig_.pump.PumpFlush(); }, Syringe::Empty};
}

SequenceEnd MaintenanceSequences::runSteps(const std::vector<Step>& steps) {
  const int total = static_cast<int>(steps.size());
  std::string last;
  for (int done = 0; done < total; ++done) {
    const Step& step = steps[static_cast<std::size_t>(done)];
    // Between two steps the arm stands still and the syringe is at rest: a safe place to stop.
    if (stopRequested_.load()) {
      stopSafely(done, total, last);
      return SequenceEnd::Stopped;
    }
    if (hooks_.progress) hooks_.progress(done, total);
    if (!step.title.empty()) {
      tell(step.title);
      last = step.title;
    }
    if (step.run() != LinkFailure::None) return SequenceEnd::LinkFailed;
    if (step.leaves != Syringe::Unchanged) syringeHolding_ = step.leaves == Syringe::Holding;
  }
  if (hooks_.progress) hooks_.progress(total, total);
  return SequenceEnd::Done;
}

void MaintenanceSequences::stopSafely(int done, int total, const std::string& last) {
  if (hooks_.progress) hooks_.progress(done, total);
  const bool dilutor = rig_.pump.isOpen();
  tell(dilutor ? "Stopping: valve to port 1, arm home" : "Stopping: arm home");
  const bool valve = !dilutor || rig_.pump.SelectValvePort(1) == LinkFailure::None;
  const LinkFailure armHome = rig_.arm.MoveArmToTube(-1);
  if (hooks_.armMoved) hooks_.armMoved();
  std::string state = "Stopped after step " + whole(done) + " of " + whole(total);
  if (!last.empty()) state += " (" + last + ")";
  if (dilutor)
    state += valve ? ". The valve is at port 1" : ". The valve did not answer";
  else
    state += ". The dilutor was not used";
  state += armHome == LinkFailure::None ? ", the arm is home with the probe raised"
                                        : ", the arm did not answer";
  state += syringeHolding_ ? "; the syringe still holds liquid: run Check Rinse before a run."
                           : "; the syringe is empty.";
  stoppedState_ = state;
  tell(state);
}

SequenceEnd MaintenanceSequences::PrimePump() {
  return withDilutor([&] {
    const std::int16_t rinse = rig_.settings.RinseHeight;
    Pump& pump = rig_.pump;
    return runSteps({
        armTo(0),
        probeTo(rinse, "rinse"),
        {"Valve to port 3; pump fills and empties", [&pump] { return pump.SelectValvePort(3); }},
        {"", [&pump] { return pump.SendPumpCommand(kPumpAddress, "OS18A3000R"); }},
        {"", [&pump] { return pump.SendPumpCommand(kPumpAddress, "IS13A0R"); }, Syringe::Empty},
        {"Valve to port 1", [&pump] { return pump.SelectValvePort(1); }},
        resetStep(),
        airDry(),
    });
  });
}

SequenceEnd MaintenanceSequences::CheckRinse() {
  return withDilutor([&] {
    return runSteps(
        {armTo(0), probeTo(rig_.settings.RinseHeight, "rinse"), flush(), resetStep(), airDry()});
  });
}

SequenceEnd MaintenanceSequences::CheckVolumes() {
  return withDilutor([&] {
    if (!ValidateAutosamplerSettings(rig_.settings, rig_.tray.TubeCount,
                                     rig_.links.StepsPerMicrolitre, rig_.steps, rig_.person,
                                     hooks_.corrected)) {
      rig_.person.beep();
      return SequenceEnd::SettingsRefused;
    }
    const AutosamplerSettings& s = rig_.settings;
    Pump& pump = rig_.pump;
    const PumpSteps& steps = rig_.steps;
    return runSteps({
        armTo(s.StartingTube),
        probeTo(s.TubeHeight, "tube"),
        {"Draw " + whole(s.SampleVolume) + " ul of sample",
         [&] { return pump.PumpFill(steps.SampleSteps); }, Syringe::Holding},
        probeTo(s.BackFillHeight, "backfill"),
        {"Draw " + whole(s.AirVolume) + " ul of air", [&] { return pump.PumpFill(steps.AirSteps); },
         Syringe::Holding},
        {"Push " + whole(s.BackFlowVolume) + " ul back",
         [&] { return pump.PumpDispense(2, steps.BackFlowSteps); }},
        {"Check Flow Cell",
         [&] {
           rig_.person.message("Check Flow Cell", "ZORVEL REQUEST", BoxIcon::Exclamation);
           return LinkFailure::None;
         }},
        probeTo(s.TubeHeight, "tube"),
        {"Empty the syringe into the tube", [&] { return pump.PumpDispense(1, 0); },
         Syringe::Empty},
        probeTo(s.BackFillHeight, "backfill"),
        {"",
         [&] {
           pump.WaitSeconds(1);
           return LinkFailure::None;
         }},
        armTo(0),
        probeTo(s.RinseHeight, "rinse"),
        flush(),
        resetStep(),
        airDry(),
    });
  });
}

SequenceEnd MaintenanceSequences::LocateTubes(std::int16_t first, std::int16_t last,
                                              std::int16_t height) {
  stopRequested_ = false;
  stoppedState_.clear();
  std::vector<Step> steps;
  for (int tube = first; tube <= last; ++tube) {
    steps.push_back(armTo(static_cast<std::int16_t>(tube)));
    steps.push_back(probeTo(height, "backfill"));
  }
  return runSteps(steps);
}

SequenceEnd MaintenanceSequences::Testing() {
  return withDilutor([&] { return runSteps({flush()}); });
}

}  // namespace zorvel
