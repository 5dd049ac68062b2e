#pragma once

#include <string>
#include <string_view>

#include "core/datafiles/data_file_shape.h"
#include "core/state/data_set_paths.h"
#include "core/state/method_settings.h"

namespace zorvel {

struct LastSample {
  int number = 0;               // 0 when the set holds no numbered record
  bool samplesPresent = false;  // the set already holds sample records
  std::string lastLabel;        // the last record's letter and number ("S17"), replicates aside
  // Set when the set's ".FIX" and ".SYN" end with different readings: one reading's record
  // reached one file and not the other.
  std::string mismatch;
  // A record after the last number whose own number cannot be read ("S-7"), as found, and
  // (from FindLastSample) the message that names it and its file.
  std::string unreadable;
  std::string unreadableMessage;
};

// The last sample number of a ".FIX" file's records (the lines after the "em wl" heading):
// records of pures ("P") and blanks ("B") do not count; "S" records mark samples present. A
// line whose label (letter and number) does not parse is not a record and is passed over.
LastSample LastSampleInFixedText(std::string_view text);
// The same for a ".SYN" file (the lines after the "Initial Date/Time" line); any record other
// than a pure or a blank marks samples present.
LastSample LastSampleInScanText(std::string_view text);

// The same, read from the file itself: the heading from the front, then the records from the
// end backwards only until the last label, the last number and a sample are found, so a long
// set costs about its last records. A file that cannot be read holds no records.
LastSample LastSampleInFile(const std::string& path, DataFileKind kind);

// Reads the set's ".FIX" file when the method reads fixed wavelengths and its ".SYN" file when
// it scans; the next number comes after the highest of their last numbers, so a reading that
// reached only one of them is never numbered twice. A file that cannot be read holds no records.
LastSample FindLastSample(const MethodSettings& method, const DataSetPaths& paths);

}  // namespace zorvel
