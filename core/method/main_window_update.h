#pragma once

#include <optional>
#include <string>

namespace zorvel {

// What the main window must change after one of the file commands. A field left empty means
// "leave as it is".
struct MainWindowUpdate {
  std::optional<std::string> methodFileLabel;
  std::optional<std::string> dataFileLabel;
  // The menu items "&New Method File", "&Edit Method File", "&Append Data File",
  // "Run &Watercell", "&Intensity Check" and "Setup &Fluorimeter", enabled or disabled together.
  std::optional<bool> fileAndInstrumentMenusEnabled;
  // The loaded method is to be shown in the editor (its controls filled from MethodSettings).
  bool showMethod = false;
  // The editor's NewDataSet: the run will write a new data file set.
  std::optional<bool> newDataSet;
  // The editor's ColoursDeclared ("Set" true, "Not Set" false).
  std::optional<bool> coloursDeclared;
  // The colour window takes the current table as its backup at its next opening.
  bool colourBackupPending = false;
  // The "Starting Number:" box (FirstSampleNumber).
  std::optional<int> firstSampleNumber;
};

}  // namespace zorvel
