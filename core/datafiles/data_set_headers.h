#pragma once

#include <string>

#include "core/datafiles/quality_databases.h"
#include "core/state/app_state.h"
#include "core/text/calendar_time.h"

// The headers of the files of a data set, written once when the set is created. Each text is
// built from the current method, the set's paths (state.DataSet) and LineEnding.
namespace zorvel {

// ".FIX": 19 lines, the last five being the column headings (slits, wavelengths, colours); in
// autosampler mode they reserve an empty tube column and the colour row has no "Comment".
std::string FixedHeaderText(const AppState& state, const CalendarTime& created);
// ".CTL" (control = true) or ".BLK": three lines, the count the database reader skips.
std::string DatabaseHeaderText(const AppState& state, bool control);
// ".SYN": 17 lines.
std::string SynchHeaderText(const AppState& state, const CalendarTime& created);
// ".STL" (control = true) or ".SLK": 16 lines.
std::string ScanDatabaseHeaderText(const AppState& state, bool control,
                                   const CalendarTime& created);
// ".LOG": its one line.
std::string RunLogHeaderText(const AppState& state);

// Computes the base path and state.DataSet (DataSetName and MethodFilePath kept), then creates
// each file the method calls for with its header, all together or none (a crash part-way
// leaves no set that could be appended to); the database counts start again at 0. Returns the
// data-file label; `written` is false with the system's reason when the files could not be
// created.
struct HeadersResult {
  bool written = true;
  std::string reason;
  std::string dataFileLabel;
};
HeadersResult WriteDataSetHeaders(AppState& state, const std::string& chosenPath,
                                  const CalendarTime& created, QualityDatabases& databases);

}  // namespace zorvel
