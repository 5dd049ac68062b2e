#include "apps/zorvel-run/tray_signals.h"

#include <signal.h>

#include <atomic>

namespace zorvel::headless {

namespace {

// A signal handler can reach nothing but objects of static storage: these counters are the
// one place the handlers write, and only the run's thread reads them.
std::atomic<int> interrupts{0};
std::atomic<int> pauseKeys{0};
std::atomic<bool> terminate{false};
static_assert(std::atomic<int>::is_always_lock_free);

void onSignal(int number) {
  if (number == SIGINT) interrupts.fetch_add(1);
  if (number == SIGUSR1) pauseKeys.fetch_add(1);
  if (number == SIGTERM) terminate.store(true);
}

constexpr int kSignals[] = {SIGINT, SIGUSR1, SIGTERM};

}  // namespace

TraySignals::TraySignals() {
  struct sigaction action {};
  action.sa_handler = onSignal;
  sigemptyset(&action.sa_mask);
  // Waits on the ports go on where they were; the run looks at the counts between steps.
  action.sa_flags = SA_RESTART;
  for (int number : kSignals) sigaction(number, &action, nullptr);
}

TraySignals::~TraySignals() {
  for (int number : kSignals) signal(number, SIG_DFL);
}

void TraySignals::deliver(RunController& run) {
  for (int n = interrupts.exchange(0); n > 0; --n) run.keyDown(Key::F5);
  for (int n = pauseKeys.exchange(0); n > 0; --n) run.keyDown(Key::F11);
  if (terminate.load()) run.Terminate();
}

bool TraySignals::terminated() const {
  return terminate.load();
}

}  // namespace zorvel::headless
