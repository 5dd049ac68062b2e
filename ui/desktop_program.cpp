#include "ui/desktop_program.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QScopeGuard>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include "core/app/demo_workspace.h"
#include "core/app/port_map.h"
#include "core/app/simulated_marking.h"
#include "core/files/file_output.h"
#include "core/files/log_line.h"
#include "core/files/paths.h"
#include "core/platform/real_clock.h"
#include "core/quality/quality_checks.h"
#include "core/state/app_state.h"
#include "sim/bench_file.h"
#include "sim/demo_bench.h"
#include "sim/sim_rig.h"
#include "ui/command_line.h"
#include "ui/desktop_options.h"
#include "ui/platform/dbus_notifier.h"
#include "ui/platform/instrument_lines.h"
#include "ui/platform/pdf_painting.h"
#include "ui/platform/qt_operator.h"
#include "ui/platform/qt_printer.h"
#include "ui/start_up_preload.h"
#include "ui/windows/alert_window.h"
#include "ui/windows/banded_frame_style.h"
#include "ui/windows/main_window.h"

namespace zorvel::ui {

namespace {

// Every instrument on the simulator: --simulate, and the demo workspace's ports file.
std::vector<std::string> portEntries(const DesktopOptions& options) {
  std::vector<std::string> entries;
  if (options.simulate) {
    for (int com = 1; com <= 4; ++com) entries.push_back("COM" + std::to_string(com) + "=sim");
  }
  entries.insert(entries.end(), options.portEntries.begin(), options.portEntries.end());
  return entries;
}

// The bench the in-process simulators share: ZORVEL.BENCH in the start-up directory, when
// there is one (the demo workspace has).
void loadBench(const std::string& startDirectory, sim::SimRig& rig, Operator& op) {
  const std::string path = JoinPath(startDirectory, "ZORVEL.BENCH");
  std::string text;
  if (!FileExists(path) || !ReadWholeFile(path, text)) return;
  std::vector<std::string> problems;
  sim::ParseBenchFile(text, rig.bench, problems);
  for (const auto& problem : problems) {
    op.message(path + ": " + problem, "ZORVEL ERROR", BoxIcon::Exclamation);
  }
}

// Makes the demo workspace when asked for and moves into the start-up directory; the exit
// status when that fails.
std::optional<int> enterStartDirectory(const DesktopOptions& options, QtOperator& op) {
  std::string startDirectory = options.startDirectory;
  if (options.demoDirectory) {
    if (!PrepareDemoWorkspace(*options.demoDirectory, op)) return 1;
    const std::string bench = JoinPath(*options.demoDirectory, "ZORVEL.BENCH");
    if (!FileExists(bench)) WriteWholeFile(bench, sim::DemoBenchText());
    startDirectory = *options.demoDirectory;
  }
  if (startDirectory.empty()) return std::nullopt;
  std::error_code ec;
  std::filesystem::current_path(startDirectory, ec);
  if (!ec) return std::nullopt;
  std::fprintf(stderr, "zorvel: cannot use %s as the start-up directory: %s\n",
               startDirectory.c_str(), ec.message().c_str());
  return 2;
}

}  // namespace

int RunDesktopProgram(int argc, char** argv) {
  // Parsed before the application object, which needs a display: --help and --version do not.
  NameProgram("zorvel");
  int exitStatus = 0;
  const auto options = ParseDesktopOptions(ArgumentList(argc, argv), &exitStatus);
  if (!options) return exitStatus;
  StartUpPreload preload;
  QApplication app(argc, argv);
  preload.applicationMade();
  // Its thread uses the application object: it ends before that goes, however start-up ends.
  const auto preloadEnded = qScopeGuard([&preload] { preload.wait(); });
  UseBandedFrames();

  QtOperator op;
  if (const auto failed = enterStartDirectory(*options, op)) return *failed;

  auto state = std::make_unique<AppState>();
  RealClock clock;
  QtPrinter printer(QString::fromStdString(options->printTo), PaintingPdfWriter());
  InstrumentLines lines(*state, clock);
  lines.setTraceDirectory(options->traceDirectory);
  printer.setFileWritten([&](const std::string& file) {
    WriteLogEntry(state->LogPath, clock, "Printout written to " + file);
  });
  printer.setProblemReported([&](const std::string& problem) {
    WriteLogEntry(state->LogPath, clock, problem);
    op.message(problem, "ZORVEL ERROR", BoxIcon::Exclamation);
  });
  // Made before the windows, which tell it of tray runs until they are gone.
  DBusNotifier notifier(QDBusConnection::sessionBus(), [&](const std::string& line) {
    WriteLogEntry(state->LogPath, clock, line);
  });
  preload.wait();
  MainWindow window(*state, op, clock, printer);
  op.setParent(&window);
  window.setNotifier(&notifier);
  QtAlertDialog alert(op, &window);
  QualityChecks checks(*state, clock, op, alert);
  window.setDisclaimerShown(options->showDisclaimer);
  window.setQualityChecks(checks);

  if (!window.presenter().startUp(QDir::currentPath().toStdString())) return op.exitCode();
  std::vector<std::string> rejected;
  std::string portsRefused;
  lines.ports() =
      LoadPortMap(portEntries(*options), state->PreferencesPath, &rejected, &portsRefused);
  // The instruments stay on the machine's own ports; the operator knows why.
  if (!portsRefused.empty()) op.message(portsRefused, "ZORVEL ERROR", BoxIcon::Exclamation);
  for (const auto& entry : rejected) {
    op.message("The port assignment \"" + entry + "\" is not of the form COMn=DEVICE.",
               "ZORVEL ERROR", BoxIcon::Exclamation);
  }
  const std::string simulatedPorts = SimulatedPortsLogText(lines.ports());
  if (!simulatedPorts.empty()) WriteLogEntry(state->LogPath, clock, simulatedPorts);
  loadBench(state->StartDirectory, lines.rig(), op);
  window.setInstruments(&lines);
  window.show();
  return QApplication::exec();
}

}  // namespace zorvel::ui
