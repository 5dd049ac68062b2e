#include <QPushButton>

#include "core/app/simulated_marking.h"
#include "ui/windows/run_window.h"

namespace zorvel::ui {

RunWindow* OpenRunWindow(QWidget* parent, const RunWindowServices& services, const RunSetup& setup,
                         LineSource& lines) {
  const int comPort = services.state.Prefs.FlComPort;
  auto line = lines.lineFor(InstrumentKind::Fluorimeter, comPort);
  if (!line) return nullptr;
  RunWindow::TrayLines tray;
  if (services.state.Method.DeliveryMethod == Delivery::Autosampler) {
    const Preferences& prefs = services.state.Prefs;
    tray.arm = lines.lineFor(InstrumentKind::Arm, prefs.AutoSampComPort);
    tray.pump = lines.lineFor(InstrumentKind::Pump, prefs.DilComPort);
    if (!tray.arm || !tray.pump) return nullptr;
  }
  RunSetup marked = setup;
  marked.simulated = lines.simulatedMarking();
  auto* window = new RunWindow(services, marked, std::move(line), parent, std::move(tray));
  window->setWindowTitle(
      QString::fromStdString(MarkedTitle(window->windowTitle().toStdString(), marked.simulated)));
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setWindowModality(Qt::ApplicationModal);
  if (auto changer = lines.cuvetteChanger(comPort)) {
    window->controller().setCuvetteChanger(std::move(changer));
  }
  window->show();
  // The prompt "[I]nitialize Fluorimeter, [Q]uit Analysis." is answered from the keyboard: the
  // focus is on "&Init" from the start (set before the window was shown, it would be lost).
  window->activateWindow();
  if (auto* init = window->findChild<QPushButton*>("OK_1")) init->setFocus(Qt::OtherFocusReason);
  return window;
}

}  // namespace zorvel::ui
