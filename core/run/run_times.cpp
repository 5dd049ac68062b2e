#include "core/run/run_times.h"

#include "core/text/date_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr long kDayS = 86400;

std::string count(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

}  // namespace

std::vector<std::string> RunTimeLines(long startS, long nowS, int completed, int total) {
  long elapsedS = nowS - startS;
  if (elapsedS < 0) elapsedS += kDayS;
  const long perTubeS = completed > 0 ? elapsedS / completed : 0;
  const long remainingS = perTubeS * (total > completed ? total - completed : 0);
  return {
      "Elapsed Time: " + text::formatHms(elapsedS) + "    Completed (" + count(completed) + " / " +
          count(total) + ")",
      "Time Per Sample: " + text::formatHms(perTubeS),
      "Estimated Completion: " + text::formatHms((nowS + remainingS) % kDayS),
      "Current Time: " + text::formatHms(nowS % kDayS),
  };
}

}  // namespace zorvel
