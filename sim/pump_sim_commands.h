#pragma once

#include <string_view>
#include <vector>

namespace zorvel::sim {

// One command letter of the dilutor's language and the number after it (0 when none):
// "IS10A 500R" is I, S 10, A 500, R.
struct PumpStep {
  char letter = 0;
  int value = 0;
};

// Splits a command text into its letters and numbers; blanks between them are ignored and
// anything that is neither is skipped.
std::vector<PumpStep> ParsePumpSteps(std::string_view text);
// True when the text carries the run letter "R": without it the device only holds the text.
bool RunsNow(const std::vector<PumpStep>& steps);
// True when the text is nothing but run letters: run what is held.
bool RunsHeld(const std::vector<PumpStep>& steps);

}  // namespace zorvel::sim
