#pragma once

#include <string>

#include "core/state/data_set_paths.h"
#include "core/state/method_settings.h"

// How the files of a data set are named: one base path, one upper-case extension per file.
namespace zorvel {

// The chosen path less the extension of its file name (everything from the file name's last
// "." on); a file name without "." is taken whole. Dots in directory names are kept.
std::string BasePathOf(const std::string& chosenPath);
// The file name without directory and extension: "run1" for ".../DATA/run1.fix".
std::string DataSetNameOf(const std::string& chosenPath);

// The paths of the files that the method calls for (".FIX", ".CTL", ".BLK" with fixed reads;
// ".SYN", ".STL", ".SLK" with scans; ".LOG" with the autosampler); the others are empty.
// DataSetName and MethodFilePath are left as given in `current`.
DataSetPaths DataSetPathsFor(const MethodSettings& method, const std::string& basePath,
                             DataSetPaths current = {});

// The main window's data-file label: base + ".FIX", base + ".SYN", or base + " (.FIX; .SYN)".
std::string DataFileLabel(const MethodSettings& method, const std::string& basePath);

}  // namespace zorvel
