// Start-up to the main window on screen, against a bare Qt Widgets window: each is a fresh
// process (this program started again with "--child", or bench_startup_bare_window, which links
// Qt Widgets alone) that ends as soon as its first window has been exposed and painted, timed
// from its start to its end. Both use the offscreen platform, so no display is needed.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>

#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "core/app/preferences_file.h"
#include "ui/desktop_program.h"

extern char** environ;

namespace {

using namespace zorvel;

constexpr int kRepeats = 15;
std::string gSelf;

// Ends the process once the first window to be exposed (the main window, here) has been
// painted: the exposure is handled first, then the exit waits for the event loop.
class ExitOnExpose final : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Expose && qobject_cast<QWindow*>(watched) != nullptr &&
        static_cast<QWindow*>(watched)->isExposed()) {
      QTimer::singleShot(0, [] { std::_Exit(0); });
    }
    return false;
  }
};

void WatchForExpose() {
  qApp->installEventFilter(new ExitOnExpose);
}

int ZorvelChild(const std::string& workspace) {
  qAddPreRoutine(WatchForExpose);  // runs once the program has made its application object
  std::vector<std::string> args{"zorvel", "--start-dir", workspace, "--no-disclaimer"};
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  return ui::RunDesktopProgram(static_cast<int>(args.size()), argv.data());
}

std::string Workspace() {
  std::string pattern = (std::filesystem::temp_directory_path() / "zorvel-start-XXXXXX").string();
  std::string dir = std::string(::mkdtemp(pattern.data())) + "/";
  std::filesystem::create_directories(dir + "DATA");
  std::filesystem::create_directories(dir + "METHODS");
  Preferences prefs;
  prefs.BaseDirectoryPath = dir;
  WritePreferencesFile(dir + "ZORVEL.PRF", prefs);
  return dir;
}

double ChildSeconds(const std::string& program, const std::string& workspace) {
  double best = 1e9;
  for (int i = 0; i < kRepeats; ++i) {
    std::vector<std::string> args{program, "--child", workspace};
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    pid_t pid = 0;
    if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv.data(), environ) != 0) return 0;
    int status = 0;
    waitpid(pid, &status, 0);
    const double s =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) best = std::min(best, s);
  }
  return best;
}

void BM_StartUpToMainWindow(benchmark::State& state) {
  const std::string workspace = Workspace();
  double zorvelS = 0;
  double bareS = 0;
  for (auto _ : state) {
    bareS = ChildSeconds(ZORVEL_BARE_WINDOW, workspace);
    zorvelS = ChildSeconds(gSelf, workspace);
  }
  state.counters["zorvel_ms"] = zorvelS * 1e3;
  state.counters["bare_ms"] = bareS * 1e3;
  state.counters["ratio_to_bare"] = zorvelS / bareS;
  std::filesystem::remove_all(workspace);
}
BENCHMARK(BM_StartUpToMainWindow)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  if (argc == 3 && std::strcmp(argv[1], "--child") == 0) return ZorvelChild(argv[2]);
  gSelf = std::filesystem::canonical("/proc/self/exe").string();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
