#pragma once

namespace zorvel {

// The fluorimeter streams -9999 (after the division by 1000) for a point it could not measure.
// Scans and the water-cell time drive read it alike: only the divided value, in the single
// precision the readings are kept in, marks a gap, so a real reading of -9.999 is kept.
inline constexpr float kGapMarker = -9999.0f;

inline bool IsGapMarker(double valueAfterDivision) {
  return static_cast<float>(valueAfterDivision) == kGapMarker;
}

}  // namespace zorvel
