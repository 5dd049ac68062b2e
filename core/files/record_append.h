#pragma once

#include <string>
#include <string_view>

// How a run puts one record on disk: appended, forced to the disk and closed before the call
// returns, so that a record counts as written only once it would survive a power cut.
namespace zorvel {

// Appends the record (which ends with the line ending) to the file. A file whose last line was
// cut short by a crash first loses that partial tail, so records never glue together. A file
// created here also has its folder entry forced to the disk. False when any step fails.
bool AppendRecordDurably(const std::string& path, std::string_view record,
                         std::string_view lineEnding);

// Cuts a partial last line off a data file before it is reopened, so that what a crash left
// half-written is neither read back as a record nor glued to the next one. The line ending is
// the file's own (CR LF when it holds one, else CR). True when the file is whole now or missing.
bool RepairDataFile(const std::string& path);

// The length of the file's whole lines: everything up to and including its last line ending
// (the whole size when it ends with one; 0 when it holds no line ending at all).
std::size_t WholeLinesLength(std::string_view bytes, std::string_view lineEnding);

}  // namespace zorvel
