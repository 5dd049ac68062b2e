#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/app/port_map.h"
#include "core/platform/clock.h"
#include "core/platform/line_source.h"
#include "core/state/app_state.h"
#include "sim/sim_rig.h"

namespace zorvel::ui {

// The programs' one LineSource. The port map says where each COM port leads; the device "sim"
// joins the line to the in-process simulated bench, which follows the preferences (the
// fluorimeter model, the loaded tray) each time a line is handed out; with a trace folder every
// line records its traffic there.
class InstrumentLines final : public LineSource {
 public:
  InstrumentLines(const AppState& state, Clock& clock) : state_(state), clock_(clock) {}

  PortMap& ports() { return ports_; }
  sim::SimRig& rig() { return rig_; }
  // Empty: no trace.
  void setTraceDirectory(std::string directory) { traceDirectory_ = std::move(directory); }

  std::unique_ptr<SerialLine> lineFor(InstrumentKind kind, int comPort) override;
  std::function<void()> cuvetteChanger(int comPort) override;
  std::string simulatedMarking() const override;

 private:
  const AppState& state_;
  Clock& clock_;
  PortMap ports_;
  sim::SimRig rig_;
  std::string traceDirectory_;
};

}  // namespace zorvel::ui
