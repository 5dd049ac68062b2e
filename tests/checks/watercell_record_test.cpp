#include "core/checks/watercell_record.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/bytes.h"

namespace zorvel {
namespace {

TEST(WaterCellRecord, RecordPutsHeaderFieldsSixSevenFiveInColumnsNineToEleven) {
  WaterCellResult result;
  result.mean = 101.2345675;
  result.standardDeviation = 0.5;
  result.header = {"V3.1", "1", "350.0", "397.5", "240.0", "5.0", "5.5", "240", "0.50"};
  EXPECT_SAME_BYTES(
      "101.234568\t0.500000\t03-07-2000\t14:05:09\tV3.1\t1\t350.0\t397.5\t5.0\t5.5\t240.0\t240"
      "\t0.50\r\n",
      WaterCellRecordLine(result, CalendarTime{2000, 3, 7, 14, 5, 9}));
  EXPECT_SAME_BYTES(
      "Mean\tSD\tDate\tTime\tSoft. Rev.\tMisc.\tEx Mono Pos\tEm Mono Pos\tEx Slit\tEm Slit\t"
      "Scan Speed.Response Time\t# Pts Used\tCollection Interval\r\n",
      WaterCellHeaderLine());
  // No check yet this session: zeros and empty fields.
  EXPECT_SAME_BYTES("0.000000\t0.000000\t01-02-2001\t03:04:05\t\t\t\t\t\t\t\t\t\r\n",
                    WaterCellRecordLine({}, CalendarTime{2001, 1, 2, 3, 4, 5}));
}

TEST(WaterCellRecord, HistoryAveragesColumnOneAndSkipsLinesWithoutATab) {
  const std::string header = WaterCellHeaderLine();
  EXPECT_FALSE(ReadWaterCellHistory("").mean);
  EXPECT_FALSE(ReadWaterCellHistory(header).mean);
  EXPECT_FALSE(ReadWaterCellHistory(header + "garbage\r\n\r\n").mean);

  const auto history = ReadWaterCellHistory(header + "  99.000000\t1\r\n" + "damaged line\r\n" +
                                            "101.000000\t2\r\n" + "\r\n" + "103.5\tx");
  ASSERT_TRUE(history.mean);
  EXPECT_EQ(3, history.records);
  EXPECT_FLOAT_EQ(101.166664f, *history.mean);
  // Lines ended by CR alone read the same; text before the TAB that is no number counts as 0.
  const auto crOnly = ReadWaterCellHistory("Mean\tSD\r100\tA\rabc\tB\r");
  EXPECT_EQ(2, crOnly.records);
  EXPECT_FLOAT_EQ(50.0f, *crOnly.mean);
}

TEST(WaterCellRecord, FivePercentBandAroundTheHistory) {
  const WaterCellVerdict within = JudgeWaterCell(100.0f, 104.0);
  EXPECT_TRUE(within.within);
  EXPECT_NEAR(0.0385, within.deviation, 1e-4);
  EXPECT_EQ(std::vector<std::string>{"Intensity level is WITHIN the expected range (95.000 - "
                                     "105.000)."},
            WaterCellVerdictLines(within));

  const WaterCellVerdict outside = JudgeWaterCell(100.0f, 94.0);
  EXPECT_FALSE(outside.within);
  EXPECT_NEAR(0.0638, outside.deviation, 1e-4);
  const auto lines = WaterCellVerdictLines(outside);
  ASSERT_EQ(5u, lines.size());
  EXPECT_EQ("Intensity level is OUTSIDE expected range (95.000 - 105.000). If water", lines[0]);
  EXPECT_EQ("samples until the source of the problem has been diagnosed.", lines[4]);

  // The deviation is taken against the run's mean, so the band shown is not quite the test.
  EXPECT_TRUE(JudgeWaterCell(100.0f, 105.2).within);
  EXPECT_FALSE(JudgeWaterCell(100.0f, 95.2).within);
  EXPECT_FALSE(JudgeWaterCell(100.0f, 0.0).within);  // no light at all
  EXPECT_FALSE(JudgeWaterCell(0.0f, 0.0).within);
}

TEST(WaterCellRecord, SumsSkipTheGapMarkerAndDivideByThePointCount) {
  TimeDriveSums sums;
  EXPECT_FALSE(sums.add("-9999000"));
  // A raw -9999 is a reading of -9.999, not the marker: it counts (and is taken out again by
  // a fresh sum below).
  TimeDriveSums low;
  EXPECT_TRUE(low.add("-9999"));
  EXPECT_EQ(1, low.count());
  for (int k = 0; k < 120; ++k) {
    EXPECT_TRUE(sums.add("99000"));
    EXPECT_TRUE(sums.add("101000"));
  }
  EXPECT_EQ(240, sums.count());
  EXPECT_DOUBLE_EQ(100.0, sums.mean(240));
  EXPECT_NEAR(1.00209, sums.standardDeviation(240), 1e-4);
  EXPECT_EQ("100.000 +/- 1.002", WaterCellMeanLine({sums.mean(240), sums.standardDeviation(240)}));

  // A perfectly steady drive of a value that single precision cannot square exactly.
  TimeDriveSums steady;
  for (int k = 0; k < 240; ++k) steady.add("123456.789");
  const double sd = steady.standardDeviation(240);
  EXPECT_FALSE(std::isnan(sd));
  EXPECT_LT(sd, 0.05);
}

}  // namespace
}  // namespace zorvel
