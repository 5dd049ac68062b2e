#pragma once

#include <string>

#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// A base directory's DATA and METHODS subdirectories, found in one listing of it. Names are
// compared without regard to case, as the lab's folders may have been made by hand as "data";
// a folder that exists is used as it is spelt, and "DATA" or "METHODS" when none exists yet.
struct Subdirectories {
  std::string dataPath;
  std::string methodsPath;
  bool dataExists = false;
  bool methodsExists = false;
};
Subdirectories FindSubdirectories(const std::string& base);

// DataDirectory and MethodsDirectory under the state's BaseDirectoryPath.
void SetSubdirectoryPaths(AppState& state, const Subdirectories& found);

// Start-up's check of the base directory: asks to create a missing DATA or METHODS
// subdirectory. False when the operator answered No (the program then ends) or a folder could
// not be made.
bool CheckDirectoryStructure(AppState& state, Operator& op);

// Creates DATA and METHODS under the base directory where missing, without asking ("Set
// Folder" of the setup window). False when one could not be made.
bool EnsureDataAndMethods(AppState& state, Operator& op);

}  // namespace zorvel
