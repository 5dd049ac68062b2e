#pragma once

#include <string>

#include "core/state/app_state.h"

// The states behind the golden data-set headers (method fields in the order listed in
// tests/method/method_examples.h).
namespace zorvel::testing {

// clang-format off
// Fixed and synchronous readings by cuvette, DOS/Windows line ends.
inline AppState LiverSetState() {
  AppState state;
  FillColourTables(state);
  state.Method = {true, true, false, 2, 2, 1, 10, 480, EmissionFilter::Cutoff350, 820, Delivery::Cuvette, false, 2.5f, 0,
                  DataFileType::DosWindows, "JS", "Liver extracts", {}, {4, 4, 360, 700, 15, 0.5f}, {}, {}};
  state.Method.FixedPairs.colour(1) = {493, 515, 5, 5, 4};
  state.Method.FixedPairs.colour(2) = {617.5f, 640, 12.5f, 2.5f, 10};
  state.LineEnding = "\r\n";
  state.DataSet.MethodFilePath = "/lab/METHODS/LIVER.MTH";
  return state;
}

// Fixed and synchronous readings by autosampler, Macintosh line ends.
inline AppState RackSetState() {
  AppState state;
  FillColourTables(state);
  state.Method = {true, true, false, 1, 1, 0.5f, 10, -240, EmissionFilter::None, -1, Delivery::Autosampler, false, 2, 0,
                  DataFileType::Macintosh, "AS", "Rack A", {}, {5, 5, 300, 500, 15, 1}, {}, {}};
  state.Method.FixedPairs.colour(1) = {340, 400, 10, 10, 0};
  state.LineEnding = "\r";
  state.DataSet.MethodFilePath = "/lab/METHODS/RACK.MTH";
  return state;
}
// clang-format on

// A golden header with its data directory filled in.
inline std::string WithDirectory(std::string text, const std::string& directory) {
  for (std::size_t at = text.find("@DIR@"); at != std::string::npos; at = text.find("@DIR@", at))
    text.replace(at, 5, directory);
  return text;
}

}  // namespace zorvel::testing
