#pragma once

#include <string>

namespace zorvel::sim {

// What the demonstration bench holds, in the bench-file format: a solvent blank and one pure of
// each of the demonstration methods' five colours, then controls, blanks and samples in turn
// for the cuvette runs; the pures in tubes 1 to 5 and mixtures in the rest of the 96-tube tray.
std::string DemoBenchText();

}  // namespace zorvel::sim
