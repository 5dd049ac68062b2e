// Start-up to the main window on screen, against a bare Qt Widgets window: each is a fresh
// process (this program started again with "--child", or bench_startup_bare_window, which links
// Qt Widgets alone) that ends as soon as its first window has been painted, text and all, timed
// from its start to its end. Both use the offscreen platform, so no display is needed.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>

#include <QApplication>
#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
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

constexpr int kRepeats = 40;
std::string gSelf;

// Ends the process once the first window (the main window, here) has been painted. Ending at
// its exposure instead would stop a window with text before any font is loaded.
class ExitOnPaint final : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The window's own paint comes first in a pass that paints all its children; the exit
    // waits for the event loop, so the whole pass, text and all, is done.
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
      QTimer::singleShot(0, [] { std::_Exit(0); });
    }
    return false;
  }
};

void WatchForPaint() {
  qApp->installEventFilter(new ExitOnPaint);
}

int ZorvelChild(const std::string& workspace) {
  qAddPreRoutine(WatchForPaint);  // runs once the program has made its application object
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

// One start of the program, from spawning it to its end; 0 when it did not end well.
double ChildSeconds(const std::string& program, const std::string& workspace) {
  std::vector<std::string> args{program, "--child", workspace};
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  const auto start = std::chrono::steady_clock::now();
  pid_t pid = 0;
  if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv.data(), environ) != 0) return 0;
  int status = 0;
  waitpid(pid, &status, 0);
  const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? s : 0;
}

void BM_StartUpToMainWindow(benchmark::State& state) {
  const std::string workspace = Workspace();
  // The two starts take turns, so a busy moment of the machine falls on both alike; the best
  // of each is the least the machine's other work added.
  double zorvelS = 1e9;
  double bareS = 1e9;
  for (auto _ : state) {
    for (int i = 0; i < kRepeats; ++i) {
      if (const double s = ChildSeconds(ZORVEL_BARE_WINDOW, workspace); s > 0)
        bareS = std::min(bareS, s);
      if (const double s = ChildSeconds(gSelf, workspace); s > 0) zorvelS = std::min(zorvelS, s);
    }
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
