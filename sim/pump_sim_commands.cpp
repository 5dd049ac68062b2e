#include "sim/pump_sim_commands.h"

#include <algorithm>
#include <cctype>

namespace zorvel::sim {

namespace {
// Larger numbers than any stroke or speed are held at this size.
constexpr int kLargestValue = 1000000;
}  // namespace

std::vector<PumpStep> ParsePumpSteps(std::string_view text) {
  std::vector<PumpStep> steps;
  std::size_t i = 0;
  while (i < text.size()) {
    const auto c = static_cast<unsigned char>(text[i++]);
    if (!std::isalpha(c)) continue;
    PumpStep step{static_cast<char>(std::toupper(c)), 0};
    while (i < text.size() && text[i] == ' ') ++i;
    const bool negative = i < text.size() && text[i] == '-';
    if (negative) ++i;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) {
      step.value = std::min(step.value * 10 + (text[i++] - '0'), kLargestValue);
    }
    if (negative) step.value = -step.value;
    steps.push_back(step);
  }
  return steps;
}

bool RunsNow(const std::vector<PumpStep>& steps) {
  return std::any_of(steps.begin(), steps.end(), [](const PumpStep& s) { return s.letter == 'R'; });
}

bool RunsHeld(const std::vector<PumpStep>& steps) {
  return !steps.empty() &&
         std::all_of(steps.begin(), steps.end(), [](const PumpStep& s) { return s.letter == 'R'; });
}

}  // namespace zorvel::sim
