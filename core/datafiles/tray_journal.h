#pragma once

#include <optional>
#include <string>

#include "core/state/data_set_paths.h"
#include "core/state/method_settings.h"

// The tray run's journal: a file of the set's own beside its data files (base path + ".TRAY"),
// written whole when a tray run starts and again when it completes. It holds what the tray
// plan and the numbering of that run started from and how many records each file of the set
// held then; the records on disk tell how far the run got, so nothing is written between
// tubes and a run stopped at any moment can be carried on where it stopped.
namespace zorvel {

// Records in each file of the set (lines after its header that carry a record label).
struct SetRecordCounts {
  int fix = 0, syn = 0, ctl = 0, blk = 0, stl = 0, slk = 0;
  friend bool operator==(const SetRecordCounts&, const SetRecordCounts&) = default;
};

struct TrayJournal {
  std::string startDate;  // 11-25-2026
  std::string startTime;  // 14:20:11
  // What the plan of visits was made from.
  int startingTube = 0;
  int endingTube = 0;
  bool hasStandard = false;
  int standardTube = 0;
  int standardFreq = 0;
  bool hasBlank = false;
  int blankTube = 0;
  int blankFreq = 0;
  bool puresPending = false;
  bool buildingDatabases = false;
  // The numbering as the run started.
  int sampleNumber = 0;
  int firstSampleNumber = 1;
  bool firstRead = true;
  bool pureStartPending = false;
  SetRecordCounts recordsAtStart;
  bool completed = false;

  friend bool operator==(const TrayJournal&, const TrayJournal&) = default;
};

// base path + ".TRAY", from the set's ".FIX" (or ".SYN") path; empty without a set.
std::string TrayJournalPath(const DataSetPaths& paths);

// Writes the journal whole (a crash leaves the old one or the new one); false on failure.
bool WriteTrayJournal(const std::string& path, const TrayJournal& journal);
// Nothing when the file is missing or is not a whole journal.
std::optional<TrayJournal> ReadTrayJournal(const std::string& path);

// Counts the records of the set's files as they are on disk now (only whole lines count).
SetRecordCounts CountSetRecords(const MethodSettings& method, const DataSetPaths& paths);

}  // namespace zorvel
