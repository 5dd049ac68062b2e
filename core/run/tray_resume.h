#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/datafiles/tray_journal.h"
#include "core/run/tray_plan.h"
#include "core/run/tube_numbering.h"

// Carrying on a tray run that did not complete: its journal says what the run was planned
// from, the records the set's files gained since say how far it got. Records are written in
// the plan's order, each to the file of its kind, so the counts of new records in each file
// fix the point reached: every tube whose records are on disk is done, a tube cut before its
// record was written is read again.
namespace zorvel {

struct TrayResume {
  TrayJournal journal;
  // The first visit of the plan still to do, and the records of it already on disk (a tube
  // with replicates, or fixed and scan records, cut between them).
  std::size_t visit = 0;
  int recordsDone = 0;
  // The numbering just before that visit, and whether the pures were still due then.
  TrayNumbering numbering;
  bool puresPending = false;
  // The last tube of the range whose records are all on disk (0: none), and the tube of the
  // range read next (0: only the closing control or blank is left).
  int lastTube = 0;
  int nextTube = 0;
  // With no tube of the range left: "the closing control", "the closing blank" or both.
  std::string closingLeft;
};

// The plan the journal's run followed: the method's heights with the journal's range and
// references.
TrayPlanInput JournalPlanInput(const TrayJournal& journal, const MethodSettings& method,
                               AutosamplerSettings& tray);

// The records one visit writes, in order, as files of the set: one per replicate for fixed
// readings and one for the scan.
enum class RecordFile { Fix, Syn, Ctl, Blk, Stl, Slk };
std::vector<RecordFile> RecordsOfVisit(const TrayVisit& visit, const MethodSettings& method);

// Nothing when the set has no journal, its last tray run completed or left nothing to read, or
// its files hold records the journal cannot account for.
std::optional<TrayResume> FindTrayResume(const MethodSettings& method, const DataSetPaths& paths);

// "The tray run started <date> <time> ended after tube 17 of 5 - 40.  Resume at tube 18?"
std::string ResumeQuestion(const TrayResume& resume);

}  // namespace zorvel
