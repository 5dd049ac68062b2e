#include "core/app/port_map.h"
#include "sim/sim_rig.h"
#include "ui/platform/line_factory.h"
#include "ui/windows/run_window.h"

namespace zorvel::ui {

RunWindow* OpenRunWindow(QWidget* parent, const RunWindowServices& services, const RunSetup& setup,
                         const PortMap& ports, sim::SimRig& rig,
                         const std::string& traceDirectory) {
  const int comPort = services.state.Prefs.FlComPort;
  auto line = MakeInstrumentLine(
      LineRoute{InstrumentKind::Fluorimeter, comPort, &ports, traceDirectory}, services.clock, rig);
  if (!line) return nullptr;
  auto* window = new RunWindow(services, setup, std::move(line), parent);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setWindowModality(Qt::ApplicationModal);
  if (ports.isSimulated(comPort)) {
    // On the simulated bench each Read finds the next cuvette the bench holds ready.
    window->controller().setCuvetteChanger([&rig] { rig.bench.insertNextCuvette(); });
  }
  window->show();
  return window;
}

}  // namespace zorvel::ui
