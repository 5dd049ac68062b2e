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

// Runs steps in order while they succeed; the first failure is the result.
class Steps {
 public:
  template <typename F>
  Steps& then(F&& f) {
    if (result_ == LinkFailure::None) result_ = f();
    return *this;
  }
  LinkFailure result() const { return result_; }

 private:
  LinkFailure result_ = LinkFailure::None;
};

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

LinkFailure MaintenanceSequences::primeStrokes() {
  Pump& pump = rig_.pump;
  const std::int16_t rinse = rig_.settings.RinseHeight;
  return Steps{}
      .then([&] { return moveTo(0); })
      .then([&] { return lower(rinse, "rinse"); })
      .then([&] {
        tell("Valve to port 3; pump fills and empties");
        return pump.SelectValvePort(3);
      })
      .then([&] { return pump.SendPumpCommand(kPumpAddress, "OS18A3000R"); })
      .then([&] { return pump.SendPumpCommand(kPumpAddress, "IS13A0R"); })
      .then([&] {
        tell("Valve to port 1");
        return pump.SelectValvePort(1);
      })
      .then([&] { return resetOverRinse(); })
      .then([&] {
        tell("Air dry for " + whole(rig_.settings.AirDryTime) + " s");
        return pump.PumpAirDry(rig_.settings.AirDryTime);
      })
      .result();
}

SequenceEnd MaintenanceSequences::PrimePump() {
  return withDilutor([&] {
    return primeStrokes() == LinkFailure::None ? SequenceEnd::Done : SequenceEnd::LinkFailed;
  });
}

SequenceEnd MaintenanceSequences::CheckRinse() {
  return withDilutor([&] {
    const LinkFailure result = Steps{}
                                   .then([&] { return moveTo(0); })
                                   .then([&] { return lower(rig_.settings.RinseHeight, "rinse"); })
                                   .then([&] {
                                     tell("Flush " + whole(rig_.settings.FlushTime) + " ul");
                                     return rig_.pump.PumpFlush();
                                   })
                                   .then([&] { return resetOverRinse(); })
                                   .then([&] {
                                     tell("Air dry for " + whole(rig_.settings.AirDryTime) + " s");
                                     return rig_.pump.PumpAirDry(rig_.settings.AirDryTime);
                                   })
                                   .result();
    return result == LinkFailure::None ? SequenceEnd::Done : SequenceEnd::LinkFailed;
  });
}

LinkFailure MaintenanceSequences::volumeCycle() {
  const AutosamplerSettings& s = rig_.settings;
  Pump& pump = rig_.pump;
  const PumpSteps& steps = rig_.steps;
  return Steps{}
      .then([&] { return moveTo(s.StartingTube); })
      .then([&] { return lower(s.TubeHeight, "tube"); })
      .then([&] {
        tell("Draw " + whole(s.SampleVolume) + " ul of sample");
        return pump.PumpFill(steps.SampleSteps);
      })
      .then([&] { return lower(s.BackFillHeight, "backfill"); })
      .then([&] {
        tell("Draw " + whole(s.AirVolume) + " ul of air");
        return pump.PumpFill(steps.AirSteps);
      })
      .then([&] {
        tell("Push " + whole(s.BackFlowVolume) + " ul back");
        return pump.PumpDispense(2, steps.BackFlowSteps);
      })
      .then([&] {
        tell("Check Flow Cell");
        rig_.person.message("Check Flow Cell", "ZORVEL REQUEST", BoxIcon::Exclamation);
        return lower(s.TubeHeight, "tube");
      })
      .then([&] {
        tell("Empty the syringe into the tube");
        return pump.PumpDispense(1, 0);
      })
      .then([&] { return lower(s.BackFillHeight, "backfill"); })
      .then([&] {
        pump.WaitSeconds(1);
        return moveTo(0);
      })
      .then([&] { return lower(s.RinseHeight, "rinse"); })
      .then([&] {
        tell("Flush " + whole(s.FlushTime) + " ul");
        return pump.PumpFlush();
      })
      .then([&] { return resetOverRinse(); })
      .then([&] {
        tell("Air dry for " + whole(s.AirDryTime) + " s");
        return pump.PumpAirDry(s.AirDryTime);
      })
      .result();
}

SequenceEnd MaintenanceSequences::CheckVolumes() {
  return withDilutor([&] {
    if (!ValidateAutosamplerSettings(rig_.settings, rig_.tray.TubeCount,
                                     rig_.links.StepsPerMicrolitre, rig_.steps, rig_.person,
                                     hooks_.corrected)) {
      rig_.person.beep();
      return SequenceEnd::SettingsRefused;
    }
    return volumeCycle() == LinkFailure::None ? SequenceEnd::Done : SequenceEnd::LinkFailed;
  });
}

SequenceEnd MaintenanceSequences::Testing() {
  return withDilutor([&] {
    tell("Flush " + whole(rig_.settings.FlushTime) + " ul");
    return rig_.pump.PumpFlush() == LinkFailure::None ? SequenceEnd::Done : SequenceEnd::LinkFailed;
  });
}

}  // namespace zorvel
