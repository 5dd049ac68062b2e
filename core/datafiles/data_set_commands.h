#pragma once

#include <string>
#include <vector>

#include "core/datafiles/quality_databases.h"
#include "core/method/main_window_update.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/state/app_state.h"

// Creating a data file set before a run, and reopening one to append to it.
namespace zorvel {

struct CreateDataSetResult {
  bool created = false;  // false when the dialog was cancelled; nothing was written then
  bool written = true;   // false when a file of the set could not be created (the operator told)
  std::string reason;    // why no set was made, when none was
  // The run's new-data-file and data-file-open flags are both set when created.
  MainWindowUpdate window;  // the data-file label
};

// The Save As dialog on DataDirectory ("FIX" with fixed reads, else "SYN"; ask before
// overwriting). On an answer: when other files of the set exist already, the operator is asked
// before they are replaced (anything but Yes leaves them and makes no set); then DataSetName =
// the chosen file name without directory and extension, then WriteDataSetHeaders with the
// clock's date and time. A set that cannot be created is told with its folder and the reason.
CreateDataSetResult CreateDataFileSet(AppState& state, Operator& op, Clock& clock,
                                      QualityDatabases& databases);

struct ReopenResult {
  bool ok = false;
  int lastSampleNumber = 0;
  // The set already holds sample records (the run's samples-present flag).
  bool samplesPresent = false;
  // The run's next sample number and its first sample number: the last one + 1.
  int nextSampleNumber = 1;
  MainWindowUpdate window;
  // For the program log: what the repair of the set's files removed or completed, and a
  // reading found in only one of the set's files.
  std::vector<std::string> logEntries;
};

// Reopens the set whose ".FIX" or ".SYN" file is at the path: checks the first two header lines
// ("Invalid data file format. Line 1.", "Invalid file format. Line 2."), reads the method named
// in line 2 (its own box on failure), sets state.DataSet from the method just read; the set's
// files are checked and their ends made whole (a file that is not of this set, is missing or
// lacks its header is refused with a message), finds the last sample number (a reading that
// reached only one of ".FIX" and ".SYN" is reported) and loads the control and blank
// databases. LineEnding becomes the one the set's files use. On any failure state.DataSet is
// left as it was (the method reader may have filled some method fields).
ReopenResult ReopenDataFileSet(AppState& state, Operator& op, const std::string& path,
                               QualityDatabases& databases);

// "&Append Data File": the Open dialog on DataDirectory ("FIX;*.SYN", file must exist);
// cancelling does nothing; a missing file shows "File does not exist.". On success the
// update disables the file and instrument menus, shows the method, clears NewDataSet and sets
// LineEnding from the method's FileType.
ReopenResult AppendDataFile(AppState& state, Operator& op, QualityDatabases& databases);
// Its two halves: the dialog and the check that the file exists (empty when nothing is to be
// reopened), then the reopening itself, which may take a while on a long set.
std::string ChooseDataFileToAppend(AppState& state, Operator& op);
ReopenResult ReopenForAppend(AppState& state, Operator& op, const std::string& path,
                             QualityDatabases& databases);

}  // namespace zorvel
