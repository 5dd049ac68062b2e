#include <gtest/gtest.h>

#include <vector>

#include "core/quality/quality_database.h"
#include "core/text/number_format.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

// A one-colour database of the values, in arrival order, sorted and with its statistics.
QcDatabase Column(const std::vector<float>& values) {
  QcDatabase db;
  for (float v : values) AddEntry(db, std::vector<float>{v}, 1, 1);
  return db;
}

TEST(QualityStatistics, MeanSdCvAndQuartilesOfTheSortedColumn) {
  QcDatabase db = Column({10, 12, 11, 13});
  EXPECT_EQ(
      (std::vector<float>{10, 11, 12, 13}),
      (std::vector<float>{db.sorted[1][1], db.sorted[2][1], db.sorted[3][1], db.sorted[4][1]}));
  EXPECT_EQ(12.0f, db.history[2][1]);  // arrival order stays
  EXPECT_DOUBLE_EQ(11.5, db.stats[1].median);
  EXPECT_DOUBLE_EQ(10.5, db.stats[1].lower);
  EXPECT_DOUBLE_EQ(12.5, db.stats[1].upper);
  EXPECT_DOUBLE_EQ(2.0, db.stats[1].iqr);

  db = Column({30, 10, 20});
  EXPECT_DOUBLE_EQ(20, db.stats[1].median);
  EXPECT_DOUBLE_EQ(20, db.stats[1].mean);
  EXPECT_DOUBLE_EQ(10, db.stats[1].sd);
  EXPECT_DOUBLE_EQ(50, db.stats[1].cv);
  EXPECT_DOUBLE_EQ(10, db.stats[1].lower);
  EXPECT_DOUBLE_EQ(30, db.stats[1].upper);

  db = Column({-1, 1});
  EXPECT_DOUBLE_EQ(0, db.stats[1].mean);
  EXPECT_DOUBLE_EQ(0, db.stats[1].cv);  // a mean of 0 has no cv
  EXPECT_GT(db.stats[1].sd, 1.4);

  db = Column({7});
  EXPECT_DOUBLE_EQ(0, db.stats[1].sd);
  EXPECT_DOUBLE_EQ(7, db.stats[1].lower);
  EXPECT_DOUBLE_EQ(7, db.stats[1].upper);
}

TEST(QualityStatistics, QuartilePositionsRoundHalvesToEvenAndStayInside) {
  double lower = 0, median = 0, upper = 0;
  // n = 6: positions 1.5 and 4.5 round to 2 and 4.
  QcDatabase db = Column({6, 5, 4, 3, 2, 1});
  Quartiles(db, 1, 6, lower, median, upper);
  EXPECT_DOUBLE_EQ(2.5, lower);
  EXPECT_DOUBLE_EQ(3.5, median);
  EXPECT_DOUBLE_EQ(4.5, upper);
  // n = 5: positions 1.5 and 4.5 again.
  db = Column({5, 4, 3, 2, 1});
  Quartiles(db, 1, 5, lower, median, upper);
  EXPECT_DOUBLE_EQ(2, lower);
  EXPECT_DOUBLE_EQ(3, median);
  EXPECT_DOUBLE_EQ(4, upper);
  // n = 2: positions 0.5 and 1.5 would leave the column.
  db = Column({4, 2});
  Quartiles(db, 1, 2, lower, median, upper);
  EXPECT_DOUBLE_EQ(3, lower);
  EXPECT_DOUBLE_EQ(3, upper);
  Quartiles(db, 1, 0, lower, median, upper);
  EXPECT_DOUBLE_EQ(0, median);
}

TEST(QualityStatistics, AFullDatabaseKeepsItsNewestFifty) {
  QcDatabase db;
  for (int k = 1; k <= kDatabaseCapacity; ++k)
    AddEntry(db, std::vector<float>{static_cast<float>(k), 100.0f - k}, 2, k <= 25 ? 1 : 2);
  AddEntry(db, std::vector<float>{0.5f, 0.5f}, 2, 3);
  EXPECT_EQ(kDatabaseCapacity, db.count);
  EXPECT_EQ(2.0f, db.history[1][1]);  // entry 1 left
  EXPECT_EQ(0.5f, db.history[50][1]);
  EXPECT_EQ(1, db.batch[1]);
  EXPECT_EQ(3, db.batch[50]);
  EXPECT_EQ(0.5f, db.sorted[1][1]);
  EXPECT_EQ(50.0f, db.sorted[50][1]);
  EXPECT_EQ(0.5f, db.sorted[1][2]);
  EXPECT_EQ(98.0f, db.sorted[50][2]);  // 99 left with entry 1
}

