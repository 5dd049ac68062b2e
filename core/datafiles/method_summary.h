#pragma once

#include "core/platform/printer.h"
#include "core/state/app_state.h"
#include "core/text/calendar_time.h"

namespace zorvel {

// The one-page summary of the data file set and the method printed at the start of a run when
// results are printed: file names, general settings (25-character labels), the synchronous scan
// settings when scanning, the date and time, and the column headings (slits and wavelengths of
// every pair, "0.0" in 7-character fields) under which the run prints its result lines.
// `newSet` false (continuing the current set) adds "  Appending Data" to the first line.
void PrintMethodSummary(const AppState& state, Printer& printer, bool newSet,
                        const CalendarTime& printedAt);

}  // namespace zorvel
