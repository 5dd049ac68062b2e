#pragma once

#include <string>
#include <string_view>

#include "core/datafiles/data_file_shape.h"
#include "core/files/file_ends.h"
#include "core/files/torn_tail.h"

// Making a reopened data file whole before anything is appended to it.
namespace zorvel {

struct DataFileRepair {
  bool ok = false;
  std::string refusal;     // why the file is refused, for the operator (ok false)
  std::string logEntry;    // what was removed or completed, for the program log; empty if nothing
  std::string lineEnding;  // the ending the file's lines actually use
  TailRepair plan;         // what is done to the file's end (ok true)
};

// Checks the file's ends (its header at the front, its last lines at the back) against the shape
// (its first line, its whole header) and plans the repair of its end: a last line without its line
// ending is completed when it parses as a whole record and cut off when it does not; nothing before
// the last line ending is ever touched.
DataFileRepair PlanDataFileRepair(const std::string& path, const DataFileShape& shape,
                                  const FileEnds& file);

// Plans as above and carries the plan out, forced to the disk. A missing file, a file that is
// not of this shape, or one that lacks its header is refused and left as it is.
DataFileRepair RepairDataFile(const std::string& path, const DataFileShape& shape);

}  // namespace zorvel
