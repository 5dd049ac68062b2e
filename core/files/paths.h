#pragma once

#include <string>

namespace zorvel {

// False for an empty path; otherwise true exactly when the file can be opened for reading.
bool FileExists(const std::string& path);

// Joins a directory and a name with exactly one "/" between them.
std::string JoinPath(const std::string& directory, const std::string& name);

}  // namespace zorvel
