#include "ui/platform/instrument_lines.h"

#include "core/app/simulated_marking.h"
#include "ui/platform/line_factory.h"

namespace zorvel::ui {

std::unique_ptr<SerialLine> InstrumentLines::lineFor(InstrumentKind kind, int comPort) {
  rig_.setTray(&state_.Tray);
  rig_.setFluorimeterModel(state_.Prefs.Fluorimeter);
  return MakeInstrumentLine(LineRoute{kind, comPort, &ports_, traceDirectory_}, clock_, rig_);
}

std::string InstrumentLines::simulatedMarking() const {
  return SimulatedMarking(ports_, state_.Prefs);
}

std::function<void()> InstrumentLines::cuvetteChanger(int comPort) {
  if (!ports_.isSimulated(comPort)) return {};
  // On the simulated bench each Read finds the next cuvette the bench holds ready.
  return [this] { rig_.bench.insertNextCuvette(); };
}

}  // namespace zorvel::ui
