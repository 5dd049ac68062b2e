#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sim/bench.h"

namespace zorvel::sim {

// What the simulated bench holds, as a small text file (for zorvel-sim --bench):
//
//   # blank lines and lines starting with "#" are ignored
//   cuvette LABEL: COLOUR=AMOUNT ...   queues one cuvette; the first goes into the holder
//   tube N LABEL: COLOUR=AMOUNT ...    tube N of the tray (0 is the rinse station)
//
// COLOUR is a dye colour's name ("Blue", "Blue-Green", ..., any case) or its index 0..13;
// AMOUNT is a concentration in the simulator's units. The word "solvent" among the amounts
// means the sample is not in water (no water band). The label may be empty.
std::string_view BenchFileHelp();

// Reads the text into the bench. Lines that cannot be read are skipped and described, with
// their line number, in problems.
void ParseBenchFile(std::string_view text, Bench& bench, std::vector<std::string>& problems);

// The dye index of a colour name or number, or -1.
int DyeIndex(std::string_view colour);

}  // namespace zorvel::sim
