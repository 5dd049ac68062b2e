#pragma once

#include <array>
#include <cstddef>

#include "core/state/colour_declaration.h"

namespace zorvel {

inline constexpr int kMaxColours = 30;

// A method's fixed wavelength pairs, one row per colour. The operator, the method file and the
// data records count colours from 1, so a row is reached by its colour number; `colour` throws for
// a number outside 1..kMaxColours. Iteration runs over every row from colour 1.
class FixedPairTable {
 public:
  ColourDeclaration& colour(int number) { return rows_.at(slot(number)); }
  const ColourDeclaration& colour(int number) const { return rows_.at(slot(number)); }

  auto begin() { return rows_.begin(); }
  auto end() { return rows_.end(); }
  auto begin() const { return rows_.begin(); }
  auto end() const { return rows_.end(); }

  friend bool operator==(const FixedPairTable&, const FixedPairTable&) = default;

 private:
  static std::size_t slot(int number) { return static_cast<std::size_t>(number - 1); }

  std::array<ColourDeclaration, kMaxColours> rows_{};
};

}  // namespace zorvel
