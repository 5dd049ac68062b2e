#include "core/text/clock_time_format.h"

#include <gtest/gtest.h>

namespace zorvel::text {
namespace {

TEST(TimeToTheMillisecond, PadsTruncatesAndWrapsAtMidnight) {
  EXPECT_EQ(formatTimeMs(14 * 3600 + 5 * 60 + 9.123), "14:05:09.123");
  EXPECT_EQ(formatTimeMs(0.0), "00:00:00.000");
  EXPECT_EQ(formatTimeMs(59.9996), "00:00:59.999");
  EXPECT_EQ(formatTimeMs(0.007), "00:00:00.007");
  EXPECT_EQ(formatTimeMs(86400.25), "00:00:00.250");
}

}  // namespace
}  // namespace zorvel::text
