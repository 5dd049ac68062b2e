#include "sim/demo_bench.h"

#include <gtest/gtest.h>

#include "sim/bench_file.h"

namespace zorvel::sim {
namespace {

TEST(DemoBench, ReadsWholeWithPuresFirstAndAFullTray) {
  Bench bench;
  std::vector<std::string> problems;
  ParseBenchFile(DemoBenchText(), bench, problems);
  EXPECT_TRUE(problems.empty()) << (problems.empty() ? "" : problems.front());
  // The solvent blank is in the holder; the five pures come next, in the methods' order.
  EXPECT_EQ(bench.cuvette.label, "solvent blank");
  ASSERT_GE(bench.cuvetteQueue.size(), 5u);
  EXPECT_EQ(bench.cuvetteQueue[2].label, "pure Orange");
  EXPECT_DOUBLE_EQ(bench.cuvetteQueue[2].dyes[static_cast<std::size_t>(DyeIndex("Orange"))], 1.0);
  // The tray: control in 1, blank in 2, the pures from the starting tube 5, samples after.
  EXPECT_EQ(bench.tubes.size(), 96u);
  EXPECT_EQ(bench.tubes.at(1).label, "control");
  EXPECT_EQ(bench.tubes.at(9).label, "pure Crimson");
  EXPECT_NE(bench.tubes.at(10).dyes, bench.tubes.at(11).dyes);
}

}  // namespace
}  // namespace zorvel::sim
