#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/state/data_set_paths.h"
#include "core/state/link_state.h"
#include "core/state/method_settings.h"
#include "core/state/preferences.h"
#include "core/state/pump_steps.h"
#include "core/state/tray_geometry.h"

namespace zorvel {

// Basic 16-colour palette entries used to paint quality-check results.
enum class PaletteColour : std::uint8_t {
  Black = 0,
  LightBlue = 9,
  LightGreen = 10,
  LightRed = 12,
  Yellow = 14,
  White = 15,
};

// Run-state flags cleared at start-up; each is owned by the window named beside it.
struct RunFlags {
  bool AutosamplerPortOpen = false;       // autosampler window: the arm and pump ports are open
  bool AutosamplerWindowOpened = false;   // autosampler window: opened at least once
  bool BlankPending = false;              // run: a solvent blank is due before the pures
  bool ShowControlsOnActivation = false;  // main window: show the method controls next time
};

// The one process-wide state of the program. It is created by the program's entry point and
// handed by reference to whatever needs it; nothing reaches it any other way.
struct AppState {
  std::string StartDirectory;   // always ends in "/"
  std::string PreferencesPath;  // StartDirectory + "ZORVEL.PRF"
  // The preferences file was refused at start-up: the setup window treats it as missing.
  bool PreferencesRefused = false;
  std::string LogPath;  // StartDirectory + "ZORVEL.LOG"
  std::string BaseDirectoryPath;
  std::string DataDirectory;
  std::string MethodsDirectory;

  Preferences Prefs;
  MethodSettings Method;
  DataSetPaths DataSet;
  std::string LineEnding = "\r\n";

  bool FirstActivation = true;
  std::array<std::int16_t, 3> AppVersion{};
  std::int16_t DatabaseHeaderLines = 3;

  std::array<std::string, 16> ColourNames{};        // 0 "Tissue" .. 13 "Violet"
  std::array<std::int16_t, 16> ColourExcitation{};  // entry k belongs to colour k - 1
  std::array<PaletteColour, 4> StatusColours{};     // 1 light green, 2 light blue, 3 light red

  TrayGeometry Tray;
  LinkState Links;
  PumpSteps Steps;  // the sample cycle's strokes, from the autosampler volumes
  RunFlags Flags;
};

// Fills ColourNames, ColourExcitation and StatusColours.
void FillColourTables(AppState& state);
// The colour index whose nominal excitation lies within 3 nm of the wavelength, or -1.
int ColourIndexForExcitation(const AppState& state, double excitationNm);

}  // namespace zorvel
