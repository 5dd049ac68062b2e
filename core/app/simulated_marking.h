#pragma once

#include <string>

#include "core/app/port_map.h"
#include "core/state/preferences.h"

namespace zorvel {

// Simulated instruments are never to be mistaken for real ones: wherever the operator looks
// (window titles, zorvel-run's first line, the program log) they are named.

// "SIMULATED fluorimeter, arm, pump" for the instruments of the preferences whose ports lead to
// a simulator, built in or zorvel-sim's (the arm and the pump only when an autosampler is
// attached); empty when none.
std::string SimulatedMarking(const PortMap& ports, const Preferences& prefs);

// The window title with the marking after it: "ZORVEL - SIMULATED fluorimeter".
std::string MarkedTitle(const std::string& title, const std::string& marking);

// The program log's start-up line naming the COM ports that lead to a simulator ("Simulated ports:
// COM1, COM3"); empty when none is.
std::string SimulatedPortsLogText(const PortMap& ports);

}  // namespace zorvel
