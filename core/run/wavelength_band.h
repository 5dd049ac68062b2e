#pragma once

// The colour a scan point is plotted in, by the wavelength band it falls in.
namespace zorvel {

// Band 1 below 385 nm, then a new band at each of 385, 415, 455, 483, 500.5, 523, 546, 567,
// 585, 604, 628, 648 and 669 nm (bands 2..14); a boundary belongs to the band above it.
int WavelengthBand(double wavelengthNm);

// The plot colour of a band, an index into the standard 16-colour palette: violet to red as
// the light itself goes, so a scan shows where along the spectrum its light lies. Band 0 (no
// band) is black.
int BandPaletteIndex(int band);

}  // namespace zorvel
