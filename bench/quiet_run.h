// What the run benchmarks share: a run window nobody looks at, and the processor time used.
#pragma once

#include <sys/resource.h>

#include <string>
#include <vector>

#include "core/run/run_view.h"

namespace zorvel::bench {

class QuietView final : public RunView {
 public:
  void layOut(const RunLayout&) override {}
  void showScreen(const RunScreen&) override {}
  void clearStatus() override {}
  void showStatus(const std::string&) override {}
  void setCell(int, int, const std::string&) override {}
  void setCellColour(int, int, int) override {}
  void setMedianRow(const std::vector<std::string>&) override {}
  void showRow(int) override {}
  void clearSpectra() override {}
  void setSpectraScale(double, double, double, double) override {}
  void plotPoint(double, double, int) override {}
  void setProgress(int) override {}
  void clearComment() override {}
  void closeWindow() override {}
};

// The processor time this process has used so far, user and system, in seconds.
inline double ProcessorS() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) { return t.tv_sec + t.tv_usec / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace zorvel::bench
