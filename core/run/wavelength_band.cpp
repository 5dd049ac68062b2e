#include "core/run/wavelength_band.h"

#include <array>

namespace zorvel {

namespace {

constexpr std::array<double, 13> kBandStartsNm = {385, 415, 455, 483, 500.5, 523, 546,
                                                  567, 585, 604, 628, 648,   669};

// Palette: 0 black, 1 blue, 2 green, 3 cyan, 4 red, 5 magenta, 6 brown, 7 light grey,
// 8 dark grey, 9 light blue, 10 light green, 11 light cyan, 12 light red, 13 light magenta,
// 14 yellow, 15 white.
constexpr std::array<int, 15> kBandPalette = {0, 5, 13, 1, 9, 3, 11, 2, 10, 14, 6, 12, 4, 4, 8};

}  // namespace

int WavelengthBand(double wavelengthNm) {
  int band = 1;
  for (double start : kBandStartsNm) {
    if (wavelengthNm >= start) ++band;
  }
  return band;
}

int BandPaletteIndex(int band) {
  if (band < 0 || band >= static_cast<int>(kBandPalette.size())) return 0;
  return kBandPalette[static_cast<std::size_t>(band)];
}

}  // namespace zorvel
