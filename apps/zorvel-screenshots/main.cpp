// Pictures of the main, autosampler and run windows as the program draws them, for the README:
// the demo workspace on the built-in simulator, each window grabbed into OUTDIR/NAME.png.
#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QWidget>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include "core/app/demo_workspace.h"
#include "core/method/demo_methods.h"
#include "core/platform/page_printer.h"
#include "core/platform/real_clock.h"
#include "core/platform/scripted_operator.h"
#include "core/quality/quality_checks.h"
#include "core/state/app_state.h"
#include "ui/platform/instrument_lines.h"
#include "ui/windows/alert_window.h"
#include "ui/windows/autosampler_window.h"
#include "ui/windows/main_window.h"

namespace {

using namespace zorvel;

bool save(QWidget& window, const QString& directory, const char* name) {
  QCoreApplication::processEvents();
  const QString path = QDir(directory).filePath(QString(name) + ".png");
  if (!window.grab().save(path)) {
    std::fprintf(stderr, "zorvel-screenshots: cannot write %s\n", qPrintable(path));
    return false;
  }
  std::printf("%s\n", qPrintable(path));
  return true;
}

void settle(const std::function<bool()>& busy) {
  for (int k = 0; k < 2000 && busy(); ++k) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
  }
}

// The autosampler window as AS Setup opens it, once its opening moves are over.
bool saveAutosampler(AppState& state, ScriptedOperator& op, RealClock& clock,
                     ui::InstrumentLines& lines, QWidget& parent, const QString& out) {
  const Preferences& prefs = state.Prefs;
  ui::AutosamplerWindow autosampler(
      state, op, clock, lines.lineFor(InstrumentKind::Arm, prefs.AutoSampComPort),
      lines.lineFor(InstrumentKind::Pump, prefs.DilComPort), {}, &parent);
  autosampler.show();
  settle([&] { return autosampler.working(); });
  QCoreApplication::processEvents();
  settle([&] { return autosampler.working(); });
  const bool ok = save(autosampler, out, "autosampler");
  autosampler.hide();
  return ok;
}

// The run window as OK opens it for the loaded method.
bool saveRun(ui::MainWindow& window, const ScriptedOperator& op, const QString& out) {
  window.presenter().okButton();
  QWidget* run = nullptr;
  settle([&] {
    run = nullptr;
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top->objectName() == "SAMPLING" && top->isVisible()) run = top;
    }
    return run == nullptr;
  });
  if (run == nullptr) {
    std::fprintf(stderr, "zorvel-screenshots: the run window did not open\n");
    for (const auto& box : op.messages()) std::fprintf(stderr, "  %s\n", box.text.c_str());
    return false;
  }
  const bool ok = save(*run, out, "run");
  run->close();
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: zorvel-screenshots OUTDIR\n");
    return 2;
  }
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  const QString out = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(out);
  const std::string workspace =
      (std::filesystem::temp_directory_path() / "zorvel-screenshots-demo").string();
  std::filesystem::remove_all(workspace);
  ScriptedOperator op;
  if (!PrepareDemoWorkspace(workspace, op)) return 1;
  std::filesystem::current_path(workspace);

  AppState state;
  RealClock clock;
  PagePrinter printer;
  ui::MainWindow window(state, op, clock, printer);
  window.setDisclaimerShown(false);
  ui::QtAlertDialog alert(op, &window);
  QualityChecks checks(state, clock, op, alert);
  window.setQualityChecks(checks);
  if (!window.presenter().startUp(workspace)) return 1;
  ui::InstrumentLines lines(state, clock);
  for (int com = 1; com <= 4; ++com) lines.ports().devices[com] = "sim";
  window.setInstruments(&lines);
  window.show();
  op.chooseNext(state.MethodsDirectory + "/" + kDemoTrayMethod);
  window.action(MainMenu::EditMethodFile)->trigger();
  bool ok = save(window, out, "main");

  ok = saveAutosampler(state, op, clock, lines, window, out) && ok;
  return saveRun(window, op, out) && ok;
}