TEST(QualityStatistics, LoadingNumbersBatchesByDateAndReadsAnyLineEnd) {
  const std::string dir = testing::makeTempDir("qcload");
  const std::string header =
      "CONTROL FILE: "
      "x.CTL\r\nexwl/exsl\t493/5\t520/5\r\nemwl/emsl\t515/5\t540/5\tDate\tTime\tComment\r\n";
  testing::writeFile(dir + "x.CTL", header +
                                        "C1\t 10 \t 1 \t03-07-2000\t14:05:09\r\n"
                                        "C2\t 30 \t 2 \t03-07-2000\t14:06:00\tcloudy\r"
                                        "C3\t 20 \tjunk\t03-08-2000\t09:00:00\n"
                                        "C4\t 40 \t 4 \t\t\r\n"
                                        "C5\t 50 \t 5 \t\t\r\n"
                                        "C6\t 60 \t 6");
  const QcDatabase db = LoadDatabase(dir + "x.CTL", 2, 3);
  ASSERT_EQ(5, db.count);
  EXPECT_EQ((std::vector<int>{1, 1, 2, 3, 4}),
            (std::vector<int>{db.batch[1], db.batch[2], db.batch[3], db.batch[4], db.batch[5]}));
  EXPECT_EQ(5, db.currentBatch);
  EXPECT_EQ(30.0f, db.history[2][1]);
  EXPECT_EQ(0.0f, db.history[3][2]);  // not a number
  EXPECT_DOUBLE_EQ(30, db.stats[1].median);
  EXPECT_DOUBLE_EQ(2, db.stats[2].median);

  EXPECT_EQ(0, LoadDatabase(dir + "missing.CTL", 2, 3).count);
  EXPECT_EQ(1, LoadDatabase(dir + "missing.CTL", 2, 3).currentBatch);
}

// Reloading reads the file once and sorts once, but must end where adding the records one by
// one ends: the newest 50, their batches by date, sorted columns and statistics.
TEST(QualityStatistics, LoadingALongFileEndsAsAddingEachRecordDoes) {
  const std::string dir = testing::makeTempDir("qclong");
  std::string text = "CONTROL FILE: x.CTL\r\nexwl/exsl\t493/5\t520/5\r\nemwl/emsl\t515/5\r\n";
  QcDatabase added;
  for (int k = 1; k <= 130; ++k) {
    const std::vector<float> values{static_cast<float>((k * 37) % 101), static_cast<float>(k % 7)};
    const std::string date = "03-" + std::to_string(10 + k / 20) + "-2000";
    text += "C" + std::to_string(k) + "\t " + text::plain(values[0]) + " \t " +
            text::plain(values[1]) + " \t" + date + "\t10:00:00\t\r\n";
    AddEntry(added, values, 2, 1 + k / 20);
  }
  testing::writeFile(dir + "x.CTL", text);
  const QcDatabase loaded = LoadDatabase(dir + "x.CTL", 2, 3);
  ASSERT_EQ(kDatabaseCapacity, loaded.count);
  EXPECT_EQ(added.history, loaded.history);
  EXPECT_EQ(added.sorted, loaded.sorted);
  EXPECT_EQ(added.batch, loaded.batch);
  EXPECT_EQ(1 + 130 / 20 + 1, loaded.currentBatch);
  for (int i = 1; i <= 2; ++i) {
    EXPECT_DOUBLE_EQ(added.stats[static_cast<std::size_t>(i)].median,
                     loaded.stats[static_cast<std::size_t>(i)].median);
    EXPECT_DOUBLE_EQ(added.stats[static_cast<std::size_t>(i)].sd,
                     loaded.stats[static_cast<std::size_t>(i)].sd);
  }
}

}  // namespace
}  // namespace zorvel
