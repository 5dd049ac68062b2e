#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/platform/serial_line.h"

namespace zorvel {

// The three instruments a port can lead to.
enum class InstrumentKind { Fluorimeter, Arm, Pump };
inline constexpr InstrumentKind kAllInstruments[] = {InstrumentKind::Fluorimeter,
                                                     InstrumentKind::Arm, InstrumentKind::Pump};

// "fluorimeter", "arm" or "pump": for trace file names and the simulator's listing.
std::string_view InstrumentName(InstrumentKind kind);

// Where the windows and the unattended commands get their instruments' serial lines. Only
// start-up knows whether a line is a real port, a simulator in process or a traced port.
class LineSource {
 public:
  virtual ~LineSource() = default;

  // The line to the instrument on its COM port (1..4, as the settings files name it); nothing
  // when none can be made.
  virtual std::unique_ptr<SerialLine> lineFor(InstrumentKind kind, int comPort) = 0;
  // What stands for the operator putting the next cuvette in at each Read on the fluorimeter's
  // COM port: the simulated bench hands over its next cuvette; empty for a real operator.
  virtual std::function<void()> cuvetteChanger(int comPort) = 0;
  // "SIMULATED fluorimeter, ..." naming the instruments of the preferences whose lines lead to
  // a simulator, for window titles and the log; empty when every line is real.
  virtual std::string simulatedMarking() const { return {}; }
};

}  // namespace zorvel
