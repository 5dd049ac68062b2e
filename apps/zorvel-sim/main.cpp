// zorvel-sim: the three simulated instruments on pseudo-terminals, for running the desktop
// program (or any terminal program) against a bench that is not there.

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/app/port_map.h"
#include "core/app/preferences_file.h"
#include "core/autosampler/tray_geometry_file.h"
#include "core/files/file_output.h"
#include "core/platform/real_clock.h"
#include "core/text/number_format.h"
#include "sim/bench_file.h"
#include "sim/pty_bridge.h"
#include "sim/sim_rig.h"
#include "ui/command_line.h"

namespace {

using namespace zorvel;

struct SimOptions {
  std::string directory;  // ends in "/"
  double speed = 1.0;
  std::string benchFile;
  std::uint32_t seed = 1;
};

std::optional<std::string> readWholeFile(const std::string& path) {
  std::string text;
  if (!ReadWholeFile(path, text)) return std::nullopt;
  return text;
}

// Nothing, with the exit status set, when the program ends at once (help, version, bad use).
std::optional<SimOptions> parseOptions(const QCoreApplication& app, int* exitStatus) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QString("Serves the fluorimeter, the autosampler arm and the pump on pseudo-terminals,\n"
              "writes DIR/ZORVEL.PORTS pointing the COM ports of DIR/ZORVEL.PRF at them,\n"
              "and runs until interrupted (the previous ports file is put back then).\n"
              "A line \"next\" on standard input, or SIGUSR1, puts the next cuvette in the\n"
              "holder and prints which one is there.\n\n") +
      QString::fromUtf8(sim::BenchFileHelp().data(),
                        static_cast<qsizetype>(sim::BenchFileHelp().size())));
  parser.addOption({"dir", "Folder holding ZORVEL.PRF; ZORVEL.PORTS is written there.", "DIR"});
  parser.addOption({"speed", "Run the instruments' time F times faster (default 1).", "F", "1"});
  parser.addOption({"bench", "What the cuvettes and tubes hold (format above).", "FILE"});
  parser.addOption({"seed", "Seed of the readings' noise (default 1).", "N", "1"});
  if (const auto status = ui::ParseCommandLine(parser, app.arguments())) {
    *exitStatus = *status;
    return std::nullopt;
  }
  *exitStatus = 2;
  SimOptions options;
  const auto speed = text::parseNumber(parser.value("speed").toStdString());
  const auto seed = text::parseNumber(parser.value("seed").toStdString());
  if (!parser.isSet("dir") || !speed || *speed <= 0 || !seed || *seed < 0) {
    std::fprintf(stderr, "zorvel-sim: --dir DIR is required; --speed and --seed take numbers.\n");
    return std::nullopt;
  }
  options.directory = QDir(parser.value("dir")).absolutePath().toStdString() + "/";
  options.speed = *speed;
  options.seed = static_cast<std::uint32_t>(*seed);
  options.benchFile = parser.value("bench").toStdString();
  return options;
}

bool loadBench(const std::string& path, sim::Bench& bench) {
  if (path.empty()) return true;
  const auto text = readWholeFile(path);
  if (!text) {
    std::fprintf(stderr, "zorvel-sim: cannot read the bench file %s\n", path.c_str());
    return false;
  }
  std::vector<std::string> problems;
  sim::ParseBenchFile(*text, bench, problems);
  for (const std::string& p : problems) std::fprintf(stderr, "%s: %s\n", path.c_str(), p.c_str());
  return problems.empty();
}

int comPortOf(const Preferences& prefs, InstrumentKind kind) {
  switch (kind) {
    case InstrumentKind::Arm:
      return prefs.AutoSampComPort;
    case InstrumentKind::Pump:
      return prefs.DilComPort;
    case InstrumentKind::Fluorimeter:
      break;
  }
  return prefs.FlComPort;
}

// Puts the ports file back as it was before this run, unless someone has changed it since.
class PortsFileGuard {
 public:
  explicit PortsFileGuard(std::string path)
      : path_(std::move(path)), previous_(readWholeFile(path_)) {}
  bool write(const std::vector<PortAssignment>& assignments) {
    written_ = FormatPortsFile(assignments, true);
    return WritePortsFile(path_, assignments, true);
  }
  ~PortsFileGuard() {
    if (!written_ || readWholeFile(path_) != written_) return;
    if (previous_) {
      WriteWholeFile(path_, *previous_);
    } else {
      std::filesystem::remove(path_);
    }
  }

 private:
  std::string path_;
  std::optional<std::string> previous_;
  std::optional<std::string> written_;
};

// Blocks SIGINT and SIGTERM and returns a descriptor that becomes readable when one comes.
int stopSignalDescriptor() {
  sigset_t stopSignals;
  sigemptyset(&stopSignals);
  sigaddset(&stopSignals, SIGINT);
  sigaddset(&stopSignals, SIGTERM);
  sigprocmask(SIG_BLOCK, &stopSignals, nullptr);
  return signalfd(-1, &stopSignals, SFD_CLOEXEC);
}

