#include "core/app/simulated_marking.h"

namespace zorvel {

namespace {

constexpr int kComPorts = 4;

}  // namespace

std::string SimulatedMarking(const PortMap& ports, const Preferences& prefs) {
  std::string names;
  const auto add = [&](InstrumentKind kind, int comPort) {
    if (!ports.leadsToSimulator(comPort)) return;
    names += (names.empty() ? "" : ", ") + std::string(InstrumentName(kind));
  };
  add(InstrumentKind::Fluorimeter, prefs.FlComPort);
  if (prefs.AutoSampler) {
    add(InstrumentKind::Arm, prefs.AutoSampComPort);
    add(InstrumentKind::Pump, prefs.DilComPort);
  }
  return names.empty() ? std::string() : "SIMULATED " + names;
}

std::string MarkedTitle(const std::string& title, const std::string& marking) {
  return marking.empty() ? title : title + " - " + marking;
}

std::string SimulatedPortsLogText(const PortMap& ports) {
  std::string list;
  for (int com = 1; com <= kComPorts; ++com) {
    if (ports.leadsToSimulator(com)) list += (list.empty() ? "COM" : ", COM") + std::to_string(com);
  }
  return list.empty() ? std::string() : "Simulated ports: " + list;
}

}  // namespace zorvel
