#pragma once

#include <cstdint>

namespace zorvel {

// One fixed excitation/emission pair of a method, one per dye colour; -1 marks an empty or
// rejected value.
struct ColourDeclaration {
  float ExWl = -1;
  float EmWl = -1;
  float ExSl = -1;
  float EmSl = -1;
  std::int16_t ColourIndex = -1;  // index into ColourNames, 0 "Tissue" .. 13 "Violet"

  friend bool operator==(const ColourDeclaration&, const ColourDeclaration&) = default;
};

}  // namespace zorvel
