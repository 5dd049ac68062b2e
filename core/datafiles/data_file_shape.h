#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/state/data_set_paths.h"
#include "core/state/method_settings.h"

// What each file of a data set looks like, so that reopening can tell a file of this set from
// anything else and a whole record from what a crash left of one.
namespace zorvel {

enum class DataFileKind { Fixed, Synch, Control, Blank, ScanControl, ScanBlank, RunLog };

struct DataFileShape {
  DataFileKind kind = DataFileKind::Fixed;
  int headerLines = 0;
  std::string firstLineStart;   // "Data File\t", "CONTROL FILE: ", ...
  std::string lastHeaderStart;  // the header's last line: "Color", "emwl/emsl", ...
  int colours = 0;              // readings per record of ".FIX", ".CTL", ".BLK"
  bool tubeColumn = false;      // ".FIX" in autosampler mode
};

DataFileShape ShapeOf(DataFileKind kind, const MethodSettings& method);

// The files of the set with their kinds, in the order they are created; absent kinds skipped.
struct DataFileEntry {
  std::string path;
  DataFileKind kind;
};
std::vector<DataFileEntry> FilesOfSet(const DataSetPaths& paths);

// Whether the line (without its ending) is a whole record of the file: its label, every field
// the layout asks for in the form the writers write it. A scan record is whole when its points
// all read as numbers and, where the file holds an earlier record, there are as many of them.
bool IsWholeRecord(const DataFileShape& shape, std::string_view line,
                   std::string_view previousRecord = {});

// The letters that begin a record: sample, pure, blank, control, replicate.
inline constexpr std::string_view kRecordLetters = "SPBCR";

// The record's label when the line starts with a record letter and a sample number: the
// letter and the number; nothing otherwise (a garbled line).
struct RecordLabel {
  char letter = 0;
  long number = 0;
};
bool ParseRecordLabel(std::string_view line, RecordLabel& label);

}  // namespace zorvel
