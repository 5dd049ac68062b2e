#include "core/platform/real_clock.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace zorvel {

namespace {

std::tm localNow(double* fractionS) {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  if (fractionS != nullptr) {
    const auto sinceSecond = now - std::chrono::system_clock::from_time_t(seconds);
    *fractionS = std::chrono::duration<double>(sinceSecond).count();
  }
  std::tm local{};
  localtime_r(&seconds, &local);
  return local;
}

}  // namespace

double RealClock::monotonicS() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double RealClock::secondsSinceMidnight() {
  double fraction = 0.0;
  const std::tm local = localNow(&fraction);
  return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + fraction;
}

CalendarTime RealClock::now() {
  const std::tm local = localNow(nullptr);
  return CalendarTime{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                      local.tm_hour,        local.tm_min,     local.tm_sec};
}

void RealClock::sleepUntil(double moment) {
  const double wait = moment - monotonicS();
  if (wait > 0) std::this_thread::sleep_for(std::chrono::duration<double>(wait));
}

}  // namespace zorvel
