#include "sim/demo_bench.h"

#include <array>

#include "core/text/number_format.h"

namespace zorvel::sim {

namespace {

// The five colours of the demonstration methods.
constexpr std::array<const char*, 5> kColours = {"Blue", "Yellow-Green", "Orange", "Red",
                                                 "Crimson"};

// A mixture whose amounts vary from one sample to the next in a fixed pattern.
std::string mixture(int n) {
  std::string amounts;
  for (std::size_t c = 0; c < kColours.size(); ++c) {
    const double amount = 0.2 + 0.1 * static_cast<double>((n * 3 + static_cast<int>(c) * 7) % 9);
    amounts += std::string(" ") + kColours[c] + "=" + text::plain(amount);
  }
  return amounts;
}

std::string control() {
  std::string amounts;
  for (const char* colour : kColours) amounts += std::string(" ") + colour + "=0.5";
  return amounts;
}

}  // namespace

std::string DemoBenchText() {
  std::string text =
      "# The demonstration bench: cuvettes in the order the runs take them, then the tray.\n"
      "cuvette solvent blank:\n";
  for (const char* colour : kColours) {
    text += std::string("cuvette pure ") + colour + ": " + colour + "=1\n";
  }
  for (int round = 1; round <= 20; ++round) {
    text += "cuvette control:" + control() + "\n";
    text += "cuvette blank:\n";
    text += "cuvette sample " + text::plain(round) + ":" + mixture(round) + "\n";
  }
  text += "tube 0 rinse:\n";
  for (std::size_t c = 0; c < kColours.size(); ++c) {
    text += "tube " + text::plain(static_cast<double>(c + 1)) + " pure " + kColours[c] + ": " +
            kColours[c] + "=1\n";
  }
  for (int tube = 6; tube <= 96; ++tube) {
    text += "tube " + text::plain(tube) + " sample:" + mixture(tube) + "\n";
  }
  return text;
}

}  // namespace zorvel::sim
