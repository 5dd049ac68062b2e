#include "core/datafiles/empty_set.h"

#include "core/datafiles/data_file_shape.h"
#include "core/datafiles/tray_journal.h"
#include "core/files/file_output.h"
#include "core/files/paths.h"
#include "core/files/record_append.h"

namespace zorvel {

namespace {

// True when the bytes end right after the header's last line ending.
bool headerOnly(const std::string& bytes, int headerLines) {
  int lines = 0;
  for (std::size_t k = 0; k < bytes.size(); ++k) {
    if (bytes[k] == '\r' && k + 1 < bytes.size() && bytes[k + 1] == '\n') ++k;
    if (bytes[k] != '\r' && bytes[k] != '\n') continue;
    if (++lines == headerLines) return k + 1 == bytes.size();
  }
  return false;
}

}  // namespace

bool RemoveSetWithoutRecords(const MethodSettings& method, const DataSetPaths& paths) {
  const std::vector<DataFileEntry> files = FilesOfSet(paths);
  if (files.empty()) return false;
  for (const DataFileEntry& file : files) {
    std::string bytes;
    if (ReadWholeFile(file.path, bytes) &&
        !headerOnly(bytes, ShapeOf(file.kind, method).headerLines))
      return false;
  }
  std::vector<std::string> names;
  for (const DataFileEntry& file : files) names.push_back(file.path);
  // A tray run that wrote no record leaves no journal either.
  if (std::string journal = TrayJournalPath(paths); FileExists(journal)) names.push_back(journal);
  RemoveFilesDurably(names);
  return true;
}

}  // namespace zorvel
