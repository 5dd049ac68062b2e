#pragma once

#include <string>
#include <string_view>
#include <vector>

// How the program puts bytes on disk. Files are written byte for byte (no line-end or code-page
// translation) and forced to the disk before they are closed, so that a record or a settings
// file on disk is always whole even after a crash or a power cut.
namespace zorvel {

// Writes a settings file whole: the bytes go to a temporary file beside it, forced to the disk,
// which is then renamed over the old file, and the folder is forced to the disk after the
// rename. A crash leaves either the old file or the new one. False when it cannot be written.
bool WriteWholeFile(const std::string& path, std::string_view bytes);

// Creates the file (emptying an existing one) with the given bytes. False on failure.
bool CreateTextFile(const std::string& path, std::string_view bytes);

// Creates several files so that they appear together or not at all: each is written whole to a
// temporary name beside it and forced to the disk, then all are renamed into place in the order
// given and the folder is forced to the disk. On any failure the temporary files and those
// already renamed are removed again, so no part-made set is left, and `reason` holds the
// system's reason.
struct NewFile {
  std::string path;
  std::string bytes;
};
bool CreateFilesTogether(const std::vector<NewFile>& files, std::string* reason);

// Appends one record to the file (creating it when missing), forces it to the disk and closes
// it. False on failure.
bool AppendRecord(const std::string& path, std::string_view bytes);

// Reads a whole file byte for byte; false when it cannot be opened.
bool ReadWholeFile(const std::string& path, std::string& bytes);

}  // namespace zorvel