// The operator's change of cuvette, which the program cannot see through the ports: a line
// "next" on standard input or SIGUSR1 puts the next queued cuvette in the holder, and what is
// in the holder now is printed.
class CuvetteChanger {
 public:
  explicit CuvetteChanger(sim::Bench& bench) : bench_(bench) {
    sigset_t change;
    sigemptyset(&change);
    sigaddset(&change, SIGUSR1);
    sigprocmask(SIG_BLOCK, &change, nullptr);
    signalFd_ = signalfd(-1, &change, SFD_CLOEXEC);
    // Run in the background of a shell, reading the terminal ends the watch instead of
    // stopping the simulator.
    signal(SIGTTIN, SIG_IGN);
  }
  ~CuvetteChanger() {
    if (signalFd_ >= 0) close(signalFd_);
  }
  CuvetteChanger(const CuvetteChanger&) = delete;
  CuvetteChanger& operator=(const CuvetteChanger&) = delete;

  void watchWith(sim::PtyServer& server) {
    if (signalFd_ >= 0) server.watch(signalFd_, [this] { return takeSignal(); });
    server.watch(STDIN_FILENO, [this] { return takeInput(); });
  }

 private:
  bool takeSignal() {
    signalfd_siginfo info;
    if (read(signalFd_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) change();
    return true;
  }
  // False at the end of the input: the watch ends, the signal still works.
  bool takeInput() {
    char bytes[256];
    const ssize_t n = read(STDIN_FILENO, bytes, sizeof bytes);
    if (n <= 0) return n < 0 && errno == EINTR;
    pending_.append(bytes, static_cast<std::size_t>(n));
    for (std::size_t eol = pending_.find('\n'); eol != std::string::npos;
         eol = pending_.find('\n')) {
      std::string line = pending_.substr(0, eol);
      pending_.erase(0, eol + 1);
      while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back())))
        line.pop_back();
      if (line == "next") {
        change();
      } else if (!line.empty()) {
        std::fprintf(stderr, "zorvel-sim: \"%s\" is not a command; \"next\" changes the cuvette\n",
                     line.c_str());
      }
    }
    return true;
  }
  void change() {
    const bool changed = bench_.putNextCuvette();
    const std::string& label = bench_.cuvette.label;
    const char* name = label.empty() ? "(no label)" : label.c_str();
    if (changed) {
      std::printf("cuvette in the holder: %s\n", name);
    } else {
      std::printf("no cuvette left; %s stays in the holder\n", name);
    }
    std::fflush(stdout);
  }

  sim::Bench& bench_;
  int signalFd_ = -1;
  std::string pending_;
};

using Bridges = std::vector<std::unique_ptr<sim::PtyBridge>>;

// Puts each instrument of the rig on a pseudo-terminal of its own and says where.
bool openBridges(sim::SimRig& rig, const Preferences& prefs, sim::PtyServer& server,
                 Bridges& bridges, std::vector<PortAssignment>& assignments) {
  for (InstrumentKind kind : kAllInstruments) {
    sim::LinePeer* peer = rig.peerFor(kind);
    const std::string name(InstrumentName(kind));
    if (peer == nullptr) {
      std::fprintf(stderr, "zorvel-sim: no %s model in this build\n", name.c_str());
      continue;
    }
    auto bridge = std::make_unique<sim::PtyBridge>(*peer);
    std::string error;
    if (!bridge->open(&error)) {
      std::fprintf(stderr, "zorvel-sim: %s: %s\n", name.c_str(), error.c_str());
      return false;
    }
    const int com = comPortOf(prefs, kind);
    assignments.push_back({com, bridge->devicePath()});
    std::printf("COM%s %s %s\n", text::plain(com).c_str(), name.c_str(),
                bridge->devicePath().c_str());
    server.add(*bridge);
    bridges.push_back(std::move(bridge));
  }
  return true;
}

Preferences readPreferences(const std::string& prf) {
  Preferences prefs;
  if (std::filesystem::exists(prf) &&
      ReadPreferencesFile(prf, prefs) != PreferencesReadResult::Ok) {
    std::fprintf(stderr, "zorvel-sim: %s is incomplete; using COM1, COM2, COM3\n", prf.c_str());
    prefs = Preferences{};
  }
  return prefs;
}

int serve(const SimOptions& options) {
  const int stopFd = stopSignalDescriptor();
  const std::string prf = options.directory + "ZORVEL.PRF";
  const Preferences prefs = readPreferences(prf);
  sim::SimRig rig(prefs.Fluorimeter, options.seed);
  if (!loadBench(options.benchFile, rig.bench)) return 2;
  TrayGeometry tray;
  if (prefs.AutoSampler && !prefs.TrayGeometryFile.empty() &&
      !LoadTrayGeometry(prefs.TrayGeometryFile, tray)) {
    std::fprintf(stderr, "zorvel-sim: cannot read the tray file %s; the arm stands over no tube\n",
                 prefs.TrayGeometryFile.c_str());
  }
  rig.setTray(&tray);

  RealClock clock;
  sim::PtyServer server(clock, options.speed);
  Bridges bridges;
  std::vector<PortAssignment> assignments;
  if (!openBridges(rig, prefs, server, bridges, assignments)) return 1;
  PortsFileGuard portsFile(PortsFilePathBeside(prf));
  if (!portsFile.write(assignments)) {
    std::fprintf(stderr, "zorvel-sim: cannot write %s\n", PortsFilePathBeside(prf).c_str());
    return 1;
  }
  CuvetteChanger cuvettes(rig.bench);
  cuvettes.watchWith(server);
  std::fflush(stdout);
  server.run(stopFd);
  if (stopFd >= 0) close(stopFd);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  ui::NameProgram("zorvel-sim");
  int exitStatus = 0;
  const auto options = parseOptions(app, &exitStatus);
  if (!options) return exitStatus;
  return serve(*options);
}
