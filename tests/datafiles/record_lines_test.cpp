#include "core/datafiles/record_lines.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace zorvel {
namespace {

TEST(RecordLines, FixedRecordWithTubeReadingsAndTrimmedComment) {
  const float readings[] = {1.234f, 0.5065f, 12.0f};
  EXPECT_SAME_BYTES("S12\t1.234\t0.507\t12.000\tspilled\r\n",
                    FixedRecordLine('S', 12, std::nullopt, readings, "  spilled ", "\r\n"));
  // Autosampler mode: the tube follows the label; a blank comment adds no field.
  EXPECT_SAME_BYTES("P3\t17\t1.234\t0.507\t12.000\r",
                    FixedRecordLine('P', 3, 17, readings, "   ", "\r"));
  const float tiny[] = {-0.0012f, -0.0004f};
  EXPECT_SAME_BYTES("R0\t-0.001\t0.000\r\n",
                    FixedRecordLine('R', 0, std::nullopt, tiny, "", "\r\n"));
}

TEST(RecordLines, DatabaseRecordCarriesPrintFormsDateAndTime) {
  const float readings[] = {1.5f, -0.25f};
  const CalendarTime when{2026, 3, 7, 9, 5, 0};
  EXPECT_SAME_BYTES("C4\t 1.5 \t-0.25 \t03-07-2026\t09:05:00\tnew lot\r\n",
                    DatabaseRecordLine('C', 4, readings, when, " new lot", "\r\n"));
  EXPECT_SAME_BYTES("B4\t 1.5 \t-0.25 \t03-07-2026\t09:05:00\r",
                    DatabaseRecordLine('B', 4, readings, when, "", "\r"));
}

TEST(RecordLines, ScanRecordRunsPointsTogetherAfterTheLabelsBlank) {
  const float points[] = {1.5f, -0.25f, 1234.567f};
  EXPECT_SAME_BYTES("S3  1.5 -0.25  1234.567 \r\n", ScanRecordLine('S', 3, points, "\r\n"));
  EXPECT_SAME_BYTES("B0 \r", ScanRecordLine('B', 0, {}, "\r"));
}

}  // namespace
}  // namespace zorvel
