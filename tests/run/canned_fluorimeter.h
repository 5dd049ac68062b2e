#pragma once

#include <string>
#include <vector>

#include "sim/simulated_line.h"

namespace zorvel::testing {

// A fluorimeter whose every number is known in advance, so that the data files of a run can be
// written down by hand: it accepts every command at once, the k-th "$RD" since the current
// cuvette went in reads 100 x cuvette + k, and the k-th point of a scan reads
// 10 x cuvette + k. A point can be replaced by the "no point" marker -9999.
class CannedFluorimeter final : public sim::LinePeer {
 public:
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) override;

  // The operator puts the next cuvette in.
  void nextCuvette() {
    ++cuvette;
    readsInCuvette = 0;
  }
  // The scan's point with this 1-based index is sent as -9999 ahead of its real value.
  int noPointBefore = 0;
  // The point whose raw value is -9999: a reading of -9.999, not the gap marker.
  int lowPointAt = 0;
  double scanIntervalNm = 0.5;

  int cuvette = 0;
  int readsInCuvette = 0;
  std::vector<std::string> commands;

 private:
  void handle(const std::string& command, double atS, sim::LineEnd& reply);

  std::string pending_;
  double exNm_ = 0, emNm_ = 0;
  double lowerNm_ = 200, upperNm_ = 800;
  int monochromator_ = 0;
};

}  // namespace zorvel::testing
