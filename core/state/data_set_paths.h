#pragma once

#include <string>

namespace zorvel {

// The files of the current data set, one per extension; empty until a set is created or
// reopened.
struct DataSetPaths {
  std::string FixPath;
  std::string SynPath;
  std::string CtlPath;
  std::string BlkPath;
  std::string StlPath;
  std::string SlkPath;
  std::string LogFilePath;
  std::string DataSetName;
  std::string MethodFilePath;

  friend bool operator==(const DataSetPaths&, const DataSetPaths&) = default;
};

}  // namespace zorvel
