#pragma once

#include <string>

namespace zorvel {

// False for an empty path; otherwise true exactly when the file can be opened for reading.
bool FileExists(const std::string& path);

// True when the path names a folder.
bool IsFolder(const std::string& path);

// The file of the directory whose name is `name` in any mix of upper and lower case (the exact
// spelling first, else the first in name order); empty when there is none. Folders are skipped.
std::string FindFileIgnoringCase(const std::string& directory, const std::string& name);

// Joins a directory and a name with exactly one "/" between them.
std::string JoinPath(const std::string& directory, const std::string& name);

}  // namespace zorvel
