#include <gtest/gtest.h>

#include "core/text/number_format.h"

namespace zorvel::text {
namespace {

TEST(SignedPlain, SignPlaceThenShortestFormWithoutTrailingBlank) {
  EXPECT_EQ(signedPlain(480.0f), " 480");
  EXPECT_EQ(signedPlain(0.5f), " 0.5");
  EXPECT_EQ(signedPlain(-2.5f), "-2.5");
  EXPECT_EQ(signedPlain(0.0f), " 0");
  // A single has no more than 7 significant digits to show.
  EXPECT_EQ(signedPlain(0.1f + 0.2f), " 0.3");
}

}  // namespace
}  // namespace zorvel::text
