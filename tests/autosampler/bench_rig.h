#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/autosampler/maintenance_sequences.h"
#include "core/instruments/pump_protocol.h"
#include "core/method/method_defaults.h"
#include "core/platform/scripted_operator.h"
#include "core/platform/virtual_clock.h"
#include "sim/arm_sim.h"
#include "sim/pump_sim.h"
#include "sim/simulated_line.h"
#include "support/six_tube_tray.h"

namespace zorvel::testing {

// Writes what the program sends to either instrument into one ordered transcript: an arm
// command as "arm " and its text with the CR shown as <CR>; a dilutor frame other than the
// status query as "dilutor N TEXT" when its bytes are exactly the frame built for that address
// and text, else "dilutor BAD FRAME".
class Transcript {
 public:
  class Tap final : public sim::LinePeer {
   public:
    Tap(Transcript& log, sim::LinePeer& inner, bool arm) : log_(log), inner_(inner), arm_(arm) {}
    void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) override {
      if (arm_) {
        log_.lines.push_back("arm " + std::string(bytes.substr(0, bytes.size() - 1)) +
                             (bytes.ends_with('\r') ? "<CR>" : "<no CR>"));
      } else {
        log_.frame(bytes);
      }
      inner_.onReceive(bytes, arrivedS, reply);
    }

   private:
    Transcript& log_;
    sim::LinePeer& inner_;
    bool arm_;
  };

  void frame(std::string_view bytes) {
    if (bytes.size() < 6) {
      lines.push_back("dilutor BAD FRAME");
      return;
    }
    const auto address = static_cast<std::int16_t>(bytes[2] - '0');
    const std::string text(bytes.substr(4, bytes.size() - 6));
    if (text == "Q" && bytes == PumpQueryFrame(address)) return;
    lines.push_back(bytes == PumpFrame(address, text)
                        ? "dilutor " + std::to_string(address) + " " + text
                        : std::string("dilutor BAD FRAME"));
  }

  std::vector<std::string> lines;
};

// The arm and the dilutor on their simulated lines over a six-tube tray with the rinse station
// at X 245, Y 20 and tubes every 18 mm from X 20 along Y 20.
struct BenchRig {
  BenchRig() {
    tray = testing::SixTubeTray();
    SetAutosamplerDefaults(settings, tray.TubeCount);
    settings.StartingTube = 3;
    settings.StandardTube = 1;
    settings.BlankTube = 2;
    settings.AirDryTime = 2;
    // As after a reset: the next move to any tube is sent.
    links.CurrentArmTube = -1;
  }

  MaintenanceRig parts() { return MaintenanceRig{arm, pump, settings, tray, links, steps, person}; }
  std::vector<std::string>& sent() { return log.lines; }

  VirtualClock clock;
  sim::Bench bench;
  TrayGeometry tray;
  sim::ArmSim armModel{bench, &tray};
  sim::PumpSim pumpModel{bench};
  Transcript log;
  Transcript::Tap armTap{log, armModel, true};
  Transcript::Tap pumpTap{log, pumpModel, false};
  sim::SimulatedLine armLine{clock, armTap, "COM3 (sim)"};
  sim::SimulatedLine pumpLine{clock, pumpTap, "COM2 (sim)"};
  ScriptedOperator person;
  LinkState links;
  AutosamplerSettings settings;
  PumpSteps steps;
  Arm arm{armLine, clock, person, links, tray};
  Pump pump{pumpLine, clock, person, links, settings};
};

}  // namespace zorvel::testing
