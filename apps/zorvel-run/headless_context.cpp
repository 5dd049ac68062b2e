#include "apps/zorvel-run/headless_context.h"

#include <QDir>

#include "core/app/main_view.h"
#include "core/app/preferences_file.h"
#include "core/app/simulated_marking.h"
#include "core/app/startup.h"
#include "core/files/file_output.h"
#include "core/files/log_line.h"
#include "sim/bench_file.h"

namespace zorvel::headless {

namespace {

// The main window of an unattended run prints what it would show; it has no setup window.
class ConsoleMainView final : public MainView {
 public:
  explicit ConsoleMainView(std::ostream& out) : out_(out) {}
  void setMethodFileLabel(const std::string&) override {}
  void setDataFileLabel(const std::string&) override {}
  void setTrayFile(const std::string&, bool) override {}
  void setMenuEnabled(MainMenu, bool) override {}
  void setCurrentFilesVisible(bool) override {}
  void setMethodControlsEnabled(bool) override {}
  void showDisclaimer() override {}
  bool runSetupWindow() override {
    out_ << "zorvel-run: the preferences need the setup window; start zorvel once in this "
            "directory to set up the instruments.\n";
    return false;
  }
  void closeAllWindows() override {}
  void setLaunchButtons(bool, bool) override {}
  void openRunWindow(const RunSetup&) override {}
  void showMedians(const std::vector<std::string>&) override {}

 private:
  std::ostream& out_;
};

}  // namespace

Context::Context(const Options& opts)
    : options(opts),
      printer(QString::fromStdString(opts.printTo),
              ui::PdfWriterProgram(ui::InstalledPdfWriterProgram())) {
  lines.setTraceDirectory(opts.traceDirectory);
  printer.setFileWritten([this](const std::string& file) {
    WriteLogEntry(state.LogPath, clock, "Printout written to " + file);
  });
  printer.setProblemReported([this](const std::string& problem) {
    WriteLogEntry(state.LogPath, clock, problem);
    std::cerr << "zorvel-run: " << problem << "\n";
  });
}

int Context::fail(const std::string& message, int exitCode) {
  std::cerr << "zorvel-run: " << message << "\n";
  return exitCode;
}

namespace {

// Said before anything else, so that no one takes what follows for the real instruments.
void PrintSimulatedMarking(Context& context, const std::string& start) {
  const std::string preferencesPath = WithTrailingSlash(start) + "ZORVEL.PRF";
  Preferences prefs;
  ReadPreferencesFile(preferencesPath, prefs);
  const PortMap ports = LoadPortMap(context.options.portEntries, preferencesPath);
  const std::string marking = SimulatedMarking(ports, prefs);
  if (!marking.empty()) context.out << marking << "\n";
}

}  // namespace

bool StartHeadless(Context& context) {
  const std::string start = context.options.startDirectory.empty()
                                ? QDir::currentPath().toStdString()
                                : context.options.startDirectory;
  PrintSimulatedMarking(context, start);
  if (!context.options.answersPath.empty()) {
    std::string error;
    if (!context.script.load(context.options.answersPath, &error)) {
      context.fail(error);
      return false;
    }
  }
  if (!context.options.benchPath.empty()) {
    std::string text;
    if (!ReadWholeFile(context.options.benchPath, text)) {
      context.fail("cannot read the bench file " + context.options.benchPath);
      return false;
    }
    std::vector<std::string> problems;
    sim::ParseBenchFile(text, context.lines.rig().bench, problems);
    for (const auto& problem : problems) context.fail(context.options.benchPath + ": " + problem);
    if (!problems.empty()) return false;
  }
  ConsoleMainView view(context.out);
  if (!StartUp(context.state, start, context.op, context.clock, view)) {
    if (context.script.failed()) context.fail(context.script.failure());
    return false;
  }
  std::vector<std::string> rejected;
  std::string portsRefused;
  context.lines.ports() = LoadPortMap(context.options.portEntries, context.state.PreferencesPath,
                                      &rejected, &portsRefused);
  if (!portsRefused.empty()) {
    context.out << portsRefused << "\n";
    context.fail(portsRefused);
    context.op.endProgram(2);
    return false;
  }
  for (const auto& entry : rejected) {
    context.fail("the port assignment \"" + entry + "\" is not of the form COMn=DEVICE");
    return false;
  }
  const std::string simulatedPorts = SimulatedPortsLogText(context.lines.ports());
  if (!simulatedPorts.empty()) WriteLogEntry(context.state.LogPath, context.clock, simulatedPorts);
  return true;
}

}  // namespace zorvel::headless
