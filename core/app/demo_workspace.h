#pragma once

#include <string>

#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// Makes a workspace for trying the program on simulated instruments: DATA and METHODS, a
// preferences file whose base directory is the workspace, and a ports file that puts COM1 to
// COM4 on the built-in simulator. Made on first use; a workspace that has its preferences is
// left as it is. False when the folder cannot be made.
bool PrepareDemoWorkspace(const std::string& directory, Operator& op);

}  // namespace zorvel
