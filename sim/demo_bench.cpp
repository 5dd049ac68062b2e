#include "sim/demo_bench.h"

#include <array>

#include "core/text/number_format.h"

namespace zorvel::sim {

namespace {

// The five colours of the demonstration methods.
constexpr std::array<const char*, 5> kColours = {"Blue", "Yellow-Green", "Orange", "Red",
                                                 "Crimson"};

constexpr int kFirstPureTube = 5;

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
  // The demonstration tray method: the control in tube 1, the blank in tube 2, the pures from
  // the starting tube 5 on, then samples that differ from tube to tube.
  text += "tube 0 rinse:\n";
  text += "tube 1 control:" + control() + "\n";
  text += "tube 2 blank:\n";
  text += "tube 3 solvent blank:\n";
  for (std::size_t c = 0; c < kColours.size(); ++c) {
    text += "tube " + text::plain(static_cast<double>(c + kFirstPureTube)) + " pure " +
            kColours[c] + ": " + kColours[c] + "=1\n";
  }
  for (int tube = kFirstPureTube + static_cast<int>(kColours.size()); tube <= 96; ++tube) {
    text +=
        "tube " + text::plain(tube) + " sample " + text::plain(tube) + ":" + mixture(tube) + "\n";
  }
  return text;
}

}  // namespace zorvel::sim
