#pragma once

#include <string_view>

#include "core/state/data_set_paths.h"
#include "core/state/method_settings.h"

namespace zorvel {

struct LastSample {
  int number = 0;               // 0 when the set holds no numbered record
  bool samplesPresent = false;  // the set already holds sample records
};

// The last sample number of a ".FIX" file's records (the lines after the "em wl" heading):
// records of pures ("P") and blanks ("B") do not count; "S" records mark samples present.
LastSample LastSampleInFixedText(std::string_view text);
// The same for a ".SYN" file (the lines after the "Initial Date/Time" line); any record other
// than a pure or a blank marks samples present.
LastSample LastSampleInScanText(std::string_view text);

// Reads the set's ".FIX" file when the method reads fixed wavelengths, then its ".SYN" file
// when it scans (the scan file has the last word). A file that cannot be read holds no
// records.
LastSample FindLastSample(const MethodSettings& method, const DataSetPaths& paths);

}  // namespace zorvel
