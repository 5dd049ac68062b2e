#include "apps/zorvel-run/run_signals.h"

#include <signal.h>

#include <atomic>

namespace zorvel::headless {

namespace {

// A signal handler can reach nothing but objects of static storage: these counters are the
// one place the handlers write, and only the run's thread reads them.
std::atomic<int> interrupts{0};
std::atomic<int> pauseKeys{0};
std::atomic<int> stopSignal{0};
static_assert(std::atomic<int>::is_always_lock_free);

void onTraySignal(int number) {
  if (number == SIGINT) interrupts.fetch_add(1);
  if (number == SIGUSR1) pauseKeys.fetch_add(1);
  if (number == SIGTERM) stopSignal.store(number);
}

void onCuvetteSignal(int number) {
  int none = 0;
  stopSignal.compare_exchange_strong(none, number);
}

constexpr int kTraySignals[] = {SIGINT, SIGUSR1, SIGTERM};
constexpr int kCuvetteSignals[] = {SIGINT, SIGTERM};

template <std::size_t N>
void install(const int (&numbers)[N], void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  // Waits on the ports go on where they were; the run looks at the counts between steps.
  action.sa_flags = SA_RESTART;
  for (int number : numbers) sigaction(number, &action, nullptr);
}

}  // namespace

RunSignals::RunSignals(bool tray) {
  if (tray) {
    install(kTraySignals, onTraySignal);
  } else {
    install(kCuvetteSignals, onCuvetteSignal);
  }
}

RunSignals::~RunSignals() {
  for (int number : kTraySignals) signal(number, SIG_DFL);
}

void RunSignals::deliver(RunController& run) {
  for (int n = interrupts.exchange(0); n > 0; --n) run.keyDown(Key::F5);
  for (int n = pauseKeys.exchange(0); n > 0; --n) run.keyDown(Key::F11);
  if (stopSignal.load() != 0) run.Terminate();
}

int RunSignals::stoppedBy() const {
  return stopSignal.load();
}

}  // namespace zorvel::headless
