#include "sim/bench_file.h"

#include <gtest/gtest.h>

namespace zorvel::sim {
namespace {

TEST(BenchFile, FillsCuvettesInOrderAndTubesByNumber) {
  Bench bench;
  bench.cuvetteQueue.push_back(Sample{});  // whatever was there before is replaced
  std::vector<std::string> problems;
  ParseBenchFile(
      "# a morning's samples\r\n"
      "cuvette blank:\r\n"
      "\r\n"
      "cuvette pure Blue: blue=1\n"
      "cuvette mix: Blue-Green=0.25 13=2 Blue-Green=0.25 solvent\n"
      "tube 0 : \n"
      "tube 12 control: Red=0.5\n",
      bench, problems);
  EXPECT_TRUE(problems.empty());
  EXPECT_EQ(bench.cuvette.label, "blank");
  EXPECT_EQ(bench.cuvette.dyes, (std::array<double, kDyeCount>{}));
  ASSERT_EQ(bench.cuvetteQueue.size(), 2u);
  EXPECT_EQ(bench.cuvetteQueue[0].label, "pure Blue");
  EXPECT_EQ(bench.cuvetteQueue[0].dyes[1], 1.0);
  EXPECT_TRUE(bench.cuvetteQueue[0].water);
  EXPECT_EQ(bench.cuvetteQueue[1].dyes[2], 0.5);
  EXPECT_EQ(bench.cuvetteQueue[1].dyes[13], 2.0);
  EXPECT_FALSE(bench.cuvetteQueue[1].water);
  ASSERT_EQ(bench.tubes.size(), 2u);
  EXPECT_EQ(bench.tubes.at(0).label, "tube 0");
  EXPECT_EQ(bench.tubes.at(12).label, "control");
  EXPECT_EQ(bench.tubes.at(12).dyes[8], 0.5);
}

TEST(BenchFile, SkipsAndNamesEveryBadLine) {
  Bench bench;
  std::vector<std::string> problems;
  ParseBenchFile(
      "tube 3 fine: Violet=1\n"
      "tube: Blue=1\n"
      "tube 501: Blue=1\n"
      "tube 2.5: Blue=1\n"
      "cuvette x: Purple=1\n"
      "cuvette y: Blue=-1\n"
      "cuvette z: 14=1\n"
      "cuvette Blue=1\n"
      "flask 1: Blue=1\n",
      bench, problems);
  EXPECT_EQ(problems, (std::vector<std::string>{
                          "line 2: no tube number 0..500",
                          "line 3: no tube number 0..500",
                          "line 4: no tube number 0..500",
                          "line 5: cannot read \"Purple=1\"",
                          "line 6: cannot read \"Blue=-1\"",
                          "line 7: cannot read \"14=1\"",
                          "line 8: no \":\" before the amounts",
                          "line 9: a line starts with \"cuvette\" or \"tube\"",
                      }));
  EXPECT_EQ(bench.tubes.size(), 1u);
  EXPECT_TRUE(bench.cuvetteQueue.empty());
}

}  // namespace
}  // namespace zorvel::sim
