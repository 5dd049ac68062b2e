#pragma once

#include <string>

#include "core/app/main_view.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// The exit status when the preferences file is refused and not set up again.
inline constexpr int kPreferencesRefusedExit = 2;

// The start-up of the program, run when the main window loads, in this order: start-up
// directory, directory check (No ends the program), preferences (when missing: a notice, then
// the setup window; when refused: why, then the setup window), the program log with "Boot up".
// False when the program is to end.
bool StartUp(AppState& state, const std::string& currentDirectory, Operator& op, Clock& clock,
             MainView& view);

// The start-up directory with a trailing "/".
std::string WithTrailingSlash(const std::string& directory);

// Creates the program log with its title line when it does not exist yet.
bool EnsureProgramLog(const AppState& state);

}  // namespace zorvel
