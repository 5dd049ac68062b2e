#pragma once

#include <string>

#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// The path of a base directory's DATA or METHODS subdirectory. Names are compared without
// regard to case, as the lab's folders may have been made by hand as "data"; the folder that
// exists is used as it is spelt, and "DATA" when none exists yet.
std::string SubdirectoryPath(const std::string& base, const std::string& upperName);

// Start-up's check of the base directory: asks to create a missing DATA or METHODS
// subdirectory. False when the operator answered No (the program then ends) or a folder could
// not be made.
bool CheckDirectoryStructure(AppState& state, Operator& op);

// Creates DATA and METHODS under the base directory where missing, without asking ("Set
// Folder" of the setup window). False when one could not be made.
bool EnsureDataAndMethods(AppState& state, Operator& op);

}  // namespace zorvel
