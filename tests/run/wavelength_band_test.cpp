#include "core/run/wavelength_band.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace {

TEST(WavelengthBands, BoundariesBelongToTheBandAbove) {
  EXPECT_EQ(1, WavelengthBand(384.99));
  EXPECT_EQ(2, WavelengthBand(385));
  EXPECT_EQ(5, WavelengthBand(500.4));
  EXPECT_EQ(6, WavelengthBand(500.5));
  EXPECT_EQ(13, WavelengthBand(668.9));
  EXPECT_EQ(14, WavelengthBand(669));
  EXPECT_EQ(14, WavelengthBand(900));
  // Each band has a colour of its own but the last two reds, and none is the plot's black.
  for (int band = 1; band <= 14; ++band) EXPECT_NE(0, BandPaletteIndex(band)) << band;
}

}  // namespace
}  // namespace zorvel
