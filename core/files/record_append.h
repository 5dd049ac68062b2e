#pragma once

#include <string>
#include <string_view>
#include <vector>

// How a run puts one record on disk: appended, forced to the disk and closed before the call
// returns, so that a record counts as written only once it would survive a power cut.
namespace zorvel {

// Appends the record (which ends with the line ending) to the file. A file whose last line was
// cut short (a write that failed half-way) first loses that partial tail, so records never glue
// together; only bytes after the last line ending of either kind are ever removed. A record the
// disk takes only part of (full, over quota) is cut off again before the call returns, so the
// file never ends in half a record. A file created here also has its folder entry forced to the
// disk. False when any step fails, with the system's reason in `reason` when given.
bool AppendRecordDurably(const std::string& path, std::string_view record,
                         std::string_view lineEnding, std::string* reason = nullptr);

// Makes a file's end whole as planned: keeps its first `keep` bytes, then adds `complete`, and
// forces the file to the disk. False with the system's reason when any step fails.
bool ApplyTailRepair(const std::string& path, std::size_t keep, std::string_view complete,
                     std::string* reason);

// Removes the files and forces their folder to the disk (the files of one set, which share it).
void RemoveFilesDurably(const std::vector<std::string>& paths);

}  // namespace zorvel
